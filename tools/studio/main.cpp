// SPDX-License-Identifier: MIT
// zphonetic-studio: the desktop window in which a person opens a deck, selects text on a slide,
// runs the pinyin add-on's two commands from the ribbon, undoes and saves.
#include <cstdio>
#include <cstring>

#include "minihost/nvo/hostcontrol.h"
#include "minihost/nvo/taggerreadings.h"
#include "nvo/readingservice.h"
#include "nvo/zapplication.h"
#include "studiotranslation.h"
#include "studiowindow.h"

namespace {

void printHelp() {
    std::printf(
        "Usage: zphonetic-studio [DECK.pptx]\n"
        "       zphonetic-studio --help | --version\n\n"
        "Opens a window showing DECK (or no deck), in which the pinyin add-on's commands run on\n"
        "the text selected on a slide: \"Pinyin Readings\" opens its dialog, \"Pinyin at Once\"\n"
        "writes the readings into new text boxes. Both are undone with Ctrl+Z.\n");
}

}  // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "--help") || !std::strcmp(argv[i], "-h")) {
            printHelp();
            return 0;
        }
        if (!std::strcmp(argv[i], "--version")) {
            std::printf("zphonetic-studio %s\n", ZPHONETIC_VERSION);
            return 0;
        }
    }
    ZxApplication app(argc, argv);
    ZxApplication::setApplicationName(QStringLiteral("zphonetic-studio"));
    ZxApplication::setApplicationVersion(QStringLiteral(ZPHONETIC_VERSION));
    ZxApplication::setDesktopFileName(QStringLiteral("zphonetic-studio"));
    // A window program: the add-on's warning and the studio's own errors are real message boxes,
    // on any display.
    minihost::setShowMessageBoxes(true);
    // With feature 0x1000018 off the add-on asks the host's reading service: the same engine.
    minihost::offerEngineReadingService();
    studiotranslation::install();

    const QStringList arguments = ZxApplication::arguments().mid(1);
    if (arguments.size() > 1) {
        std::fprintf(stderr, "zphonetic-studio: give one deck at most (see --help)\n");
        return 2;
    }
    int status = 0;
    {
        StudioWindow window;
        window.show();
        // A deck that cannot be read is reported in a message box; the window stays, empty.
        if (!arguments.isEmpty()) window.openFile(arguments.first());
        status = ZxApplication::exec();
    }
    minihost::unregisterService(SID_ZReadingService);
    return status;
}
