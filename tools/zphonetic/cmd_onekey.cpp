// SPDX-License-Identifier: MIT
// zphonetic onekey: the add-on's "PhoneticOneKey" command over a deck file, slide by slide, with
// the selection given on the command line, and the deck written to a new file.
#include <unistd.h>

#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>
#include <cstdio>
#include <memory>

#include "addonsession.h"
#include "deckselection.h"
#include "minihost/nvo/ribbon_p.h"
#include "minihost/nvo/zcoreapplication_p.h"
#include "minihost/nvo/zxapplication_p.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/liveobjects.h"
#include "subcommands.h"

namespace {

void printHelp() {
    std::printf(
        "Usage: zphonetic onekey DECK -o OUT [--slide N] [--select SELECTION]\n"
        "       zphonetic onekey DECK -o OUT --all-slides\n\n"
        "Opens DECK, selects text on a slide as a user would, runs the add-on's \"PhoneticOneKey\"\n"
        "command (one new text box with the pinyin of each selected text, at 400, 250 pt) and\n"
        "writes the deck to OUT. DECK itself is never changed; OUT must be another file.\n\n"
        "  -o, --output OUT  where to write the deck (written whole, then renamed into place)\n"
        "  --slide N         the slide to work on (from 1; default 1)\n"
        "%s"
        "  --all-slides      run the command on every slide, each time with every shape with\n"
        "                    text selected; a progress bar on a terminal\n\n"
        "Prints each new text box (slide, shape id, text). When the add-on finds nothing to\n"
        "annotate it shows its warning, and the deck is written all the same.\n",
        kSelectHelp);
}

struct Options {
    QString deck;
    QString output;
    int slide = 0;  // 0: not given
    QString select;
    bool allSlides = false;
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
        const bool takesValue = argument == QLatin1String("-o") ||
                                argument == QLatin1String("--output") ||
                                argument == QLatin1String("--slide") ||
                                argument == QLatin1String("--select");
        if (takesValue && i + 1 >= arguments.size())
            return reportError(argument, QStringLiteral("needs a value"));
        if (argument == QLatin1String("-o") || argument == QLatin1String("--output")) {
            options->output = arguments.at(++i);
        } else if (argument == QLatin1String("--slide")) {
            const QString value = arguments.at(++i);
            if (!parseNumber(value, &options->slide) || options->slide < 1)
                return reportError(argument, QStringLiteral("\"%1\" is not a slide number (1, 2, ...)").arg(value));
        } else if (argument == QLatin1String("--select")) {
            options->select = arguments.at(++i);
        } else if (argument == QLatin1String("--all-slides")) {
            options->allSlides = true;
        } else if (options->deck.isEmpty() && !argument.startsWith(QLatin1Char('-'))) {
            options->deck = argument;
        } else {
            return reportError(argument, QStringLiteral("unexpected argument (see zphonetic onekey --help)"));
        }
    }
    if (options->deck.isEmpty()) return reportError(QStringLiteral("onekey"), QStringLiteral("needs a DECK"));
    if (options->output.isEmpty())
        return reportError(options->deck, QStringLiteral("needs an output file: -o OUT"));
    if (options->allSlides && (options->slide || !options->select.isEmpty()))
        return reportError(QStringLiteral("--all-slides"), QStringLiteral("works on every slide: give no --slide or --select with it"));
    return 0;
}

bool sameFile(const QString& a, const QString& b) {
    const QFileInfo first(a);
    const QFileInfo second(b);
    if (first.exists() && second.exists()) return first.canonicalFilePath() == second.canonicalFilePath();
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

class OneKeyRun {
public:
    OneKeyRun(minihost::Deck& deck, AddonSession& session) : m_deck(deck), m_session(session) {}
    // With a progress bar on the terminal, the bar's line is cleared before anything else is
    // printed (the add-on's warnings included), and drawn again after.
    void showProgress(int total) { m_progressTotal = total; }

    // Runs the command on the current slide (its selection already made) and prints the boxes it
    // added. False when the add-on could not be triggered.
    bool runOnCurrentSlide() {
        const int slide = m_deck.currentSlide();
        QList<int> before;
        for (const minihost::ShapeInfo& shape : m_deck.shapes(slide)) before << shape.id;
        if (m_progressTotal) std::fputs("\r\033[K", stderr);
        if (!m_session.trigger(QStringLiteral("PhoneticOneKey"))) return false;
        ++m_commands;
        for (const minihost::ShapeInfo& shape : m_deck.shapes(slide)) {
            if (before.contains(shape.id)) continue;
            ++m_boxes;
            std::printf("slide %d: new text box %d: \"%s\"\n", slide, shape.id, shape.text.toUtf8().constData());
        }
        // The add-on must give back every object it took; say so when it did not.
        if (minihost::liveObjectCount() != 0) {
            std::fprintf(stderr, "zphonetic: add-on: %d objects left alive after slide %d (%s)\n",
                         minihost::liveObjectCount(), slide,
                         minihost::liveObjectKinds().join(QLatin1Char(' ')).toUtf8().constData());
            m_leaked = true;
        }
        if (m_progressTotal) drawProgress(slide, m_progressTotal);
        return true;
    }

    int commands() const { return m_commands; }
    int boxes() const { return m_boxes; }
    bool leaked() const { return m_leaked; }

private:
    minihost::Deck& m_deck;
    AddonSession& m_session;
    int m_commands = 0;
    int m_boxes = 0;
    bool m_leaked = false;
    int m_progressTotal = 0;
};

bool slideHasText(const minihost::Deck& deck, int slide) {
    for (const minihost::ShapeInfo& shape : deck.shapes(slide))
        if (shape.hasTextFrame && !shape.text.isEmpty()) return true;
    return false;
}

// Loads the add-on, runs the command where `options` say, and writes the deck.
int runCommands(minihost::Deck& deck, const Options& options, int slide) {
    AddonSession session;
    if (!session.open()) return reportError(QStringLiteral("add-on"), session.errorString());
    OneKeyRun run(deck, session);
    if (options.allSlides) {
        const int total = deck.slideCount();
        const bool terminal = isatty(fileno(stderr));
        if (terminal) {
            run.showProgress(total);
            drawProgress(0, total);
        }
        for (int current = 1; current <= total; ++current) {
            // A slide without text is left alone: selecting nothing would only make it warn.
            if (!slideHasText(deck, current)) continue;
            deck.setCurrentSlide(current);
            selectOnDeck(deck, {}, DefaultSelection::ShapesWithText);
            if (!run.runOnCurrentSlide())
                return reportError(QStringLiteral("add-on"), QStringLiteral("the entry object has no trigger method"));
        }
        // The bar ends at the full count, slides without text included.
        if (terminal) {
            drawProgress(total, total);
            std::fputc('\n', stderr);
        }
    } else {
        deck.setCurrentSlide(slide);
        const QString wrong = selectOnDeck(deck, options.select, DefaultSelection::ShapesWithText);
        if (!wrong.isEmpty()) return reportError(options.deck, wrong);
        if (!run.runOnCurrentSlide())
            return reportError(QStringLiteral("add-on"), QStringLiteral("the entry object has no trigger method"));
    }

    QString error;
    if (!deck.save(options.output, &error)) {
        const QString prefix = options.output + QStringLiteral(": ");
        return reportError(options.output, error.startsWith(prefix) ? error.mid(prefix.size()) : error);
    }
    std::printf("wrote %s: %d new text %s on %d %s\n", options.output.toUtf8().constData(),
                run.boxes(), run.boxes() == 1 ? "box" : "boxes", run.commands(),
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
    if (const int status = parseArguments(arguments, &options)) return status;
    if (sameFile(options.deck, options.output))
        return reportError(options.output, QStringLiteral("is the input deck: write the result to another file"));

    QString error;
    std::unique_ptr<minihost::Deck> deck = minihost::Deck::loadFile(options.deck, &error);
    if (!deck) {
        // The deck's errors already start with the file's name.
        const QString prefix = options.deck + QStringLiteral(": ");
        return reportError(options.deck, error.startsWith(prefix) ? error.mid(prefix.size()) : error);
    }
    const int slide = options.slide ? options.slide : 1;
    if (slide > deck->slideCount())
        return reportError(options.deck, QStringLiteral("there is no slide %1 (the deck has %2)").arg(slide).arg(deck->slideCount()));

    // A host window with the Home tab current, the deck as the active presentation.
    auto* app = qobject_cast<ZxApplication*>(QCoreApplication::instance());
    ZMainWindow window;
    minihost::buildRibbon(&window, {QStringLiteral("CT_Home"), QStringLiteral("CT_Insert"),
                                    QStringLiteral("CT_TextTool")});
    minihost::setCurrentTabById(&window, QStringLiteral("CT_Home"));
    app->d_func()->setCurrentMainWindow(&window);
    app->coreApplication()->d_func()->setActiveView(deck->view());
    const int status = runCommands(*deck, options, slide);
    app->coreApplication()->d_func()->setActiveView(nullptr);
    app->d_func()->setCurrentMainWindow(nullptr);
    return status;
}
