// SPDX-License-Identifier: MIT
// zphonetic render DECK -o DIR: slides drawn to PNG files by the host's slide renderer, the one
// the studio draws with, headless.
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <cstdio>

#include "minihost/nvo/printable.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxrender/sliderenderer.h"
#include "subcommands.h"

namespace {

constexpr int kDefaultWidth = 1280;
constexpr int kMaxWidth = 8000;  // a slide 8000 pixels wide is a poster; more is a mistake

struct Options {
    QString deck;
    QString output;
    int slide = 0;  // 0: every slide
    int width = kDefaultWidth;
};

// Returns 0, or the exit status of the error it reported.
int parseArguments(const QStringList& arguments, Options* options) {
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        const bool takesValue =
            argument == QLatin1String("-o") || argument == QLatin1String("--output") ||
            argument == QLatin1String("--slide") || argument == QLatin1String("--width");
        if (takesValue && i + 1 >= arguments.size())
            return reportError(argument, QStringLiteral("needs a value"));
        bool ok = true;
        if (argument == QLatin1String("-o") || argument == QLatin1String("--output")) {
            options->output = arguments.at(++i);
        } else if (argument == QLatin1String("--slide")) {
            const QString value = arguments.at(++i);
            options->slide = value.toInt(&ok);
            if (!ok || options->slide < 1)
                return reportError(
                    argument,
                    QStringLiteral("\"%1\" is not a slide number (1, 2, ...)").arg(value));
        } else if (argument == QLatin1String("--width")) {
            const QString value = arguments.at(++i);
            options->width = value.toInt(&ok);
            if (!ok || options->width < 1 || options->width > kMaxWidth)
                return reportError(argument, QStringLiteral("\"%1\" is not a width in pixels "
                                                            "(1 to %2)")
                                                 .arg(value)
                                                 .arg(kMaxWidth));
        } else if (options->deck.isEmpty() && !argument.startsWith(QLatin1Char('-'))) {
            options->deck = argument;
        } else {
            return reportError(argument,
                               QStringLiteral("unexpected argument (see zphonetic render --help)"));
        }
    }
    if (options->deck.isEmpty())
        return reportError(QStringLiteral("render"), QStringLiteral("needs a DECK"));
    if (options->output.isEmpty())
        return reportError(options->deck, QStringLiteral("needs an output folder: -o DIR"));
    return 0;
}

// Whether `path` may be written: it does not exist, or it is a PNG file (a slide drawn before).
// Anything else of that name is someone's and is never replaced.
bool mayReplace(const QString& path) {
    const QFileInfo info(path);
    if (!info.exists() && !info.isSymLink()) return true;
    if (!info.isFile() || info.isSymLink()) return false;
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.read(8) == QByteArray("\x89PNG\r\n\x1a\n", 8);
}

}  // namespace

int runRender(const QStringList& arguments) {
    if (arguments.size() == 1 && arguments.first() == QLatin1String("--help")) {
        std::printf(
            "Usage: zphonetic render DECK -o DIR [--slide N] [--width PX]\n\n"
            "Draws the slides of DECK as the studio draws them into DIR/slide-N.png, one file a\n"
            "slide (N from 1), headless. DIR is made when it does not exist. A file of that name\n"
            "that is not a PNG picture is never replaced: the command stops there.\n\n"
            "  -o, --output DIR  the folder of the pictures\n"
            "  --slide N         only slide N\n"
            "  --width PX        the pictures' width in pixels (default %d); their height keeps\n"
            "                    the slide's proportions\n\n"
            "Prints each file written.\n",
            kDefaultWidth);
        return 0;
    }
    Options options;
    if (const int status = parseArguments(arguments, &options)) return status;
    QString error;
    const std::unique_ptr<minihost::Deck> deck = minihost::Deck::loadFile(options.deck, &error);
    if (!deck) return reportFileError(options.deck, error);
    if (options.slide > deck->slideCount())
        return reportError(options.deck, QStringLiteral("there is no slide %1 (the deck has %2)")
                                             .arg(options.slide)
                                             .arg(deck->slideCount()));
    const QFileInfo folder(options.output);
    if (folder.exists() && !folder.isDir())
        return reportError(options.output, QStringLiteral("is a file, not a folder"));
    if (!QDir().mkpath(options.output))
        return reportError(options.output, QStringLiteral("cannot be made"));

    const int first = options.slide ? options.slide : 1;
    const int last = options.slide ? options.slide : deck->slideCount();
    for (int slide = first; slide <= last; ++slide) {
        const QString path =
            QDir(options.output).filePath(QStringLiteral("slide-%1.png").arg(slide));
        if (!mayReplace(path))
            return reportError(path, QStringLiteral("exists and is not a slide picture: not "
                                                    "replaced"));
        const QImage image = minihost::renderSlide(*deck, slide, options.width);
        // Written whole or not at all: a failure leaves what was there.
        QSaveFile file(path);
        if (!file.open(QIODevice::WriteOnly) || !image.save(&file, "PNG") || !file.commit())
            return reportError(path,
                               QStringLiteral("cannot be written: %1").arg(file.errorString()));
        std::printf("%s\n", minihost::printable(path).toLocal8Bit().constData());
    }
    return 0;
}
