// SPDX-License-Identifier: MIT
// zphonetic: runs the pinyin add-on from the command line, loaded exactly as a host loads it.
#include <unistd.h>
#include <QDir>
#include <QFile>
#include <QStringList>
#include <cstdio>
#include <cstring>

#include "minihost/nvo/taggerreadings.h"
#include "nvo/zapplication.h"
#include "subcommands.h"

namespace {

struct Subcommand {
    const char* name;
    const char* synopsis;
    const char* summary;
    int (*run)(const QStringList& arguments);
};

// Every subcommand, in the order --help lists them.
const Subcommand kSubcommands[] = {
    {"trigger", "trigger ACTION [--tab TAB_ID]",
     "run one add-on command (PhoneticOneKey, PhoneticSymbol) in an empty host and show what it "
     "did",
     runTrigger},
    {"show", "show DECK",
     "list the slides of DECK with their shapes (and the ids that select them), texts and formats",
     runShow},
    {"readings", "readings TEXT [--json] [--tones TONES]",
     "what the pinyin dialog shows for TEXT: each character, its reading in context, its readings",
     runReadings},
    {"apply",
     "apply DECK -o OUT [--slide N] [--select SELECTION] --style N --bracket N [--pick "
     "I=READING]... [--tones TONES]",
     "the pinyin dialog's round trip on DECK, confirmed with these choices, written to OUT",
     runApply},
    {"onekey", "onekey DECK -o OUT [--slide N] [--select SELECTION] [--all-slides] [--tones TONES]",
     "write the pinyin of the selected texts of DECK into new text boxes (\"PhoneticOneKey\")",
     runOneKey},
    {"words", "words list | add WORD READING... | remove WORD | check | tones [TONES] | path",
     "your own readings of words, and how 一 and 不 are written: list, edit and check them",
     runWords},
    {"render", "render DECK -o DIR [--slide N] [--width PX]",
     "draw the slides of DECK as the studio draws them, to DIR/slide-N.png", runRender},
};

void printHelp() {
    std::printf(
        "Usage: zphonetic SUBCOMMAND [ARGUMENTS]\n"
        "       zphonetic --help | --version\n\n"
        "Writes pinyin readings for the Chinese text of presentations, with the pinyin add-on\n"
        "loaded from <bin>/addons/zphoneticsymbol/ as a host loads it.\n\n"
        "Subcommands:\n");
    for (const Subcommand& subcommand : kSubcommands)
        std::printf("  %s\n      %s\n", subcommand.synopsis, subcommand.summary);
    std::printf("\nRun 'zphonetic SUBCOMMAND --help' for the details of one subcommand.\n");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        printHelp();
        return 2;
    }
    const char* first = argv[1];
    if (!std::strcmp(first, "--help") || !std::strcmp(first, "-h")) {
        printHelp();
        return 0;
    }
    if (!std::strcmp(first, "--version")) {
        std::printf("zphonetic %s\n", ZPHONETIC_VERSION);
        return 0;
    }
    for (const Subcommand& subcommand : kSubcommands) {
        if (std::strcmp(first, subcommand.name) != 0) continue;
        // A command line program: headless unless the user asks for a platform.
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
        // The web engine the add-on brings wants a private runtime directory; without one Qt
        // makes the same one itself, but warns on every run.
        if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
            const QString runtime =
                QDir::tempPath() + QStringLiteral("/runtime-") + QString::number(getuid());
            if (QDir().mkpath(runtime) &&
                QFile::setPermissions(runtime, QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                                   QFileDevice::ExeOwner))
                qputenv("XDG_RUNTIME_DIR", runtime.toLocal8Bit());
        }
        // The subcommand's arguments are its own: Qt must not take "--style N" (apply) as its
        // widget style, so the application sees only the program's name.
        QStringList arguments;
        for (int i = 2; i < argc; ++i) arguments << QString::fromLocal8Bit(argv[i]);
        int applicationArgc = 1;
        ZxApplication app(applicationArgc, argv);
        ZxApplication::setApplicationName(QStringLiteral("zphonetic"));
        ZxApplication::setApplicationVersion(QStringLiteral(ZPHONETIC_VERSION));
        minihost::offerEngineReadingService();
        return subcommand.run(arguments);
    }
    return reportError(QString::fromLocal8Bit(first),
                       QStringLiteral("unknown subcommand (see zphonetic --help)"));
}
