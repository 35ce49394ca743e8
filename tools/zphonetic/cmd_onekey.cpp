// SPDX-License-Identifier: MIT
// zphonetic onekey: the add-on's "PhoneticOneKey" command over a deck file, slide by slide, with
// the selection given on the command line, and the deck written to a new file.
#include <unistd.h>

#include <QFileInfo>
#include <QSet>
#include <cstdio>

#include "deckhost.h"
#include "deckselection.h"
#include "minihost/nvo/printable.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/liveobjects.h"
#include "placement.h"
#include "subcommands.h"
#include "tonesoption.h"

namespace {

// The readings of a text of a million characters are five million characters long: the line
// that reports them shows their start and says how long they are.
constexpr int kReportedUnits = 200;

QByteArray reported(const QString& readings) {
    if (readings.size() <= kReportedUnits)
        return '"' + minihost::printable(readings).toUtf8() + '"';
    int shown = kReportedUnits;
    if (readings.at(shown).isLowSurrogate()) --shown;
    return '"' + minihost::printable(readings.left(shown)).toUtf8() + "\"... (" +
           QByteArray::number(readings.size()) + " characters)";
}

void printHelp() {
    std::printf(
        "Usage: zphonetic onekey DECK -o OUT [--slide N] [--select SELECTION] [--place WHERE]\n"
        "                        [--tones TONES]\n"
        "       zphonetic onekey DECK -o OUT --all-slides [--place WHERE] [--tones TONES]\n\n"
        "Opens DECK, selects text on a slide as a user would, runs the add-on's "
        "\"PhoneticOneKey\"\n"
        "command (one new text box with the pinyin of each selected text, at 400, 250 pt) and\n"
        "writes the deck to OUT. DECK itself is never changed; OUT must be another file.\n\n"
        "  -o, --output OUT  where to write the deck (written whole, then renamed into place)\n"
        "  --slide N         the slide to work on (from 1; default 1)\n"
        "%s"
        "  --all-slides      run the command on every slide with Chinese text, each time with\n"
        "                    every shape with text selected; a progress bar on a terminal\n"
        "%s"
        "%s\n"
        "Prints each new text box (slide, shape id, text), or with --place over each text\n"
        "given readings (slide, its shape id, the readings); readings longer than 200\n"
        "characters are printed as their first 200 and their length. When the selection\n"
        "has no Chinese text, nothing is written and the status is 1.\n",
        kSelectHelp, kPlaceHelp, kTonesHelp);
}

struct Options {
    QString deck;
    QString output;
    int slide = 0;  // 0: not given
    QString select;
    bool allSlides = false;
    minihost::Placement place = minihost::Placement::Addon;
};

bool parseNumber(const QString& text, int* value) {
    bool ok = false;
    *value = text.toInt(&ok);
    return ok;
}

// Returns 0, or the exit status of the error it reported.
int parseArguments(const QStringList& arguments, Options* options) {
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        const bool takesValue =
            argument == QLatin1String("-o") || argument == QLatin1String("--output") ||
            argument == QLatin1String("--slide") || argument == QLatin1String("--select") ||
            argument == QLatin1String("--place");
        if (takesValue && i + 1 >= arguments.size())
            return reportError(argument, QStringLiteral("needs a value"));
        if (argument == QLatin1String("-o") || argument == QLatin1String("--output")) {
            options->output = arguments.at(++i);
        } else if (argument == QLatin1String("--slide")) {
            const QString value = arguments.at(++i);
            if (!parseNumber(value, &options->slide) || options->slide < 1)
                return reportError(
                    argument,
                    QStringLiteral("\"%1\" is not a slide number (1, 2, ...)").arg(value));
        } else if (argument == QLatin1String("--select")) {
            options->select = arguments.at(++i);
        } else if (argument == QLatin1String("--place")) {
            const QString value = arguments.at(++i);
            if (!minihost::parsePlacement(value, &options->place))
                return reportError(
                    argument,
                    QStringLiteral("\"%1\" is not addon, below, above or over").arg(value));
        } else if (argument == QLatin1String("--all-slides")) {
            options->allSlides = true;
        } else if (options->deck.isEmpty() && !argument.startsWith(QLatin1Char('-'))) {
            options->deck = argument;
        } else {
            return reportError(argument,
                               QStringLiteral("unexpected argument (see zphonetic onekey --help)"));
        }
    }
    if (options->deck.isEmpty())
        return reportError(QStringLiteral("onekey"), QStringLiteral("needs a DECK"));
    if (options->output.isEmpty())
        return reportError(options->deck, QStringLiteral("needs an output file: -o OUT"));
    if (options->allSlides && (options->slide || !options->select.isEmpty()))
        return reportError(
            QStringLiteral("--all-slides"),
            QStringLiteral("works on every slide: give no --slide or --select with it"));
    return 0;
}

bool sameFile(const QString& a, const QString& b) {
    const QFileInfo first(a);
    const QFileInfo second(b);
    if (first.exists() && second.exists())
        return first.canonicalFilePath() == second.canonicalFilePath();
    return first.absoluteFilePath() == second.absoluteFilePath();
}

// Draws "[#####     ] 12/200 slides" over itself on a terminal.
void drawProgress(int done, int total) {
    constexpr int kWidth = 30;
    const int filled = total ? done * kWidth / total : kWidth;
    std::fprintf(stderr, "\r[%s%s] %d/%d slides", QByteArray(filled, '#').constData(),
                 QByteArray(kWidth - filled, ' ').constData(), done, total);
    std::fflush(stderr);
}

// Whether a slide has a text the command would read: Chinese in some shape.
bool slideHasChinese(const minihost::Deck& deck, int slide) {
    for (const minihost::ShapeInfo& shape : deck.shapes(slide))
        if (shape.hasTextFrame && minihost::containsChinese(shape.text)) return true;
    return false;
}

class OneKeyRun {
public:
    OneKeyRun(DeckHost& host, minihost::Placement place) : m_host(host), m_place(place) {}
    // With a progress bar on the terminal, the bar's line is cleared before anything else is
    // printed (the add-on's warnings included), and drawn again after.
    void showProgress(int total) { m_progressTotal = total; }

    // Runs the command on the current slide (its selection already made), places and prints the
    // boxes it added. "" or what went wrong.
    QString runOnCurrentSlide() {
        minihost::Deck& deck = m_host.deck();
        const int slide = deck.currentSlide();
        QSet<int> before;
        for (const minihost::ShapeInfo& shape : deck.shapes(slide)) before.insert(shape.id);
        // The selected texts the add-on reads, in the order it makes their boxes.
        const QList<int> sources = minihost::readingSources(deck);
        // A text selection is read alone: its readings are of its characters only.
        const minihost::Deck::TextSelection run = deck.hasTextSelection()
                                                      ? deck.textSelection()
                                                      : minihost::Deck::TextSelection{0, 0, -1};
        m_chineseSelections += sources.isEmpty() ? 0 : 1;
        if (m_progressTotal) std::fputs("\r\033[K", stderr);
        if (!m_host.addon().trigger(QStringLiteral("PhoneticOneKey")))
            return QStringLiteral("the entry object has no trigger method");
        ++m_commands;
        QList<minihost::MadeBox> made;
        for (const minihost::ShapeInfo& shape : deck.shapes(slide))
            if (!before.contains(shape.id)) made.append({shape.id, 0});
        QStringList texts;
        for (const minihost::MadeBox& box : made) texts << deck.text(slide, box.box);
        const QString problem = place(made, sources, run);
        if (!problem.isEmpty()) return QStringLiteral("--place: ") + problem;
        for (int i = 0; i < made.size(); ++i) {
            ++m_boxes;
            const QByteArray text = reported(texts.at(i));
            if (m_place == minihost::Placement::Over)
                std::printf("slide %d: readings over shape %d: %s\n", slide, made.at(i).source,
                            text.constData());
            else
                std::printf("slide %d: new text box %d: %s\n", slide, made.at(i).box,
                            text.constData());
        }
        // The add-on must give back every object it took; say so when it did not.
        if (minihost::liveObjectCount() != 0) {
            std::fprintf(stderr, "zphonetic: add-on: %d objects left alive after slide %d (%s)\n",
                         minihost::liveObjectCount(), slide,
                         minihost::liveObjectKinds().join(QLatin1Char(' ')).toUtf8().constData());
            m_leaked = true;
        }
        if (m_progressTotal) drawProgress(slide, m_progressTotal);
        return QString();
    }

    // Moves the boxes made on the current slide, the i-th for the i-th source. "" or why not.
    QString place(QList<minihost::MadeBox>& made, const QList<int>& sources,
                  const minihost::Deck::TextSelection& run) {
        if (m_place == minihost::Placement::Addon || made.isEmpty()) return QString();
        if (made.size() != sources.size())
            return QStringLiteral(
                       "%1 new text boxes for %2 Chinese texts on slide %3: which box "
                       "belongs to which text is unclear")
                .arg(made.size())
                .arg(sources.size())
                .arg(m_host.deck().currentSlide());
        for (int i = 0; i < made.size(); ++i) {
            made[i].source = sources.at(i);
            if (run.shapeId == made[i].source) {
                made[i].start = run.start;
                made[i].length = run.length;
            }
        }
        return placeBoxes(m_host, made, m_place);
    }

    int commands() const { return m_commands; }
    int boxes() const { return m_boxes; }
    bool leaked() const { return m_leaked; }
    // Why nothing was written when no box was made.
    QString nothingWritten() const {
        return m_chineseSelections
                   ? QStringLiteral("the add-on wrote no readings: nothing written")
                   : QStringLiteral("the selection has no Chinese text: nothing written");
    }

private:
    DeckHost& m_host;
    minihost::Placement m_place;
    int m_commands = 0;
    int m_boxes = 0;
    int m_chineseSelections = 0;
    bool m_leaked = false;
    int m_progressTotal = 0;
};

// Runs the command where `options` say, and writes the deck when it made boxes.
int runCommands(DeckHost& host, const Options& options) {
    minihost::Deck& deck = host.deck();
    OneKeyRun run(host, options.place);
    if (options.allSlides) {
        const int total = deck.slideCount();
        const bool terminal = isatty(fileno(stderr));
        if (terminal) {
            run.showProgress(total);
            drawProgress(0, total);
        }
        for (int current = 1; current <= total; ++current) {
            // A slide without Chinese text is left alone: the command would only warn there.
            if (!slideHasChinese(deck, current)) continue;
            deck.setCurrentSlide(current);
            selectOnDeck(deck, {}, DefaultSelection::ShapesWithText);
            const QString problem = run.runOnCurrentSlide();
            if (!problem.isEmpty()) return reportError(options.deck, problem);
        }
        // The bar ends at the full count, slides without Chinese text included.
        if (terminal) {
            drawProgress(total, total);
            std::fputc('\n', stderr);
        }
    } else {
        const QString wrong = selectOnDeck(deck, options.select, DefaultSelection::ShapesWithText);
        if (!wrong.isEmpty()) return reportError(options.deck, wrong);
        const QString problem = run.runOnCurrentSlide();
        if (!problem.isEmpty()) return reportError(options.deck, problem);
    }
    if (run.boxes() == 0) return reportError(options.deck, run.nothingWritten());

    QString error;
    if (!deck.save(options.output, &error)) return reportFileError(options.output, error);
    const bool over = options.place == minihost::Placement::Over;
    const QString what = over ? QStringLiteral("readings over %1 %2")
                                    .arg(run.boxes())
                                    .arg(run.boxes() == 1 ? "text" : "texts")
                              : QStringLiteral("%1 new text %2")
                                    .arg(run.boxes())
                                    .arg(run.boxes() == 1 ? "box" : "boxes");
    std::printf("wrote %s: %s on %d %s\n", minihost::printable(options.output).toUtf8().constData(),
                what.toUtf8().constData(), run.commands(),
                run.commands() == 1 ? "slide" : "slides");
    return run.leaked() ? 1 : 0;
}

}  // namespace

int runOneKey(const QStringList& arguments) {
    if (arguments.contains(QStringLiteral("--help"))) {
        printHelp();
        return 0;
    }
    Options options;
    QStringList rest = arguments;
    if (const int status = takeTonesOption(rest)) return status;
    if (const int status = parseArguments(rest, &options)) return status;
    if (sameFile(options.deck, options.output))
        return reportError(options.output,
                           QStringLiteral("is the input deck: write the result to another file"));

    DeckHost host;
    if (const int status = host.open(options.deck, options.slide ? options.slide : 1))
        return status;
    return runCommands(host, options);
}
