// SPDX-License-Identifier: MIT
// zphonetic-studio: the desktop window in which a person opens a deck, selects text on a slide,
// runs the pinyin add-on's two commands from the ribbon, undoes and saves.
#include <QCommandLineParser>
#include <QCoreApplication>
#include <cstdio>
#include <cstdlib>

#include "minihost/nvo/hostcontrol.h"
#include "minihost/nvo/taggerreadings.h"
#include "nvo/readingservice.h"
#include "nvo/zapplication.h"
#include "studiotranslation.h"
#include "studiowindow.h"

namespace {

void nameTheProgram() {
    QCoreApplication::setApplicationName(QStringLiteral("zphonetic-studio"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ZPHONETIC_VERSION));
}

// Reads the arguments before the window program starts, so that --help, --version and mistakes
// need no display: prints and exits for those. The deck to open, or an empty string.
QString deckArgument(int argc, char** argv) {
    QCoreApplication reading(argc, argv);
    nameTheProgram();
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Opens a window showing DECK (or no deck), in which the pinyin add-on's commands run on\n"
        "the text selected on a slide: \"Pinyin Readings\" opens its dialog, \"Pinyin at Once\"\n"
        "writes the readings into new text boxes. Both are undone with Ctrl+Z."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("DECK.pptx"), QStringLiteral("The deck to open."),
                                 QStringLiteral("[DECK.pptx]"));
    parser.process(reading);
    const QStringList decks = parser.positionalArguments();
    if (decks.size() > 1) {
        std::fprintf(stderr, "zphonetic-studio: give one deck at most (see --help)\n");
        std::exit(2);
    }
    return decks.value(0);
}

}  // namespace

int main(int argc, char** argv) {
    const QString deck = deckArgument(argc, argv);
    ZxApplication app(argc, argv);
    nameTheProgram();
    ZxApplication::setDesktopFileName(QStringLiteral("zphonetic-studio"));
    // A window program: the add-on's warning and the studio's own errors are real message boxes,
    // on any display.
    minihost::setShowMessageBoxes(true);
    // With feature 0x1000018 off the add-on asks the host's reading service: the same engine.
    minihost::offerEngineReadingService();
    studiotranslation::install();

    int status = 0;
    {
        StudioWindow window;
        window.show();
        // A deck that cannot be read is reported in a message box; the window stays, empty.
        if (!deck.isEmpty()) window.openFile(deck);
        status = ZxApplication::exec();
    }
    minihost::unregisterService(SID_ZReadingService);
    return status;
}
