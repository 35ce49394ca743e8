// SPDX-License-Identifier: MIT
// zphonetic: runs the pinyin add-on from the command line, loaded exactly as a host loads it.
#include <QStringList>
#include <cstdio>
#include <cstring>

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

int reportError(const QString& subject, const QString& what) {
    std::fprintf(stderr, "zphonetic: %s: %s\n", subject.toLocal8Bit().constData(),
                 what.toLocal8Bit().constData());
    return 1;
}

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
        ZxApplication app(argc, argv);
        ZxApplication::setApplicationName(QStringLiteral("zphonetic"));
        ZxApplication::setApplicationVersion(QStringLiteral(ZPHONETIC_VERSION));
        QStringList arguments = ZxApplication::arguments();
        arguments.erase(arguments.begin(), arguments.begin() + 2);
        return subcommand.run(arguments);
    }
    return reportError(QString::fromLocal8Bit(first),
                       QStringLiteral("unknown subcommand (see zphonetic --help)"));
}
