// SPDX-License-Identifier: MIT
// The text layout against LibreOffice's rendering. Each case is a one-slide deck read and written
// by the deck's reader and writer, converted to PDF by LibreOffice (all cases in one run), and
// read back with poppler, the library under pdftotext: pdftotext -bbox gives a run of Chinese
// characters as one word, poppler's text extraction gives each character's box. Every line must
// break where LibreOffice breaks it, and every character's centre and every line's baseline must
// be where LibreOffice puts them.
//
// Largest differences measured (LibreOffice 7.4.7, poppler 22.12, DejaVu and Noto CJK fonts):
//   character centres  0.060 em   on the line mixing Latin text and digits with Chinese, at its
//                                 end; every other case within 0.021 em. LibreOffice's advances
//                                 are whole pixels of 600 dpi (an ideograph of 28 pt advances 233
//                                 pixels, 27.96 pt, not 28), so its long lines drift from exact
//                                 advances by a few hundredths of an em.
//   line baselines     0.0052 em  (its positions are rounded to a hundredth of a millimetre)
// The tolerances below are a little above them.
//
// Poppler gives a character's box from 0.95 size above its baseline to 0.35 below (the fonts
// LibreOffice embeds carry no usable ascent), so a box 1.3 sizes high has its baseline at 0.95
// / 1.3 of its height; the test checks that the boxes are that high.
#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>
#include <algorithm>
#include <cmath>

#include "decktestutil.h"
#include "libreofficedecks.h"
#include "minihost/slxcore/deck.h"
#include "qtprinters.h"

using lotest::kNotoFonts;
using lotest::paragraph;
using lotest::placeholderDeck;
using lotest::textBox;
using minihost::Deck;

namespace {

constexpr double kCentreTolerance = 0.07;    // em
constexpr double kBaselineTolerance = 0.01;  // em

struct Case {
    QString name;
    QByteArray deck;
    double spacing = 0;  // the character spacing the case writes, points
};

std::vector<Case> cases() {
    const QString poem[] = {QStringLiteral("床前明月光，"), QStringLiteral("疑是地上霜。"),
                            QStringLiteral("举头望明月，"), QStringLiteral("低头思故乡。")};
    QByteArray centred;
    for (const QString& line : poem) centred += paragraph(line, 28, "<a:pPr algn=\"ctr\"/>");
    const QString prose = QStringLiteral(
        "春眠不觉晓，处处闻啼鸟。夜来风雨声，花落知多少。《春晓》是孟浩然的作品（唐代），"
        "学生用Python 3整理了全文，共20个字。");
    const QByteArray spacing150 = "<a:pPr><a:lnSpc><a:spcPct val=\"150000\"/></a:lnSpc></a:pPr>";
    const QByteArray spacing80 = "<a:pPr><a:lnSpc><a:spcPct val=\"80000\"/></a:lnSpc></a:pPr>";
    const QByteArray exact = "<a:pPr><a:lnSpc><a:spcPts val=\"4000\"/></a:lnSpc></a:pPr>";
    const QByteArray indents =
        "<a:pPr marL=\"254000\" indent=\"-127000\"><a:spcBef><a:spcPts "
        "val=\"1800\"/></a:spcBef><a:spcAft><a:spcPts val=\"600\"/>"
        "</a:spcAft></a:pPr>";
    const QString twoLines = QStringLiteral("缩进的段落要换行才看得出首行的位置。");
    return {
        {QStringLiteral("one line"),
         decktest::deckWithShapes(
             textBox(40, 40, 880, 60, paragraph(QStringLiteral("床前明月光，疑是地上霜。"), 28)))},
        {QStringLiteral("centred poem of four lines at 28 pt"),
         decktest::deckWithShapes(textBox(180, 60, 600, 240, centred))},
        {QStringLiteral("a paragraph that wraps"),
         decktest::deckWithShapes(
             textBox(40, 40, 300, 400, paragraph(prose, 24, {}, {}, kNotoFonts)))},
        {QStringLiteral("Latin text that wraps"),
         decktest::deckWithShapes(
             textBox(40, 40, 300, 300,
                     paragraph(QStringLiteral("The quick brown fox jumps over the lazy dog by the "
                                              "riverbank, twice in 2024."),
                               24)))},
        {QStringLiteral("a right-aligned line"),
         decktest::deckWithShapes(textBox(
             100, 100, 700, 60,
             paragraph(QStringLiteral("右对齐的一行文字，靠右。"), 28, "<a:pPr algn=\"r\"/>")))},
        {QStringLiteral("Latin letters and digits among Chinese"),
         decktest::deckWithShapes(
             textBox(40, 40, 880, 60,
                     paragraph(QStringLiteral("学习Python 3和C++很有趣，2024年的课“ABC”。"), 28)))},
        {QStringLiteral("18 pt"),
         decktest::deckWithShapes(textBox(
             40, 40, 400, 200,
             paragraph(QStringLiteral("小字十八磅的文字，一样要准确；它会换行，看看第二行。"),
                       18)))},
        {QStringLiteral("60 pt"),
         decktest::deckWithShapes(
             textBox(40, 40, 500, 300,
                     paragraph(QStringLiteral("大字六十磅，换行。"), 60, {}, {}, kNotoFonts)))},
        {QStringLiteral("a placeholder that inherits its size"),
         placeholderDeck(
             QStringLiteral("占位符里的文字从母版得到三十二磅的字号，并且会换行到第二行。"))},
        {QStringLiteral("widened character spacing"),
         decktest::deckWithShapes(
             textBox(40, 40, 400, 300,
                     paragraph(QStringLiteral("字距加宽的文字会换行，居中对齐。"), 28,
                               "<a:pPr algn=\"ctr\"/>", "spc=\"600\""))),
         6.0},
        {QStringLiteral("widened character spacing, the paragraph's last character fitting "
                        "only without its spacing"),
         decktest::deckWithShapes(
             textBox(40, 40, 400, 300,
                     paragraph(QStringLiteral("品，学生整理了全文。"), 24, {}, "spc=\"1549\""))),
         15.49},
        {QStringLiteral("line spacing as a percentage"),
         decktest::deckWithShapes(textBox(
             40, 40, 300, 400,
             paragraph(QStringLiteral("一倍半行距的段落，有两行以上的文字。"), 24, spacing150) +
                 paragraph(QStringLiteral("八成行距的段落，也有两行以上的文字。"), 24,
                           spacing80)))},
        {QStringLiteral("exact line spacing"),
         decktest::deckWithShapes(textBox(
             40, 40, 300, 400,
             paragraph(QStringLiteral("固定行距四十磅的段落，有好几行文字，一行一行往下排。"), 24,
                       exact)))},
        {QStringLiteral("indents and paragraph spacing"),
         decktest::deckWithShapes(
             textBox(40, 40, 300, 400,
                     paragraph(twoLines, 24, indents) + paragraph(twoLines, 24, indents)))},
        {QStringLiteral("not wrapping, left-aligned, in a wider box"),
         decktest::deckWithShapes(
             textBox(40, 40, 880, 200,
                     paragraph(QStringLiteral("不换行的文字"), 24) +
                         paragraph(QStringLiteral("第二段更长一些的不换行文字"), 24),
                     "wrap=\"none\""))},
        {QStringLiteral("not wrapping, centred, in a wider box"),
         decktest::deckWithShapes(
             textBox(40, 40, 880, 200,
                     paragraph(QStringLiteral("不换行的文字"), 24, "<a:pPr algn=\"ctr\"/>") +
                         paragraph(QStringLiteral("第二段更长一些的不换行文字"), 24),
                     "wrap=\"none\""))},
        {QStringLiteral("not wrapping, right-aligned, in a wider box"),
         decktest::deckWithShapes(
             textBox(40, 40, 880, 200,
                     paragraph(QStringLiteral("不换行的文字"), 24, "<a:pPr algn=\"r\"/>") +
                         paragraph(QStringLiteral("第二段更长一些的不换行文字"), 24),
                     "wrap=\"none\""))},
        {QStringLiteral("anchored at the bottom"),
         decktest::deckWithShapes(textBox(40, 40, 300, 300,
                                          paragraph(QStringLiteral("靠下对齐的文字，两行。"), 24),
                                          "wrap=\"square\" anchor=\"b\""))},
    };
}

#ifdef ZPHONETIC_HAVE_POPPLER_QT5

TEST(TextLayoutAgainstLibreOffice, LinesBreakAndCharactersSitWhereLibreOfficePutsThem) {
    const QString soffice = lotest::soffice();
    if (soffice.isEmpty())
        GTEST_SKIP()
            << "LibreOffice (soffice) is not installed: the layout is not compared with it";
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const std::vector<Case> all = cases();
    QStringList files;
    std::vector<std::unique_ptr<Deck>> decks;
    for (std::size_t i = 0; i < all.size(); ++i) {
        QString error;
        auto deck = Deck::load(all[i].deck, all[i].name, &error);
        ASSERT_TRUE(deck) << error.toStdString();
        files << dir.filePath(QStringLiteral("case%1.pptx").arg(i));
        ASSERT_TRUE(deck->save(files.last(), &error)) << error.toStdString();
        decks.push_back(std::move(deck));
    }
    QString output;
    ASSERT_TRUE(lotest::convertToPdf(soffice, files, dir.path(), &output))
        << "soffice did not finish";

    double worstCentre = 0, worstBaseline = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        SCOPED_TRACE(all[i].name.toStdString());
        const auto theirs = lotest::pdfLines(dir.filePath(QStringLiteral("case%1.pdf").arg(i)));
        ASSERT_FALSE(theirs.empty()) << "no text in LibreOffice's PDF: " << output.toStdString();
        const std::optional<minihost::TextLayout> ours = decks[i]->textLayout(1, 2);
        ASSERT_TRUE(ours);
        const QString text = decks[i]->text(1, 2);
        // Our lines with text, as the PDF has them (no spaces, no empty lines).
        std::vector<const minihost::TextLine*> lines;
        for (const minihost::TextLine& line : ours->lines())
            if (!text.mid(line.start, line.end - line.start).trimmed().isEmpty())
                lines.push_back(&line);
        ASSERT_EQ(lines.size(), theirs.size());
        for (std::size_t n = 0; n < lines.size(); ++n) {
            const minihost::TextLine& line = *lines[n];
            QString ourText, theirText;
            std::vector<int> positions;
            for (int pos = line.start; pos < line.end; ++pos)
                if (!text[pos].isSpace()) {
                    ourText += text[pos];
                    positions.push_back(pos);
                }
            for (const lotest::Glyph& g : theirs[n]) theirText += g.c;
            ASSERT_EQ(ourText, theirText) << "line " << n;
            const double em = line.ascent;
            for (std::size_t k = 0; k < positions.size(); ++k) {
                const lotest::Glyph& g = theirs[n][k];
                EXPECT_NEAR(g.height / 1.3, em, 0.02 * em)
                    << "poppler's boxes are not 1.3 sizes high";
                const minihost::CharPlace place = ours->place(positions[k]);
                const double ourCentre = (place.left + place.right - all[i].spacing) / 2;
                const double theirCentre =
                    g.left + (g.width - (g.lastOfWord ? 0 : all[i].spacing)) / 2;
                const double centre = std::abs(ourCentre - theirCentre) / em;
                const double baseline = std::abs(line.baseline - g.baseline) / em;
                worstCentre = std::max(worstCentre, centre);
                worstBaseline = std::max(worstBaseline, baseline);
                EXPECT_LE(centre, kCentreTolerance)
                    << "line " << n << " character " << ourText.toStdString() << "[" << k
                    << "]: ours " << ourCentre << ", LibreOffice's " << theirCentre;
                EXPECT_LE(baseline, kBaselineTolerance)
                    << "line " << n << ": ours " << line.baseline << ", LibreOffice's "
                    << g.baseline;
            }
        }
    }
    std::printf(
        "largest differences from LibreOffice: character centres %.4f em, baselines %.4f em\n",
        worstCentre, worstBaseline);
}

#else

TEST(TextLayoutAgainstLibreOffice, LinesBreakAndCharactersSitWhereLibreOfficePutsThem) {
    GTEST_SKIP() << "built without poppler's Qt library (libpoppler-qt5-dev): the layout is not "
                    "compared with LibreOffice";
}

#endif

}  // namespace
