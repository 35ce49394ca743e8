// SPDX-License-Identifier: MIT
// zphonetic readings TEXT [--json]: what the dialog would show for TEXT, asked of the real
// add-on through its dialog's getPhoneticText with "text", as the page can ask it.
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>

#include "deckhost.h"
#include "dialogbridge.h"
#include "minihost/nvo/addonmodule.h"
#include "minihost/nvo/printable.h"
#include "subcommands.h"
#include "tonesoption.h"

namespace {

void printHelp() {
    std::printf(
        "Usage: zphonetic readings TEXT [--json] [--tones TONES]\n\n"
        "Shows what the pinyin dialog would show for TEXT (its first 30 UTF-16 units): each\n"
        "character with its reading in context and all its readings. With --json, prints the\n"
        "exact reply document the dialog's page receives.\n"
        "%s",
        kTonesHelp);
}

// A reading as the dialog shows it: a Chinese character without a reading has two spaces.
QString shown(const QString& reading) {
    return reading.trimmed().isEmpty() && !reading.isEmpty() ? "-" : reading;
}

}  // namespace

int runReadings(const QStringList& givenArguments) {
    QString text;
    bool json = false;
    bool haveText = false;
    QStringList arguments = givenArguments;
    if (!arguments.contains(QStringLiteral("--help")))
        if (const int status = takeTonesOption(arguments)) return status;
    for (const QString& argument : arguments) {
        if (argument == QLatin1String("--help")) {
            printHelp();
            return 0;
        }
        if (argument == QLatin1String("--json"))
            json = true;
        else if (!haveText && (!argument.startsWith(QLatin1String("--")) || argument.size() < 3)) {
            text = argument;
            haveText = true;
        } else
            return reportError(argument, QStringLiteral("unexpected argument"));
    }
    if (!haveText || text.isEmpty())
        return reportError(QStringLiteral("readings"), QStringLiteral("needs a TEXT"));

    if (const int status = checkReadingFiles()) return status;
    minihost::AddonSession session;
    if (!session.open()) return reportError(QStringLiteral("add-on"), session.errorString());
    // Without a presentation the command opens the dialog on its guide; its bridge still answers
    // for a text the page supplies.
    DialogBridge dialog;
    dialog.open(session);
    QString reply;
    if (!dialog.call(QStringLiteral("getPhoneticText"), {{QStringLiteral("text"), text}}, &reply))
        return reportError(QStringLiteral("add-on"), dialog.errorString());
    if (json) {
        // Control characters are escaped in JSON strings already; this catches the reordering
        // ones, whose escapes mean the same to a JSON reader.
        std::fputs(minihost::printable(reply).toUtf8().constData(), stdout);
        return 0;
    }
    const QJsonObject document = QJsonDocument::fromJson(reply.toUtf8()).object();
    const QJsonValue result = document.value(QStringLiteral("result"));
    if (!result.isObject())
        return reportError(
            text,
            QStringLiteral("nothing to annotate (no Chinese character with a known reading)"));
    for (const QJsonValue& value : result.toObject()
                                       .value(QStringLiteral("data"))
                                       .toObject()
                                       .value(QStringLiteral("phonetic"))
                                       .toArray()) {
        const QJsonObject entry = value.toObject();
        QStringList candidates;
        for (const QJsonValue& candidate : entry.value(QStringLiteral("duyin")).toArray())
            candidates << candidate.toString();
        std::printf("%d\t%s\t%s\t%s\n", entry.value(QStringLiteral("index")).toInt(),
                    minihost::printable(entry.value(QStringLiteral("text")).toString())
                        .toUtf8()
                        .constData(),
                    minihost::printable(shown(entry.value(QStringLiteral("pinyin")).toString()))
                        .toUtf8()
                        .constData(),
                    minihost::printable(candidates.join(QLatin1Char(' '))).toUtf8().constData());
    }
    return 0;
}
