// SPDX-License-Identifier: MIT
// Counting what the host's journal (minihost::hostJournal) noted: a test clears the journal
// (minihost::clearHostJournal), does what it tests, then counts.
#pragma once

#include <QString>
#include <QStringList>

#include "minihost/nvo/hostcontrol.h"

namespace hostjournal {

// The lines that start with `prefix`.
inline int count(const QString& prefix) {
    int lines = 0;
    for (const QString& line : minihost::hostJournal())
        if (line.startsWith(prefix)) ++lines;
    return lines;
}

// Queries of the ribbon: headerBar(), subTabBar(), currentIdx(), command(), childCount(),
// childAt().
inline int ribbonQueries() {
    return count(QStringLiteral("ZMainWindow.")) + count(QStringLiteral("ZRbTabWidget.")) +
           count(QStringLiteral("ZRbSubTabBar.")) + count(QStringLiteral("ZListCommand."));
}

inline int translationInstalls() {
    return count(QStringLiteral("ZAppTranslators.installTranslation("));
}

inline int translationUninstalls() {
    return count(QStringLiteral("ZAppTranslators.uninstallTranslation("));
}

inline int libraryLoads() {
    return count(QStringLiteral("_Xloadlibrary("));
}

// References taken on core applications and not given back (negative: given back more often
// than taken).
inline int openCoreReferences() {
    return count(QStringLiteral("ZCoreApplication.AddRef(")) -
           count(QStringLiteral("ZCoreApplication.Release("));
}

}  // namespace hostjournal
