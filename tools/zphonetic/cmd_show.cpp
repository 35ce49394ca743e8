// SPDX-License-Identifier: MIT
// zphonetic show DECK: what is on each slide, with the shape ids a selection names.
#include <QTextStream>
#include <cstdio>

#include "minihost/nvo/printable.h"
#include "minihost/slxcore/deck.h"
#include "subcommands.h"

namespace {

// Paragraph and line breaks written as \r and \v, so every unit of the text stays visible and
// positions can be counted off the listing; every other control character as \x1b (a text must
// not drive the terminal), after backslashes are doubled, so that an escape is never text.
QString visible(const QString& text) {
    QString out;
    for (QChar c : text) {
        if (c == QLatin1Char('\r'))
            out += QStringLiteral("\\r");
        else if (c == QLatin1Char('\v'))
            out += QStringLiteral("\\v");
        else if (c == QLatin1Char('\\') || c == QLatin1Char('"'))
            out += QLatin1Char('\\') + QString(c);
        else
            out += c;
    }
    return minihost::printable(out);
}

QString number(double value) {
    return QString::number(value, 'g', 6);
}

}  // namespace

int runShow(const QStringList& args) {
    if (args.size() == 1 && args.first() == QLatin1String("--help")) {
        std::printf(
            "Usage: zphonetic show DECK\n\n"
            "Lists every slide of DECK with its shapes: the id that selects a shape, its\n"
            "kind, name and box in points, its text (paragraph breaks shown as \\r, line\n"
            "breaks as \\v, so positions can be counted off) and the format of its first\n"
            "character.\n");
        return 0;
    }
    if (args.size() != 1)
        return reportError(QStringLiteral("show"), QStringLiteral("usage: zphonetic show DECK"));
    QString error;
    const std::unique_ptr<minihost::Deck> deck = minihost::Deck::loadFile(args.first(), &error);
    if (!deck) return reportFileError(args.first(), error);
    QTextStream out(stdout);
    const int slides = deck->slideCount();
    out << minihost::printable(args.first()) << ": " << slides
        << (slides == 1 ? " slide" : " slides") << ", " << number(deck->slideSize().width())
        << " x " << number(deck->slideSize().height()) << " pt\n";
    for (int slide = 1; slide <= slides; ++slide) {
        const QList<minihost::ShapeInfo> shapes = deck->shapes(slide);
        out << "slide " << slide << ": " << shapes.size()
            << (shapes.size() == 1 ? " shape\n" : " shapes\n");
        for (const minihost::ShapeInfo& shape : shapes) {
            out << "  shape " << shape.id << " \"" << visible(shape.name) << "\" " << shape.kind;
            if (shape.box.isNull())
                out << ", placed by its layout";
            else
                out << " at " << number(shape.box.left()) << ", " << number(shape.box.top()) << ", "
                    << number(shape.box.width()) << " x " << number(shape.box.height()) << " pt";
            if (shape.followsText) out << ", follows its text";
            out << '\n';
            if (!shape.hasTextFrame) continue;
            out << "    text (" << shape.text.size() << " units): \"" << visible(shape.text)
                << "\"\n";
            out << "    font: " << minihost::printable(shape.fontName) << ' '
                << number(shape.fontSize) << " pt" << (shape.bold ? " bold" : "") << ", colour #"
                << QStringLiteral("%1").arg(shape.rgb, 6, 16, QLatin1Char('0')).toUpper() << '\n';
        }
    }
    out.flush();
    return 0;
}
