// SPDX-License-Identifier: MIT
// zphonetic apply DECK -o OUT [--slide N] [--select SELECTION] --style N --bracket N
// [--pick INDEX=READING]...: the dialog's round trip on a deck. The deck's selection is made, the
// real add-on runs "PhoneticSymbol", and the program then acts as the dialog's page through the
// bridge: it asks for the readings, applies the picks, confirms with the layout and brackets,
// and writes the deck.
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <cstdio>

#include "addonsession.h"
#include "dialogbridge.h"
#include "minihost/nvo/zcoreapplication_p.h"
#include "minihost/slxcore/deck.h"
#include "nvo/zapplication.h"
#include "deckselection.h"
#include "subcommands.h"

namespace {

void printHelp() {
    std::printf(
        "Usage: zphonetic apply DECK -o OUT [--slide N] [--select SELECTION] --style N --bracket N\n"
        "                       [--pick INDEX=READING]...\n\n"
        "Selects text on a slide of DECK (default: slide 1, every shape with text, or the whole\n"
        "text of the only one), runs the pinyin dialog's command and confirms it as its page\n"
        "would, then writes the deck to OUT.\n"
        "  --slide N         the slide to work on (from 1; default 1)\n"
        "%s"
        "  --style N         1 readings after the text, 2 after each character, 3 own text box\n"
        "  --bracket N       1 （）, 2 [], 3 none and bold, 4 //, 5 {}\n"
        "  --pick I=READING  the reading of the character at index I instead of the one in "
        "context\n",
        kSelectHelp);
}

bool toInt(const QString& text, int* value) {
    bool ok = false;
    *value = text.toInt(&ok);
    return ok;
}

}  // namespace

int runApply(const QStringList& arguments) {
    QString input, output, wanted;
    int slide = 1, style = 0, bracket = 0;
    bool haveStyle = false, haveBracket = false;
    QMap<int, QString> picks;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        if (argument == QLatin1String("--help")) {
            printHelp();
            return 0;
        }
        const bool takesValue =
            argument == QLatin1String("-o") || argument == QLatin1String("--slide") ||
            argument == QLatin1String("--select") || argument == QLatin1String("--style") ||
            argument == QLatin1String("--bracket") || argument == QLatin1String("--pick");
        if (takesValue && i + 1 >= arguments.size())
            return reportError(argument, QStringLiteral("needs a value"));
        if (argument == QLatin1String("-o")) {
            output = arguments.at(++i);
        } else if (argument == QLatin1String("--slide")) {
            if (!toInt(arguments.at(++i), &slide))
                return reportError(
                    argument, QStringLiteral("\"%1\" is not a slide number").arg(arguments.at(i)));
        } else if (argument == QLatin1String("--select")) {
            wanted = arguments.at(++i);
        } else if (argument == QLatin1String("--style")) {
            haveStyle = toInt(arguments.at(++i), &style);
            if (!haveStyle)
                return reportError(argument,
                                   QStringLiteral("\"%1\" is not a number").arg(arguments.at(i)));
        } else if (argument == QLatin1String("--bracket")) {
            haveBracket = toInt(arguments.at(++i), &bracket);
            if (!haveBracket)
                return reportError(argument,
                                   QStringLiteral("\"%1\" is not a number").arg(arguments.at(i)));
        } else if (argument == QLatin1String("--pick")) {
            const QString pick = arguments.at(++i);
            const int equals = pick.indexOf(QLatin1Char('='));
            int index = 0;
            if (equals < 1 || !toInt(pick.left(equals), &index) || index < 0)
                return reportError(argument,
                                   QStringLiteral("\"%1\" is not INDEX=READING").arg(pick));
            picks.insert(index, pick.mid(equals + 1));
        } else if (input.isEmpty() && !argument.startsWith(QLatin1Char('-'))) {
            input = argument;
        } else {
            return reportError(argument, QStringLiteral("unexpected argument"));
        }
    }
    if (input.isEmpty())
        return reportError(QStringLiteral("apply"), QStringLiteral("needs a DECK"));
    if (output.isEmpty()) return reportError(input, QStringLiteral("needs -o OUT"));
    if (!haveStyle || !haveBracket)
        return reportError(input, QStringLiteral("needs --style N and --bracket N"));

    QString error;
    std::unique_ptr<minihost::Deck> deck = minihost::Deck::loadFile(input, &error);
    if (!deck) return reportError(input, error);
    if (!deck->setCurrentSlide(slide))
        return reportError(
            input,
            QStringLiteral("no slide %1 (the deck has %2)").arg(slide).arg(deck->slideCount()));
    error = selectOnDeck(*deck, wanted, DefaultSelection::TextOfALoneShape);
    if (!error.isEmpty()) return reportError(input, error);

    auto* app = qobject_cast<ZxApplication*>(QCoreApplication::instance());
    ZCoreApplicationPrivate* core = app->coreApplication()->d_func();
    core->setActiveView(deck->view());
    struct ViewReset {  // the deck goes before the application: the host forgets its view first
        ZCoreApplicationPrivate* core;
        ~ViewReset() { core->setActiveView(nullptr); }
    } viewReset{core};

    AddonSession session;
    if (!session.open()) return reportError(QStringLiteral("add-on"), session.errorString());
    DialogBridge dialog;
    if (!dialog.open(session)) return reportError(input, dialog.errorString());
    QString reply;
    if (!dialog.call(QStringLiteral("getPhoneticText"), {}, &reply))
        return reportError(QStringLiteral("add-on"), dialog.errorString());
    const QJsonValue result =
        QJsonDocument::fromJson(reply.toUtf8()).object().value(QStringLiteral("result"));
    if (!result.isObject())
        return reportError(input, QStringLiteral("the dialog has nothing to annotate"));

    // As the page does: one element per entry, the chosen reading, "" for a character without one.
    const QJsonArray phonetic = result.toObject()
                                    .value(QStringLiteral("data"))
                                    .toObject()
                                    .value(QStringLiteral("phonetic"))
                                    .toArray();
    QJsonArray items;
    for (const QJsonValue& value : phonetic) {
        const QJsonObject entry = value.toObject();
        const int index = entry.value(QStringLiteral("index")).toInt();
        QString pinyin = picks.contains(index) ? picks.take(index)
                                               : entry.value(QStringLiteral("pinyin")).toString();
        if (pinyin.trimmed().isEmpty()) pinyin.clear();
        items.append(QJsonObject{{QStringLiteral("index"), index},
                                 {QStringLiteral("pinyin"), pinyin},
                                 {QStringLiteral("text"), entry.value(QStringLiteral("text"))}});
    }
    if (!picks.isEmpty())
        return reportError(QStringLiteral("--pick"),
                           QStringLiteral("no character at index %1 (the dialog shows %2)")
                               .arg(picks.firstKey())
                               .arg(phonetic.size()));
    const QVariantMap confirm{
        {QStringLiteral("styleType"), style},
        {QStringLiteral("bracketType"), bracket},
        {QStringLiteral("phonetic"),
         QString::fromUtf8(QJsonDocument(items).toJson(QJsonDocument::Compact))}};
    if (!dialog.call(QStringLiteral("setPhoneticText"), confirm, nullptr))
        return reportError(QStringLiteral("add-on"), dialog.errorString());
    dialog.finish();
    if (!deck->save(output, &error)) return reportError(output, error);
    for (const minihost::ShapeInfo& shape : deck->shapes(deck->currentSlide()))
        if (shape.hasTextFrame)
            std::printf("shape %d: %s\n", shape.id, shape.text.toUtf8().constData());
    return 0;
}
