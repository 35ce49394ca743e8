// SPDX-License-Identifier: MIT
// zphonetic apply DECK -o OUT [--slide N] [--select SELECTION] --style N --bracket N
// [--pick INDEX=READING]...: the dialog's round trip on a deck. The deck's selection is made, the
// real add-on runs "PhoneticSymbol", and the program then acts as the dialog's page through the
// bridge: it asks for the readings, applies the picks, confirms with the layout and brackets,
// and writes the deck.
#include <QJsonArray>
#include <QMap>
#include <cstdio>

#include "deckhost.h"
#include "deckselection.h"
#include "dialogbridge.h"
#include "minihost/nvo/printable.h"
#include "minihost/slxcore/deck.h"
#include "placement.h"
#include "subcommands.h"
#include "tonesoption.h"

namespace {

void printHelp() {
    std::printf(
        "Usage: zphonetic apply DECK -o OUT [--slide N] [--select SELECTION] --style N --bracket "
        "N\n"
        "                       [--pick INDEX=READING]... [--place WHERE] [--tones TONES]\n\n"
        "Selects text on a slide of DECK (default: slide 1, every shape with text, or the whole\n"
        "text of the only one), runs the pinyin dialog's command and confirms it as its page\n"
        "would, then writes the deck to OUT.\n"
        "  --slide N         the slide to work on (from 1; default 1)\n"
        "%s"
        "  --style N         1 readings after the text, 2 after each character, 3 own text box\n"
        "  --bracket N       1 （）, 2 [], 3 none and bold, 4 //, 5 {}\n"
        "  --pick I=READING  the reading of the character at index I instead of the one in "
        "context\n"
        "%s"
        "                    (with --style 3)\n"
        "%s",
        kSelectHelp, kPlaceHelp, kTonesHelp);
}

struct Options {
    QString input;
    QString output;
    QString select;
    int slide = 1;
    int style = 0;
    int bracket = 0;
    QMap<int, QString> picks;  // character index -> reading
    minihost::Placement place = minihost::Placement::Addon;
};

bool toInt(const QString& text, int* value) {
    bool ok = false;
    *value = text.toInt(&ok);
    return ok;
}

// Returns 0, or the exit status of the error it reported.
int parseArguments(const QStringList& arguments, Options* options) {
    bool haveStyle = false, haveBracket = false;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        const bool takesValue =
            argument == QLatin1String("-o") || argument == QLatin1String("--slide") ||
            argument == QLatin1String("--select") || argument == QLatin1String("--style") ||
            argument == QLatin1String("--bracket") || argument == QLatin1String("--pick") ||
            argument == QLatin1String("--place");
        if (takesValue && i + 1 >= arguments.size())
            return reportError(argument, QStringLiteral("needs a value"));
        if (argument == QLatin1String("-o")) {
            options->output = arguments.at(++i);
        } else if (argument == QLatin1String("--slide")) {
            if (!toInt(arguments.at(++i), &options->slide))
                return reportError(
                    argument, QStringLiteral("\"%1\" is not a slide number").arg(arguments.at(i)));
        } else if (argument == QLatin1String("--select")) {
            options->select = arguments.at(++i);
        } else if (argument == QLatin1String("--style")) {
            haveStyle = toInt(arguments.at(++i), &options->style);
            if (!haveStyle)
                return reportError(argument,
                                   QStringLiteral("\"%1\" is not a number").arg(arguments.at(i)));
        } else if (argument == QLatin1String("--bracket")) {
            haveBracket = toInt(arguments.at(++i), &options->bracket);
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
            options->picks.insert(index, pick.mid(equals + 1));
        } else if (argument == QLatin1String("--place")) {
            const QString value = arguments.at(++i);
            if (!minihost::parsePlacement(value, &options->place))
                return reportError(
                    argument,
                    QStringLiteral("\"%1\" is not addon, below, above or over").arg(value));
        } else if (options->input.isEmpty() && !argument.startsWith(QLatin1Char('-'))) {
            options->input = argument;
        } else {
            return reportError(argument, QStringLiteral("unexpected argument"));
        }
    }
    if (options->input.isEmpty())
        return reportError(QStringLiteral("apply"), QStringLiteral("needs a DECK"));
    if (options->output.isEmpty())
        return reportError(options->input, QStringLiteral("needs -o OUT"));
    if (!haveStyle || !haveBracket)
        return reportError(options->input, QStringLiteral("needs --style N and --bracket N"));
    if (options->place != minihost::Placement::Addon && options->style != 3)
        return reportError(
            QStringLiteral("--place"),
            QStringLiteral("moves the readings' own text box: give it with --style 3"));
    return 0;
}

// The page's part: asks the dialog for the readings, applies the picks and confirms with the
// layout and brackets. Returns 0, or the exit status of the error it reported.
int answerDialog(minihost::AddonSession& session, const Options& options) {
    DialogBridge dialog;
    if (!dialog.open(session)) return reportError(options.input, dialog.errorString());
    QString reply;
    if (!dialog.call(QStringLiteral("getPhoneticText"), {}, &reply))
        return reportError(QStringLiteral("add-on"), dialog.errorString());
    QJsonArray phonetic;
    if (!DialogBridge::readingEntries(reply, &phonetic))
        return reportError(options.input, QStringLiteral("the dialog has nothing to annotate"));
    QMap<int, QString> picks = options.picks;
    const QJsonArray items = DialogBridge::confirmedItems(phonetic, &picks);
    if (!picks.isEmpty())
        return reportError(QStringLiteral("--pick"),
                           QStringLiteral("no character at index %1 (the dialog shows %2)")
                               .arg(picks.firstKey())
                               .arg(phonetic.size()));
    if (!dialog.confirm(items, options.style, options.bracket))
        return reportError(QStringLiteral("add-on"), dialog.errorString());
    dialog.finish();
    return 0;
}

// The shape the dialog reads, before it runs (it selects the box it makes): the first selected
// shape with text.
int dialogSource(const minihost::Deck& deck) {
    for (const int id : deck.selectedShapes())
        if (!deck.text(deck.currentSlide(), id).isEmpty()) return id;
    return 0;
}

// The text boxes the dialog made (layout 3), each for `source` (for the run `selection` of its
// text when that is in it).
QList<minihost::MadeBox> madeBoxes(const minihost::Deck& deck, const QList<int>& before, int source,
                                   const minihost::Deck::TextSelection& selection) {
    const int slide = deck.currentSlide();
    QList<minihost::MadeBox> made;
    for (const minihost::ShapeInfo& shape : deck.shapes(slide)) {
        if (before.contains(shape.id)) continue;
        made.append({shape.id, source});
        if (selection.shapeId == source) {
            made.last().start = selection.start;
            made.last().length = selection.length;
        }
    }
    return made;
}

}  // namespace

int runApply(const QStringList& arguments) {
    if (arguments.contains(QStringLiteral("--help"))) {
        printHelp();
        return 0;
    }
    Options options;
    QStringList rest = arguments;
    if (const int status = takeTonesOption(rest)) return status;
    if (const int status = parseArguments(rest, &options)) return status;

    DeckHost host;
    if (const int status = host.open(options.input, options.slide)) return status;
    minihost::Deck& deck = host.deck();
    const QString wrong = selectOnDeck(deck, options.select, DefaultSelection::TextOfALoneShape);
    if (!wrong.isEmpty()) return reportError(options.input, wrong);

    QList<int> before;
    for (const minihost::ShapeInfo& shape : deck.shapes(deck.currentSlide())) before << shape.id;
    const int steps = deck.undoSteps().size();
    const int source = dialogSource(deck);
    const minihost::Deck::TextSelection selection =
        deck.hasTextSelection() ? deck.textSelection() : minihost::Deck::TextSelection{};
    if (const int status = answerDialog(host.addon(), options)) return status;
    if (deck.undoSteps().size() == steps)
        return reportError(options.input,
                           QStringLiteral("the dialog wrote no readings: nothing written"));
    if (options.place != minihost::Placement::Addon) {
        const QList<minihost::MadeBox> made = madeBoxes(deck, before, source, selection);
        if (made.size() != 1 || !made.first().source)
            return reportError(QStringLiteral("--place"),
                               QStringLiteral("no one new text box of readings to place"));
        const QString problem = placeBoxes(host, made, options.place);
        if (!problem.isEmpty()) return reportError(QStringLiteral("--place"), problem);
    }

    QString error;
    if (!deck.save(options.output, &error)) return reportFileError(options.output, error);
    for (const minihost::ShapeInfo& shape : deck.shapes(deck.currentSlide()))
        if (shape.hasTextFrame)
            std::printf("shape %d: %s\n", shape.id,
                        minihost::printable(shape.text).toUtf8().constData());
    return 0;
}
