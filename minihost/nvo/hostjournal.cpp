// SPDX-License-Identifier: MIT
// The host's journal: what was asked of the application framework, as the deck's call journal
// keeps what was asked of the object model.
#include "minihost/nvo/hostcontrol.h"
#include "minihost/nvo/hostjournal_p.h"

namespace minihost {
namespace {

// Enough for any command and its test; a long session does not grow without end.
constexpr int kJournalLimit = 10000;

QStringList& lines() {
    // Never destroyed: a reference may still be given back while the process shuts down.
    static QStringList* journal = new QStringList;
    return *journal;
}

}  // namespace

void noteHostCall(const QString& line) {
    QStringList& journal = lines();
    journal.append(line);
    if (journal.size() > kJournalLimit) journal.removeFirst();
}

QStringList hostJournal() {
    return lines();
}

void clearHostJournal() {
    lines().clear();
}

}  // namespace minihost
