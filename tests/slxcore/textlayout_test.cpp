// SPDX-License-Identifier: MIT
// The text layout's rules, on text frames made here: where lines break (East Asian text between
// any two characters, closing punctuation never first, opening punctuation never last, Latin
// text at spaces), alignment, indents, line and paragraph spacing, autofit, character spacing,
// the space between scripts, anchoring, shapes that follow their text, and the positions a
// person edits with. Ideographs are one size wide in every East Asian typeface, so most
// expectations here are exact.
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

#include "decktestutil.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/textlayout.h"
#include "qtprinters.h"

using minihost::Autofit;
using minihost::DrawnShape;
using minihost::TextAlign;
using minihost::TextAnchor;
using minihost::TextFormat;
using minihost::TextLayout;
using minihost::TextLine;
using minihost::TextParagraph;

namespace {

TextFormat format(float size, float spacing = 0) {
    TextFormat f;
    f.latinFont = QStringLiteral("DejaVu Sans");
    f.eastAsianFont = QStringLiteral("Noto Sans CJK SC");
    f.size = size;
    f.characterSpacing = spacing;
    return f;
}

TextParagraph paragraph(const QString& text, float size = 20, TextAlign align = TextAlign::Left) {
    TextParagraph p;
    p.text = text;
    p.endFormat = format(size);
    if (!text.isEmpty())
        p.runs << minihost::TextRun{0, static_cast<int>(text.size()), format(size)};
    p.align = align;
    return p;
}

// A shape at (100, 50), `width` x 300 points, without insets, holding `paragraphs`.
DrawnShape shape(QList<TextParagraph> paragraphs, double width = 100) {
    DrawnShape s;
    s.id = 2;
    s.hasText = true;
    s.boxKnown = true;
    s.box = QRectF(100, 50, width, 300);
    s.text.insets = QMarginsF(0, 0, 0, 0);
    int start = 0;
    for (TextParagraph& p : paragraphs) {
        p.start = start;
        for (minihost::TextRun& run : p.runs) run.start += start;
        start += static_cast<int>(p.text.size()) + 1;
    }
    s.text.paragraphs = paragraphs;
    return s;
}

// The text of each line.
QStringList lineTexts(const TextLayout& layout, const QString& text) {
    QStringList lines;
    for (const TextLine& line : layout.lines())
        lines << text.mid(line.start, line.end - line.start);
    return lines;
}

QStringList linesOf(const QString& text, double width = 100, float size = 20) {
    return lineTexts(TextLayout(shape({paragraph(text, size)}, width)), text);
}

const QString kTen = QStringLiteral("一二三四五六七八九十");

TEST(TextLayoutBreaks, EastAsianTextBreaksBetweenAnyTwoCharacters) {
    // Five ideographs of 20 pt fill 100 points.
    EXPECT_EQ(linesOf(kTen),
              (QStringList{QStringLiteral("一二三四五"), QStringLiteral("六七八九十")}));
    EXPECT_EQ(linesOf(kTen, 99.9),
              (QStringList{QStringLiteral("一二三四"), QStringLiteral("五六七八"),
                           QStringLiteral("九十")}));
}

TEST(TextLayoutBreaks, ClosingPunctuationNeverStartsALine) {
    for (const QString& mark :
         {QStringLiteral("，"), QStringLiteral("。"), QStringLiteral("、"), QStringLiteral("；"),
          QStringLiteral("："), QStringLiteral("？"), QStringLiteral("！"), QStringLiteral("）"),
          QStringLiteral("」"), QStringLiteral("』"), QStringLiteral("】"), QStringLiteral("》"),
          QStringLiteral("〉"), QStringLiteral("”"), QStringLiteral("…")}) {
        SCOPED_TRACE(mark.toStdString());
        EXPECT_EQ(linesOf(QStringLiteral("一二三四五") + mark + QStringLiteral("六七")),
                  (QStringList{QStringLiteral("一二三四"),
                               QStringLiteral("五") + mark + QStringLiteral("六七")}));
    }
    // Two in a row move the character before both; Latin closing marks count too.
    EXPECT_EQ(linesOf(QStringLiteral("一二三四五、。六")),
              (QStringList{QStringLiteral("一二三四"), QStringLiteral("五、。六")}));
    EXPECT_EQ(linesOf(QStringLiteral("一二三四五,六")),
              (QStringList{QStringLiteral("一二三四"), QStringLiteral("五,六")}));
}

TEST(TextLayoutBreaks, OpeningPunctuationNeverEndsALine) {
    for (const QString& mark :
         {QStringLiteral("（"), QStringLiteral("「"), QStringLiteral("『"), QStringLiteral("【"),
          QStringLiteral("《"), QStringLiteral("〈"), QStringLiteral("“")}) {
        SCOPED_TRACE(mark.toStdString());
        EXPECT_EQ(linesOf(QStringLiteral("一二三四") + mark + QStringLiteral("五六")),
                  (QStringList{QStringLiteral("一二三四"), mark + QStringLiteral("五六")}));
    }
}

TEST(TextLayoutBreaks, LatinTextBreaksAtSpacesAndLongWordsWhereTheyMust) {
    const QString text = QStringLiteral("ab cd ef gh ij kl mn");
    const QStringList lines = linesOf(text, 60);
    ASSERT_GT(lines.size(), 1);
    for (const QString& line : lines) {
        // Every line ends with a whole word (and the space it wrapped at).
        EXPECT_TRUE(line.endsWith(QChar(' ')) || line == lines.last()) << line.toStdString();
        EXPECT_FALSE(line.startsWith(QChar(' '))) << line.toStdString();
    }
    EXPECT_EQ(lines.join(QString()), text);
    // A word longer than the line is cut where the line is full.
    const QStringList cut = linesOf(QString(40, QChar('a')), 60);
    ASSERT_GT(cut.size(), 1);
    EXPECT_EQ(cut.join(QString()), QString(40, QChar('a')));
    // A Latin word among Chinese moves whole to the next line.
    EXPECT_EQ(linesOf(QStringLiteral("一二三abcdef")),
              (QStringList{QStringLiteral("一二三"), QStringLiteral("abcdef")}));
}

TEST(TextLayoutBreaks, LineBreaksAndEmptyParagraphsMakeLinesOfTheirOwn) {
    const QString text = QStringLiteral("一二\v三\v");
    const TextLayout layout(shape({paragraph(text), paragraph(QString())}));
    ASSERT_EQ(layout.lines().size(), 4u);
    EXPECT_EQ(lineTexts(layout, text + QStringLiteral("\r")),
              (QStringList{QStringLiteral("一二"), QStringLiteral("三"), QString(), QString()}));
    EXPECT_EQ(layout.lines()[3].paragraph, 1);
    // The break closing a line is not on it; it sits after its last character.
    EXPECT_EQ(layout.lines()[0].end, 2);
    EXPECT_EQ(layout.lineOf(2), 0);
    EXPECT_DOUBLE_EQ(layout.place(2).left, layout.place(1).right);
    EXPECT_EQ(layout.lineOf(3), 1);
    EXPECT_EQ(layout.lineOf(5), 2);  // the paragraph's end
    EXPECT_EQ(layout.lineOf(6), 3);  // the text's end
    EXPECT_EQ(layout.length(), 6);
}

TEST(TextLayoutAlignment, LeftCentredAndRightLinesSitInTheBoxLessItsInsets) {
    DrawnShape s = shape({paragraph(QStringLiteral("一二"), 20, TextAlign::Left),
                          paragraph(QStringLiteral("一二"), 20, TextAlign::Center),
                          paragraph(QStringLiteral("一二"), 20, TextAlign::Right)},
                         200);
    s.text.insets = QMarginsF(10, 5, 20, 5);
    const TextLayout layout(s);
    ASSERT_EQ(layout.lines().size(), 3u);
    const TextLine& left = layout.lines()[0];
    EXPECT_DOUBLE_EQ(left.left, 110);
    EXPECT_DOUBLE_EQ(left.right, 150);
    EXPECT_DOUBLE_EQ(layout.place(0).left, 110);
    EXPECT_DOUBLE_EQ(layout.place(1).right, 150);
    // Centred in 110..280; right-aligned at 280.
    EXPECT_DOUBLE_EQ((layout.lines()[1].left + layout.lines()[1].right) / 2, 195);
    EXPECT_DOUBLE_EQ(layout.lines()[2].right, 280);
    EXPECT_DOUBLE_EQ(layout.place(7).right, 280);
}

TEST(TextLayoutAlignment, SpacesAtAWrapHangAndAtTheEndCount) {
    // Right-aligned: the space at which the first line wraps is not aligned, the last one's is.
    const QString text = QStringLiteral("一二三四 五六七 ");
    const TextLayout layout(shape({paragraph(text, 20, TextAlign::Right)}, 100));
    ASSERT_EQ(lineTexts(layout, text),
              (QStringList{QStringLiteral("一二三四 "), QStringLiteral("五六七 ")}));
    EXPECT_DOUBLE_EQ(layout.lines()[0].right, 200);
    EXPECT_DOUBLE_EQ(layout.place(3).right, 200);
    EXPECT_DOUBLE_EQ(layout.lines()[1].right, 200);
    EXPECT_LT(layout.place(7).right, 199);  // 七 leaves room for the space after it
}

TEST(TextLayoutAlignment, JustifiedLinesFillTheirRoomButTheLastDoesNot) {
    const TextLayout layout(
        shape({paragraph(QStringLiteral("一二三四五六七"), 20, TextAlign::Justify)}, 90));
    ASSERT_EQ(layout.lines().size(), 2u);
    EXPECT_DOUBLE_EQ(layout.lines()[0].right, 190);
    EXPECT_NEAR(layout.place(3).right, 190, 1e-9);
    EXPECT_DOUBLE_EQ(layout.place(0).left, 100);
    EXPECT_DOUBLE_EQ(layout.lines()[1].right, 160);
}

TEST(TextLayoutIndents, MarginsAndFirstLineIndentNarrowTheLines) {
    TextParagraph p = paragraph(kTen);
    p.marginLeft = 20;
    p.indent = 20;
    p.marginRight = 10;
    const TextLayout layout(shape({p}, 150));
    // The first line has 150 - 40 - 10 = 100 points, the others 120.
    ASSERT_EQ(lineTexts(layout, kTen),
              (QStringList{QStringLiteral("一二三四五"), QStringLiteral("六七八九十")}));
    EXPECT_DOUBLE_EQ(layout.lines()[0].left, 140);
    EXPECT_DOUBLE_EQ(layout.lines()[1].left, 120);
    // Right-aligned lines end at the right margin.
    p.align = TextAlign::Right;
    const TextLayout right(shape({p}, 150));
    EXPECT_DOUBLE_EQ(right.lines()[1].right, 240);
}

TEST(TextLayoutIndents, ABulletHangsAtTheIndentAndTheTextStartsAtTheMargin) {
    TextParagraph p = paragraph(kTen);
    p.marginLeft = 30;
    p.indent = -30;
    p.bullet = QStringLiteral("•");
    const TextLayout layout(shape({p}, 130));
    EXPECT_DOUBLE_EQ(layout.lines()[0].left, 130);
    EXPECT_DOUBLE_EQ(layout.lines()[1].left, 130);
    EXPECT_EQ(layout.lines()[0].end, 5);
}

TEST(TextLayoutIndents, ABulletWithoutRoomPushesTheFirstLineRight) {
    // No hanging indent: the bullet at the margin, the first line's text after it, the next
    // lines at the margin.
    TextParagraph p = paragraph(kTen);
    p.marginLeft = 0;
    p.indent = 0;
    p.bullet = QStringLiteral("•");
    const TextLayout layout(shape({p}, 130));
    const double bullet = layout.lines()[0].left - 100;  // the box's text starts at 100
    EXPECT_GT(bullet, 4);
    EXPECT_LT(bullet, 20);
    EXPECT_DOUBLE_EQ(layout.lines()[1].left, 100);
    // A larger bullet (its own size) pushes further.
    p.bulletScale = 2;
    const TextLayout larger(shape({p}, 130));
    EXPECT_NEAR(larger.lines()[0].left - 100, 2 * bullet, 1);
}

TEST(TextLayoutSpacing, SingleLinesAreOnePointTwoSizesHighWithTheBaselineOneSizeDown) {
    const TextLayout layout(shape({paragraph(kTen)}));
    const TextLine& first = layout.lines()[0];
    EXPECT_DOUBLE_EQ(first.top, 50);
    EXPECT_DOUBLE_EQ(first.ascent, 20);
    EXPECT_DOUBLE_EQ(first.descent, 4);
    EXPECT_DOUBLE_EQ(first.height, 24);
    EXPECT_DOUBLE_EQ(first.baseline, 70);
    EXPECT_DOUBLE_EQ(layout.lines()[1].baseline, 94);
    // The largest size on a line sets its height.
    TextParagraph mixed = paragraph(QStringLiteral("一二"));
    mixed.runs = {{0, 1, format(20)}, {1, 1, format(40)}};
    const TextLayout big(shape({mixed}));
    EXPECT_DOUBLE_EQ(big.lines()[0].baseline, 90);
    EXPECT_DOUBLE_EQ(big.lines()[0].height, 48);
}

TEST(TextLayoutSpacing, MultiplesAddRoomAboveAndReductionsKeepPartOfTheAscent) {
    TextParagraph wide = paragraph(kTen);
    wide.lineSpacing = 1.5f;
    const TextLayout opened(shape({wide}));
    EXPECT_DOUBLE_EQ(opened.lines()[0].height, 36);
    EXPECT_DOUBLE_EQ(opened.lines()[0].baseline, 50 + 20 + 12);
    EXPECT_DOUBLE_EQ(opened.lines()[1].baseline - opened.lines()[0].baseline, 36);
    TextParagraph narrow = paragraph(kTen);
    narrow.lineSpacing = 0.8f;
    const TextLayout closed(shape({narrow}));
    EXPECT_NEAR(closed.lines()[0].height, 19.2, 1e-5);
    EXPECT_NEAR(closed.lines()[0].baseline, 50 + 19.2 * 0.8, 1e-5);
    EXPECT_NEAR(closed.lines()[1].baseline - closed.lines()[0].baseline, 19.2, 1e-5);
}

TEST(TextLayoutSpacing, ExactSpacingMakesEveryLineThatHigh) {
    TextParagraph p = paragraph(kTen);
    p.lineSpacingPoints = 40;
    const TextLayout layout(shape({p}));
    EXPECT_DOUBLE_EQ(layout.lines()[0].height, 40);
    EXPECT_DOUBLE_EQ(layout.lines()[0].baseline, 50 + 40 - 4);
    EXPECT_DOUBLE_EQ(layout.lines()[1].baseline, 50 + 80 - 4);
}

TEST(TextLayoutSpacing, SpaceBeforeAndAfterParagraphsButNotAroundTheText) {
    TextParagraph p = paragraph(QStringLiteral("一"));
    p.spaceBefore = 10;
    p.spaceAfter = 6;
    DrawnShape s = shape({p, p});
    s.text.anchor = TextAnchor::Bottom;
    const TextLayout layout(s);
    EXPECT_DOUBLE_EQ(layout.lines()[1].top - layout.lines()[0].top, 24 + 6 + 10);
    // Anchored at the bottom: the last paragraph's space after is not laid out either.
    EXPECT_DOUBLE_EQ(layout.lines()[1].top + layout.lines()[1].height, 350);
    EXPECT_DOUBLE_EQ(layout.lines()[0].top, 350 - 24 - 16 - 24);
}

TEST(TextLayoutAutofit, ShrinkingScalesSizesAndReducesMultipleSpacing) {
    TextParagraph p = paragraph(kTen);
    p.lineSpacing = 1.5f;
    DrawnShape s = shape({p});
    s.text.autofit = Autofit::ShrinkText;
    s.text.fontScale = 0.5f;
    s.text.lineSpacingReduction = 0.2f;
    const TextLayout layout(s);
    // Ten characters of 10 pt fit in one line; 1.5 less 0.2 of 12 points.
    ASSERT_EQ(layout.lines().size(), 1u);
    EXPECT_DOUBLE_EQ(layout.lines()[0].ascent, 10);
    EXPECT_NEAR(layout.lines()[0].height, 12 * 1.3, 1e-5);
    EXPECT_DOUBLE_EQ(layout.place(9).right - layout.place(9).left, 10);
}

TEST(TextLayoutCharacterSpacing, FollowsEveryCharacterButTheParagraphsLast) {
    TextParagraph p = paragraph(QStringLiteral("一二三四五六七八"), 20, TextAlign::Center);
    p.runs[0].format.characterSpacing = 5;
    const TextLayout layout(shape({p}));
    // 25 points a character: four on a line of 100.
    ASSERT_EQ(layout.lines().size(), 2u);
    EXPECT_DOUBLE_EQ(layout.place(0).right - layout.place(0).left, 25);
    EXPECT_DOUBLE_EQ(layout.place(1).left, layout.place(0).right);
    // A wrapped line is centred with the spacing after its last character, the paragraph's
    // last line without it.
    EXPECT_DOUBLE_EQ(layout.lines()[0].right - layout.lines()[0].left, 100);
    EXPECT_DOUBLE_EQ(layout.lines()[1].right - layout.lines()[1].left, 95);
    EXPECT_DOUBLE_EQ(layout.lines()[1].left, 102.5);
}

TEST(TextLayoutScripts, EastAsianAndLatinTextAreASpaceApartAndWeakCharactersJoinTheTextBefore) {
    const QString text = QStringLiteral("中a中“中”");
    const TextLayout layout(shape({paragraph(text)}, 400));
    // 0.24 of the size of the character before the border (kept as a float, as every measure
    // of one character: to a millionth of a point).
    EXPECT_NEAR(layout.place(1).left - layout.place(0).right, 4.8, 1e-6);
    EXPECT_NEAR(layout.place(2).left - layout.place(1).right, 4.8, 1e-6);
    // Quotes among Chinese are Chinese: full width, no space around them.
    EXPECT_NEAR(layout.place(3).right - layout.place(3).left, 20, 1e-9);
    EXPECT_DOUBLE_EQ(layout.place(3).left, layout.place(2).right);
    EXPECT_NEAR(layout.place(5).right - layout.place(5).left, 20, 1e-9);
}

TEST(TextLayoutScripts, AVeryLongTextIsMeasuredAsItsShortPieces) {
    // Texts of many thousand units (the readings of a very long text) are shaped in pieces: no
    // character is lost, doubled or measured differently where one piece ends. "Wave" kerns
    // (W and a, V and e), so a piece's edge inside a word would show.
    const QString word = QStringLiteral("Wave ");
    const TextLayout one(shape({paragraph(word)}, 1000));
    QString latin;
    while (latin.size() < 30000) latin += word;
    QString chinese;
    while (chinese.size() < 30000) chinese += kTen;
    const TextLayout many(shape({paragraph(latin), paragraph(chinese)}, 1000));
    // Each paragraph wraps; its lines are compared with the one short text, unit by unit.
    for (const TextLine& line : many.lines()) {
        if (line.paragraph != 0) continue;
        for (int i = line.start; i < line.end; ++i) {
            const int k = i % word.size();
            ASSERT_NEAR(many.place(i).right - many.place(i).left,
                        one.place(k).right - one.place(k).left, 1e-6)
                << i;
        }
    }
    const int chineseStart = static_cast<int>(latin.size()) + 1;
    for (int i = chineseStart; i < many.length(); ++i)
        ASSERT_NEAR(many.place(i).right - many.place(i).left, 20, 1e-6) << i;
    EXPECT_EQ(many.lines().back().end, many.length());
}

TEST(TextLayoutScripts, OneDefinitionOfEastAsianText) {
    for (char32_t c :
         {U'中', U'。', U'（', U'Ａ', U'か', U'ア', U'한', U'ㄅ', U'\U00020BB7', U'\u3000'})
        EXPECT_TRUE(minihost::isEastAsian(c)) << static_cast<unsigned>(c);
    for (char32_t c : {U'A', U'ā', U'1', U'“', U' ', U'—', U'·', U'é'})
        EXPECT_FALSE(minihost::isEastAsian(c)) << static_cast<unsigned>(c);
}

TEST(TextLayoutAnchoring, TopMiddleAndBottomPlaceTheTextInTheBoxLessItsInsets) {
    DrawnShape s = shape({paragraph(QStringLiteral("一"))});
    s.text.insets = QMarginsF(0, 10, 0, 20);
    EXPECT_DOUBLE_EQ(TextLayout(s).lines()[0].top, 60);
    s.text.anchor = TextAnchor::Middle;
    EXPECT_DOUBLE_EQ(TextLayout(s).lines()[0].top, 60 + (270 - 24) / 2.0);
    s.text.anchor = TextAnchor::Bottom;
    EXPECT_DOUBLE_EQ(TextLayout(s).lines()[0].top, 330 - 24);
}

TEST(TextLayoutAnchoring, AShapeThatFollowsItsTextGrowsAwayFromItsAnchor) {
    DrawnShape s = shape({paragraph(kTen)});
    s.text.insets = QMarginsF(5, 4, 5, 4);
    s.text.autofit = Autofit::ShapeFollowsText;
    EXPECT_EQ(TextLayout(s).box(), QRectF(100, 50, 100, 3 * 24 + 8));  // 90 points: 4 a line
    s.text.anchor = TextAnchor::Bottom;
    EXPECT_EQ(TextLayout(s).box(), QRectF(100, 350 - 80, 100, 80));
    s.text.anchor = TextAnchor::Middle;
    EXPECT_EQ(TextLayout(s).box(), QRectF(100, 200 - 40, 100, 80));
    // Without wrapping it is as wide as its text, grown from the side its text is aligned to.
    s.text.anchor = TextAnchor::Top;
    s.text.wrap = false;
    EXPECT_EQ(TextLayout(s).box(), QRectF(100, 50, 210, 32));
    s.text.paragraphs[0].align = TextAlign::Center;
    EXPECT_EQ(TextLayout(s).box(), QRectF(150 - 105, 50, 210, 32));
    s.text.paragraphs[0].align = TextAlign::Right;
    EXPECT_EQ(TextLayout(s).box(), QRectF(200 - 210, 50, 210, 32));
}

TEST(TextLayoutEditing, PositionsCursorAndLineMoves) {
    const QString text = QStringLiteral("一二三四五六七八九十\r一二");
    const TextLayout layout(shape({paragraph(kTen), paragraph(QStringLiteral("一二"))}));
    ASSERT_EQ(layout.lines().size(), 3u);
    EXPECT_EQ(layout.positionAt(QPointF(129, 60)), 1);  // nearer 一|二 than |一
    EXPECT_EQ(layout.positionAt(QPointF(131, 60)), 2);
    EXPECT_EQ(layout.positionAt(QPointF(500, 60)), 5);   // past the first line's end
    EXPECT_EQ(layout.positionAt(QPointF(0, 1000)), 11);  // the last line's start
    EXPECT_EQ(layout.cursorLine(1), QLineF(120, 50, 120, 74));
    EXPECT_EQ(layout.cursorLine(12), QLineF(120, 98, 120, 122));
    EXPECT_EQ(layout.lineStart(7), 5);
    EXPECT_EQ(layout.lineEnd(7), 10);
    EXPECT_EQ(layout.lineEnd(0), 5);
    EXPECT_EQ(layout.verticalMove(2, 1), 7);
    EXPECT_EQ(layout.verticalMove(7, 1), 13);  // the shorter line's end
    EXPECT_EQ(layout.verticalMove(2, -1), 2);  // no line above
    // A wrapped Latin line ends before the space it wrapped at.
    const QString latin = QStringLiteral("abc def ghi jkl");
    const TextLayout words(shape({paragraph(latin)}, 60));
    ASSERT_GT(words.lines().size(), 1u);
    const int end = words.lineEnd(0);
    EXPECT_EQ(latin[end], QChar(' '));
    EXPECT_EQ(words.lines()[1].start, end + 1);
}

TEST(TextLayoutDrawing, DrawsItsTextAndTheSelectionWhereItsCharactersAre) {
    DrawnShape s = shape({paragraph(QStringLiteral("一二三"))});
    s.text.paragraphs[0].runs[0].format.rgb = 0x0000FF;
    const TextLayout layout(s);
    QImage image(300, 200, QImage::Format_RGB32);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        layout.draw(painter, 1, 1, QColor(0xFF, 0, 0));
    }
    // Ink of the text's colour only where its characters are; the selection behind the second.
    int inkLeft = 300, inkRight = -1;
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 300; ++x)
            if (qBlue(image.pixel(x, y)) > 150 && qRed(image.pixel(x, y)) < 100 &&
                qGreen(image.pixel(x, y)) < 100) {
                inkLeft = std::min(inkLeft, x);
                inkRight = std::max(inkRight, x);
                EXPECT_GE(y, 50);
                EXPECT_LT(y, 74);
            }
    EXPECT_GE(inkLeft, 100);
    EXPECT_LE(inkRight, 160);
    EXPECT_EQ(image.pixel(121, 51), qRgb(0xFF, 0, 0));
    EXPECT_EQ(image.pixel(110, 51), qRgb(0xFF, 0xFF, 0xFF));
}

TEST(TextLayoutDrawing, UnderlinesRunUnderEveryCharacter) {
    DrawnShape s = shape({paragraph(QStringLiteral("Underline 下划线"))}, 400);
    auto drawn = [&](bool underline) {
        s.text.paragraphs[0].runs[0].format.underline = underline;
        QImage image(600, 200, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        TextLayout(s).draw(painter);
        return image;
    };
    const QImage plain = drawn(false), underlined = drawn(true);
    const TextLayout layout(s);
    // Around the baseline (70): ink in every column of every character when underlined, and in
    // fewer than half of them without.
    auto inked = [](const QImage& image, int x) {
        for (int y = 69; y <= 74; ++y)
            if (qGray(image.pixel(x, y)) < 160) return true;
        return false;
    };
    int columns = 0, plainInk = 0;
    for (int pos = 0; pos < layout.length(); ++pos) {
        const minihost::CharPlace place = layout.place(pos);
        for (int x = static_cast<int>(place.left) + 1; x < static_cast<int>(place.right) - 1; ++x) {
            ++columns;
            plainInk += inked(plain, x) ? 1 : 0;
            EXPECT_TRUE(inked(underlined, x)) << "no underline at x " << x;
        }
    }
    EXPECT_LT(plainInk, columns / 2);
}

// Each run is drawn in the face it was measured in: bold and italic text as the system draws the
// string in that bold or italic typeface, at the same places (as the glyphs of another face,
// the regular one say, it would not be); East Asian text in its face of a font collection.
TEST(TextLayoutDrawing, EachRunIsDrawnInTheFaceItWasMeasuredIn) {
    auto drawn = [&](const QString& text, bool bold, bool italic, bool bySystem) {
        QImage image(500, 100, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        if (bySystem) {
            QFont font(text[0].unicode() < 0x3000 ? QStringLiteral("DejaVu Sans")
                                                  : QStringLiteral("Noto Sans CJK SC"));
            font.setPixelSize(200);
            font.setBold(bold);
            font.setItalic(italic);
            font.setKerning(true);
            font.setHintingPreference(QFont::PreferNoHinting);
            painter.translate(100, 70);
            painter.scale(0.1, 0.1);
            painter.setFont(font);
            painter.drawText(QPointF(), text);
        } else {
            DrawnShape s = shape({paragraph(text)}, 400);
            s.text.paragraphs[0].runs[0].format.bold = bold;
            s.text.paragraphs[0].runs[0].format.italic = italic;
            TextLayout(s).draw(painter);
        }
        return image;
    };
    for (const QString& text : {QStringLiteral("Hamburgefonstiv"), QStringLiteral("中文排版")}) {
        for (const bool bold : {false, true})
            for (const bool italic : {false, true})
                EXPECT_EQ(drawn(text, bold, italic, false), drawn(text, bold, italic, true))
                    << text.toStdString() << ", bold " << bold << ", italic " << italic;
        EXPECT_NE(drawn(text, true, false, false), drawn(text, false, false, false));
        EXPECT_NE(drawn(text, false, true, false), drawn(text, false, false, false));
    }
}

// ---- through a deck: what drawing resolves, the one-shape call, and the height fit

std::unique_ptr<minihost::Deck> deckOf(const QByteArray& shapes) {
    QString error;
    auto deck =
        minihost::Deck::load(decktest::deckWithShapes(shapes), QStringLiteral("t.pptx"), &error);
    EXPECT_TRUE(deck) << error.toStdString();
    return deck;
}

QByteArray box(const QByteArray& bodyPr, const QByteArray& paragraphs,
               const QByteArray& list = {}) {
    return "<p:sp><p:nvSpPr><p:cNvPr id=\"2\" name=\"TextBox 1\"/><p:cNvSpPr txBox=\"1\"/><p:nvPr/>"
           "</p:nvSpPr><p:spPr><a:xfrm><a:off x=\"1270000\" y=\"1270000\"/><a:ext cx=\"1270000\" "
           "cy=\"254000\"/></a:xfrm><a:prstGeom prst=\"rect\"><a:avLst/></a:prstGeom></p:spPr>"
           "<p:txBody>" +
           bodyPr + "<a:lstStyle>" + list + "</a:lstStyle>" + paragraphs + "</p:txBody></p:sp>";
}

TEST(TextLayoutInADeck, CharacterSpacingAndRightMarginsComeThroughTheListStyle) {
    auto deck =
        deckOf(box("<a:bodyPr/>",
                   "<a:p><a:r><a:rPr lang=\"zh-CN\" sz=\"2000\"/><a:t>一二</a:t></a:r></a:p>"
                   "<a:p><a:r><a:rPr lang=\"zh-CN\" sz=\"2000\" spc=\"-200\"/><a:t>一</a:t>"
                   "</a:r></a:p>",
                   "<a:lvl1pPr marR=\"127000\"><a:defRPr spc=\"500\"/></a:lvl1pPr>"));
    ASSERT_TRUE(deck);
    const minihost::DrawnShape drawn = deck->drawing(1).shapes[0];
    EXPECT_FLOAT_EQ(drawn.text.paragraphs[0].runs[0].format.characterSpacing, 5);
    EXPECT_FLOAT_EQ(drawn.text.paragraphs[1].runs[0].format.characterSpacing, -2);
    EXPECT_FLOAT_EQ(drawn.text.paragraphs[0].marginRight, 10);
    const std::optional<TextLayout> layout = deck->textLayout(1, 2);
    ASSERT_TRUE(layout);
    EXPECT_NEAR(layout->place(0).right - layout->place(0).left, 25, 1e-9);
    EXPECT_NEAR(layout->place(3).right - layout->place(3).left, 18, 1e-9);
    EXPECT_FALSE(deck->textLayout(1, 99));
    EXPECT_FALSE(deck->textLayout(2, 2));
}

TEST(TextLayoutInADeck, AShapeThatFollowsItsTextIsWrittenWithTheHeightTheLayoutGivesIt) {
    // 100 points wide less 7.2 on each side: four 20-point ideographs a line.
    auto deck =
        deckOf(box("<a:bodyPr wrap=\"square\" anchor=\"b\"><a:spAutoFit/></a:bodyPr>",
                   "<a:p><a:r><a:rPr lang=\"zh-CN\" sz=\"2000\"/><a:t>一</a:t></a:r></a:p>"));
    ASSERT_TRUE(deck);
    ASSERT_GT(
        deck->replaceText(1, 2, 1, 0, QStringLiteral("二三四五六七八九"), QStringLiteral("typing")),
        0);
    const QRectF placed = deck->placeOf(1, 2);
    const QRectF laidOut = deck->textLayout(1, 2)->box();
    EXPECT_NEAR(placed.height(), 3 * 24 + 7.2, 1e-3);
    // Anchored at the bottom, it grew upwards: its bottom stayed at 120 points.
    EXPECT_NEAR(placed.bottom(), 120, 1e-3);
    EXPECT_NEAR(laidOut.top(), placed.top(), 1e-3);
    EXPECT_NEAR(laidOut.height(), placed.height(), 1e-3);
}

}  // namespace
