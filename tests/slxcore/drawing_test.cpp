// SPDX-License-Identifier: MIT
// What a slide shows (Deck::drawing) and a person's edits through the host's window (move,
// resize, replace text, delete shapes), each one undo step.
#include <gtest/gtest.h>

#include "decktestutil.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/liveobjects.h"
#include "qtprinters.h"

using minihost::Deck;
using minihost::DrawnShape;

namespace {

std::unique_ptr<Deck> deckOf(const QByteArray& shapes) {
    QString error;
    auto deck = Deck::load(decktest::deckWithShapes(shapes), QStringLiteral("t.pptx"), &error);
    EXPECT_TRUE(deck) << error.toStdString();
    return deck;
}

const DrawnShape* find(const minihost::SlideDrawing& drawing, int id) {
    for (const DrawnShape& s : drawing.shapes)
        if (s.id == id) return &s;
    return nullptr;
}

QRectF boxOf(const Deck& deck, int id) {
    for (const minihost::ShapeInfo& s : deck.shapes(deck.currentSlide()))
        if (s.id == id) return s.box;
    return {};
}

// Moves shapes of slide 1 by (dx, dy) as a drag does: their places, moved, as their new boxes.
bool moveShapes(Deck& deck, const QList<int>& ids, double dx, double dy) {
    QMap<int, QRectF> boxes;
    for (int id : ids) boxes.insert(id, deck.placeOf(1, id).translated(dx, dy));
    return deck.setShapeBoxes(1, boxes, QStringLiteral("move"));
}

// An ellipse with a fill, an outline and a formatted frame; a text box; a scaled group (child
// space half the size of its place) holding a text box.
const QByteArray kShapes =
    "<p:sp><p:nvSpPr><p:cNvPr id=\"2\" name=\"Oval 1\"/><p:cNvSpPr/><p:nvPr/></p:nvSpPr>"
    "<p:spPr><a:xfrm rot=\"5400000\"><a:off x=\"127000\" y=\"254000\"/><a:ext cx=\"2540000\" "
    "cy=\"1270000\"/></a:xfrm>"
    "<a:prstGeom prst=\"ellipse\"><a:avLst/></a:prstGeom>"
    "<a:solidFill><a:srgbClr val=\"FF0000\"><a:lumMod val=\"50000\"/></a:srgbClr></a:solidFill>"
    "<a:ln w=\"25400\"><a:solidFill><a:srgbClr val=\"00FF00\"/></a:solidFill></a:ln></p:spPr>"
    "<p:txBody><a:bodyPr wrap=\"none\" lIns=\"0\" tIns=\"12700\" anchor=\"ctr\">"
    "<a:normAutofit fontScale=\"50000\" lnSpcReduction=\"10000\"/></a:bodyPr>"
    "<a:lstStyle><a:lvl1pPr algn=\"r\"><a:defRPr sz=\"2400\" i=\"1\"/></a:lvl1pPr></a:lstStyle>"
    "<a:p><a:pPr><a:lnSpc><a:spcPct val=\"150000\"/></a:lnSpc><a:spcAft><a:spcPts "
    "val=\"600\"/></a:spcAft></a:pPr>"
    "<a:r><a:rPr lang=\"zh-CN\" b=\"1\" u=\"sng\"><a:solidFill><a:srgbClr val=\"0000FF\">"
    "<a:lumMod val=\"50000\"/></a:srgbClr></a:solidFill>"
    "<a:latin typeface=\"Noto Serif\"/><a:ea typeface=\"Noto Serif CJK "
    "SC\"/></a:rPr><a:t>你好</a:t></a:r>"
    "<a:br><a:rPr lang=\"en-US\"/></a:br><a:r><a:rPr lang=\"en-US\"/><a:t>ab</a:t></a:r></a:p>"
    "<a:p><a:pPr marL=\"342900\" indent=\"-342900\" algn=\"ctr\"><a:buChar char=\"-\"/></a:pPr>"
    "<a:r><a:rPr lang=\"en-US\" strike=\"sngStrike\"/><a:t>x</a:t></a:r><a:endParaRPr "
    "sz=\"1000\"/></a:p>"
    "</p:txBody></p:sp>"
    "<p:sp><p:nvSpPr><p:cNvPr id=\"3\" name=\"TextBox 2\"/><p:cNvSpPr "
    "txBox=\"1\"/><p:nvPr/></p:nvSpPr>"
    "<p:spPr><a:xfrm><a:off x=\"1270000\" y=\"1270000\"/><a:ext cx=\"2540000\" "
    "cy=\"508000\"/></a:xfrm>"
    "<a:prstGeom prst=\"rect\"><a:avLst/></a:prstGeom><a:noFill/></p:spPr>"
    "<p:txBody><a:bodyPr wrap=\"square\"><a:spAutoFit/></a:bodyPr><a:lstStyle/>"
    "<a:p><a:r><a:rPr lang=\"zh-CN\" sz=\"2000\"/><a:t>银行行长</a:t></a:r></a:p></p:txBody></p:sp>"
    "<p:grpSp><p:nvGrpSpPr><p:cNvPr id=\"4\" name=\"Group "
    "3\"/><p:cNvGrpSpPr/><p:nvPr/></p:nvGrpSpPr>"
    "<p:grpSpPr><a:xfrm><a:off x=\"0\" y=\"2540000\"/><a:ext cx=\"2540000\" cy=\"2540000\"/>"
    "<a:chOff x=\"0\" y=\"0\"/><a:chExt cx=\"1270000\" cy=\"1270000\"/></a:xfrm></p:grpSpPr>"
    "<p:sp><p:nvSpPr><p:cNvPr id=\"5\" name=\"TextBox 4\"/><p:cNvSpPr "
    "txBox=\"1\"/><p:nvPr/></p:nvSpPr>"
    "<p:spPr><a:xfrm><a:off x=\"127000\" y=\"127000\"/><a:ext cx=\"254000\" "
    "cy=\"254000\"/></a:xfrm>"
    "<a:prstGeom prst=\"rect\"><a:avLst/></a:prstGeom></p:spPr>"
    "<p:txBody><a:bodyPr/><a:lstStyle/><a:p><a:r><a:rPr "
    "lang=\"en-US\"/><a:t>g</a:t></a:r></a:p></p:txBody></p:sp>"
    "</p:grpSp>";

TEST(SlideDrawing, ShapesWithTheirPlaceOutlineAndResolvedText) {
    auto deck = deckOf(kShapes);
    ASSERT_TRUE(deck);
    const minihost::SlideDrawing drawing = deck->drawing(1);
    ASSERT_EQ(drawing.shapes.size(), 4);
    EXPECT_EQ(drawing.background, 0xFFFFFFu);

    const DrawnShape& oval = drawing.shapes[0];
    EXPECT_EQ(oval.id, 2);
    EXPECT_EQ(oval.box, QRectF(10, 20, 200, 100));
    EXPECT_TRUE(oval.boxKnown);
    EXPECT_EQ(oval.rotation, 90);
    EXPECT_EQ(oval.geometry, QStringLiteral("ellipse"));
    EXPECT_TRUE(oval.filled);
    EXPECT_EQ(oval.fill, 0x800000u);  // red at half its luminance
    EXPECT_TRUE(oval.outlined);
    EXPECT_EQ(oval.line, 0x00FF00u);
    EXPECT_EQ(oval.lineWidth, 2);

    ASSERT_TRUE(oval.hasText);
    const minihost::TextFrame& frame = oval.text;
    EXPECT_EQ(frame.insets, QMarginsF(0, 1, 7.2, 3.6));
    EXPECT_FALSE(frame.wrap);
    EXPECT_EQ(frame.anchor, minihost::TextAnchor::Middle);
    EXPECT_EQ(frame.autofit, minihost::Autofit::ShrinkText);
    EXPECT_FLOAT_EQ(frame.fontScale, 0.5f);
    EXPECT_FLOAT_EQ(frame.lineSpacingReduction, 0.1f);
    ASSERT_EQ(frame.paragraphs.size(), 2);

    const minihost::TextParagraph& first = frame.paragraphs[0];
    EXPECT_EQ(first.start, 0);
    EXPECT_EQ(first.text, QStringLiteral("你好\vab"));
    EXPECT_EQ(first.align, minihost::TextAlign::Right);  // from the list style
    EXPECT_FLOAT_EQ(first.lineSpacing, 1.5f);
    EXPECT_FLOAT_EQ(first.spaceAfter, 6);
    ASSERT_EQ(first.runs.size(), 3);
    const minihost::TextFormat& chinese = first.runs[0].format;
    EXPECT_EQ(chinese.latinFont, QStringLiteral("Noto Serif"));
    EXPECT_EQ(chinese.eastAsianFont, QStringLiteral("Noto Serif CJK SC"));
    EXPECT_EQ(chinese.size, 24);
    EXPECT_TRUE(chinese.bold);
    EXPECT_TRUE(chinese.italic);
    EXPECT_TRUE(chinese.underline);
    EXPECT_EQ(chinese.rgb, 0x000080u);  // drawn with its luminance transform
    EXPECT_EQ(first.runs[1].start, 2);  // the line break
    EXPECT_EQ(first.runs[1].length, 1);
    EXPECT_EQ(first.runs[2].start, 3);
    EXPECT_FALSE(first.runs[2].format.bold);
    EXPECT_EQ(first.runs[2].format.rgb, 0u);

    const minihost::TextParagraph& second = frame.paragraphs[1];
    EXPECT_EQ(second.start, 6);
    EXPECT_EQ(second.bullet, QStringLiteral("-"));
    EXPECT_EQ(second.align, minihost::TextAlign::Center);
    EXPECT_FLOAT_EQ(second.marginLeft, 27);
    EXPECT_FLOAT_EQ(second.indent, -27);
    EXPECT_TRUE(second.runs[0].format.strike);
    EXPECT_EQ(second.endFormat.size, 10);

    EXPECT_EQ(drawing.shapes[1].text.autofit, minihost::Autofit::ShapeFollowsText);
    EXPECT_FALSE(drawing.shapes[1].filled);
    EXPECT_EQ(drawing.shapes[2].kind, QStringLiteral("group"));
    EXPECT_TRUE(drawing.shapes[2].geometry.isEmpty());
    // A member of the group, at its place on the slide.
    EXPECT_EQ(drawing.shapes[3].box, QRectF(20, 220, 40, 40));
    EXPECT_TRUE(deck->drawing(2).shapes.isEmpty());
}

TEST(SlideDrawing, PlaceholdersTakeTheirPlaceAndStyleFromTheLayoutAndMaster) {
    if (decktest::testDeckNames().isEmpty()) GTEST_SKIP() << "no public test decks";
    QString error;
    auto deck =
        Deck::loadFile(decktest::testDeckDir() + QStringLiteral("/poi-bug64693.pptx"), &error);
    ASSERT_TRUE(deck) << error.toStdString();
    const minihost::SlideDrawing drawing = deck->drawing(1);
    const DrawnShape* content = find(drawing, 3);
    ASSERT_TRUE(content);
    EXPECT_TRUE(boxOf(*deck, 3).isNull());  // the slide does not say where it is
    ASSERT_TRUE(content->boxKnown);         // its layout's placeholder idx="12" does
    EXPECT_NEAR(content->box.left(), 726021 / 12700.0, 0.01);
    EXPECT_NEAR(content->box.top(), 1512875 / 12700.0, 0.01);
    ASSERT_GE(content->text.paragraphs.size(), 3);
    // The master's body style: bullets, and the theme's East Asian font named by the slide.
    EXPECT_EQ(content->text.paragraphs[0].bullet, QStringLiteral("•"));
    EXPECT_EQ(content->text.paragraphs[1].text, QStringLiteral("嘿嘿"));
    EXPECT_EQ(content->text.paragraphs[1].runs[0].format.eastAsianFont,
              QStringLiteral("Microsoft YaHei"));
}

TEST(SlideDrawing, TheMastersDrawingsAreBehindTheSlideItsDefaultsOnlyOutsidePlaceholders) {
    if (decktest::testDeckNames().isEmpty()) GTEST_SKIP() << "no public test decks";
    QString error;
    auto deck = Deck::loadFile(
        decktest::testDeckDir() + QStringLiteral("/real/alterman_security.pptx"), &error);
    ASSERT_TRUE(deck) << error.toStdString();
    const minihost::SlideDrawing drawing = deck->drawing(2);
    // The master's red band along the bottom, not its placeholders.
    ASSERT_EQ(drawing.behind.size(), 2);
    EXPECT_EQ(drawing.behind[1].geometry, QStringLiteral("rect"));
    EXPECT_TRUE(drawing.behind[1].filled);
    EXPECT_EQ(drawing.behind[1].fill, 0xB9252Eu);
    // The deck's default text style is italic; the body placeholder's text is not.
    const DrawnShape* body = find(drawing, 78851);
    ASSERT_TRUE(body);
    EXPECT_FALSE(body->text.paragraphs[0].runs[0].format.italic);
    EXPECT_EQ(body->text.paragraphs[0].runs[0].format.size, 24);
    EXPECT_TRUE(find(drawing, 78850)->text.paragraphs[0].runs[0].format.italic);  // its own
}

TEST(DeckEdits, MoveAndResizeAreUndoSteps) {
    auto deck = deckOf(kShapes);
    ASSERT_TRUE(deck);
    const QList<minihost::ShapeInfo> original = deck->shapes(1);
    EXPECT_TRUE(moveShapes(*deck, {2, 3}, 5, -10));
    EXPECT_EQ(boxOf(*deck, 2), QRectF(15, 10, 200, 100));
    // Moved, a shape that follows its text keeps its height.
    EXPECT_EQ(boxOf(*deck, 3), QRectF(105, 90, 200, 40));
    // A member of a scaled group moves by as much on the slide.
    EXPECT_TRUE(moveShapes(*deck, {5}, 10, 0));
    EXPECT_EQ(boxOf(*deck, 5), QRectF(30, 220, 40, 40));
    EXPECT_TRUE(deck->setShapeBoxes(1, {{2, QRectF(0, 0, 50, 30)}}, QStringLiteral("resize")));
    EXPECT_EQ(boxOf(*deck, 2), QRectF(0, 0, 50, 30));
    EXPECT_EQ(deck->undoSteps(), (QStringList{QStringLiteral("move"), QStringLiteral("move"),
                                              QStringLiteral("resize")}));
    // Unknown shapes and slides, no boxes and negative sizes change nothing.
    EXPECT_FALSE(deck->setShapeBoxes(1, {{2, QRectF(1, 1, 10, 10)}, {99, QRectF(1, 1, 10, 10)}},
                                     QStringLiteral("move")));
    EXPECT_FALSE(deck->setShapeBoxes(1, {}, QStringLiteral("move")));
    EXPECT_FALSE(deck->setShapeBoxes(2, {{2, QRectF(1, 1, 10, 10)}}, QStringLiteral("move")));
    EXPECT_FALSE(deck->setShapeBoxes(1, {{3, QRectF(0, 0, -1, 30)}}, QStringLiteral("resize")));
    EXPECT_EQ(deck->undoSteps().size(), 3);
    EXPECT_EQ(boxOf(*deck, 2), QRectF(0, 0, 50, 30));
    for (int i = 0; i < 3; ++i) ASSERT_TRUE(deck->undo());
    for (int i = 0; i < original.size(); ++i) EXPECT_EQ(deck->shapes(1)[i].box, original[i].box);
}

TEST(DeckEdits, APlaceholderMovedGetsItsInheritedPlaceAsItsOwn) {
    if (decktest::testDeckNames().isEmpty()) GTEST_SKIP() << "no public test decks";
    QString error;
    auto deck =
        Deck::loadFile(decktest::testDeckDir() + QStringLiteral("/poi-bug64693.pptx"), &error);
    ASSERT_TRUE(deck) << error.toStdString();
    const QRectF inherited = find(deck->drawing(1), 3)->box;
    ASSERT_TRUE(moveShapes(*deck, {3}, 10, 20));
    const QRectF own = boxOf(*deck, 3);
    EXPECT_NEAR(own.left(), inherited.left() + 10, 0.01);
    EXPECT_NEAR(own.top(), inherited.top() + 20, 0.01);
    EXPECT_NEAR(own.width(), inherited.width(), 0.01);
    EXPECT_NEAR(own.height(), inherited.height(), 0.01);
}

TEST(DeckEdits, ReplaceTextTypesDeletesAndMovesTheSelection) {
    auto deck = deckOf(kShapes);
    ASSERT_TRUE(deck);
    ASSERT_TRUE(deck->selectText(3, 2, 2));
    EXPECT_EQ(deck->replaceText(1, 3, 0, 0, QStringLiteral("新的"), QStringLiteral("typing")), 2);
    EXPECT_EQ(deck->text(1, 3), QStringLiteral("新的银行行长"));
    // The selection moved with its text.
    EXPECT_EQ(deck->textSelection().start, 4);
    EXPECT_EQ(deck->textSelection().length, 2);
    // Typed text takes the format of the text before it.
    EXPECT_EQ(find(deck->drawing(1), 3)->text.paragraphs[0].runs[0].format.size, 20);
    EXPECT_EQ(deck->replaceText(1, 3, 4, 99, QString(), QStringLiteral("delete text")), 4);
    EXPECT_EQ(deck->text(1, 3), QStringLiteral("新的银行"));
    EXPECT_EQ(deck->replaceText(1, 3, 1, 1, QStringLiteral("\n"), QStringLiteral("paste")), 2);
    EXPECT_EQ(deck->text(1, 3), QStringLiteral("新\r银行"));
    EXPECT_EQ(deck->undoSteps(),
              (QStringList{QStringLiteral("typing"), QStringLiteral("delete text"),
                           QStringLiteral("paste")}));
    EXPECT_EQ(deck->replaceText(1, 2, 0, 0, QString(), QStringLiteral("typing")), 0);  // nothing
    EXPECT_EQ(deck->replaceText(1, 4, 0, 0, QStringLiteral("x"), QStringLiteral("typing")), -1);
    EXPECT_EQ(deck->replaceText(1, 3, -1, 0, QStringLiteral("x"), QStringLiteral("typing")), -1);
    EXPECT_EQ(deck->replaceText(2, 3, 0, 0, QStringLiteral("x"), QStringLiteral("typing")), -1);
    EXPECT_EQ(deck->undoSteps().size(), 3);
    ASSERT_TRUE(deck->undo());
    EXPECT_EQ(deck->text(1, 3), QStringLiteral("新的银行"));
    // All of the text replaced: the new text keeps the format of what it replaced.
    EXPECT_EQ(deck->replaceText(1, 3, 0, 4, QStringLiteral("行"), QStringLiteral("typing")), 1);
    EXPECT_EQ(find(deck->drawing(1), 3)->text.paragraphs[0].runs[0].format.size, 20);
}

TEST(DeckEdits, DeleteShapesIsOneStepWithTheirMembers) {
    auto deck = deckOf(kShapes);
    ASSERT_TRUE(deck);
    ASSERT_TRUE(deck->selectShapes({2, 4}));
    EXPECT_FALSE(deck->deleteShapes(1, {2, 99}, QStringLiteral("delete")));
    EXPECT_FALSE(deck->deleteShapes(2, {2}, QStringLiteral("delete")));
    EXPECT_EQ(deck->shapes(1).size(), 4);
    EXPECT_TRUE(deck->deleteShapes(1, {4, 5, 2}, QStringLiteral("delete")));
    EXPECT_EQ(deck->shapes(1).size(), 1);
    EXPECT_TRUE(deck->selectedShapes().isEmpty());
    EXPECT_EQ(deck->undoSteps(), QStringList{QStringLiteral("delete")});
    ASSERT_TRUE(deck->undo());
    EXPECT_EQ(deck->shapes(1).size(), 4);
    deck.reset();
    EXPECT_EQ(minihost::liveObjectCount(), 0);
}

}  // namespace
