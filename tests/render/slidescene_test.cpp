// SPDX-License-Identifier: MIT
// The renderer's scene and painting: shapes hit where they are drawn (rotated and flipped),
// backgrounds and gradients painted along their angle, the preset outlines, and table rows grown
// to their text.
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

#include "decktestutil.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxrender/presetgeometry.h"
#include "minihost/slxrender/sliderenderer.h"
#include "minihost/slxrender/slidescene.h"

using minihost::Deck;
using minihost::DrawnShape;

namespace {

std::unique_ptr<Deck> deckOf(const decktest::Parts& parts) {
    QString error;
    auto deck = Deck::load(decktest::makeZip(parts), QStringLiteral("t.pptx"), &error);
    EXPECT_TRUE(deck) << error.toStdString();
    return deck;
}

decktest::Parts withShapes(const QByteArray& shapes) {
    const decktest::Parts parts = decktest::blankParts();
    QByteArray slide = decktest::partOf(parts, QStringLiteral("ppt/slides/slide1.xml"));
    slide.replace("</p:grpSpPr></p:spTree>", "</p:grpSpPr>" + shapes + "</p:spTree>");
    return decktest::replaced(parts, QStringLiteral("ppt/slides/slide1.xml"), slide);
}

// A filled rectangle 200 x 20 pt with its centre at (300, 200), turned by `rotation` (in the
// format's 60000ths of a degree).
QByteArray bar(int id, int rotation, const char* flips = "") {
    return "<p:sp><p:nvSpPr><p:cNvPr id=\"" + QByteArray::number(id) +
           "\" name=\"Bar\"/><p:cNvSpPr/><p:nvPr/></p:nvSpPr><p:spPr><a:xfrm rot=\"" +
           QByteArray::number(rotation) + "\" " + flips +
           "><a:off x=\"2540000\" y=\"2413000\"/><a:ext cx=\"2540000\" cy=\"254000\"/></a:xfrm>"
           "<a:prstGeom prst=\"rect\"><a:avLst/></a:prstGeom><a:solidFill><a:srgbClr "
           "val=\"000000\"/></a:solidFill></p:spPr></p:sp>";
}

TEST(SlideScene, ARotatedShapeIsHitWhereItIsDrawn) {
    const auto deck = deckOf(withShapes(bar(2, 5400000)));
    const minihost::SlideScene scene(*deck, 1);
    // Turned a quarter: it stands upright from (290, 100) to (310, 300).
    EXPECT_EQ(scene.shapeAt(QPointF(300, 120)), 2);
    EXPECT_EQ(scene.shapeAt(QPointF(300, 280)), 2);
    EXPECT_EQ(scene.shapeAt(QPointF(220, 200)), 0);  // in its unturned box, not on it
    EXPECT_EQ(scene.shapeAt(QPointF(380, 200)), 0);
    EXPECT_EQ(scene.shapeAt(QPointF(300, 200)), 2);

    // Drawn where it is hit: dark at the top of the upright bar, light where the box was.
    const QImage image = minihost::renderSlide(*deck, 1, 960);  // 1 px a point
    EXPECT_LT(qGray(image.pixel(300, 120)), 40);
    EXPECT_GT(qGray(image.pixel(220, 200)), 215);
}

TEST(SlideScene, AFlippedShapeIsHitInItsBox) {
    const auto deck = deckOf(withShapes(bar(2, 0, "flipH=\"1\" flipV=\"1\"")));
    const minihost::SlideScene scene(*deck, 1);
    EXPECT_EQ(scene.shapeAt(QPointF(220, 200)), 2);
    EXPECT_EQ(scene.shapeAt(QPointF(300, 120)), 0);
}

TEST(SlideScene, AGradientBackgroundIsPaintedAlongItsAngle) {
    decktest::Parts parts = decktest::blankParts();
    const QString master = QStringLiteral("ppt/slideMasters/slideMaster1.xml");
    QByteArray xml = decktest::partOf(parts, master);
    xml.replace("<p:spTree>",
                "<p:bg><p:bgPr><a:gradFill><a:gsLst><a:gs pos=\"0\"><a:srgbClr val=\"FF0000\"/>"
                "</a:gs><a:gs pos=\"100000\"><a:srgbClr val=\"0000FF\"/></a:gs></a:gsLst>"
                "<a:lin ang=\"5400000\"/></a:gradFill></p:bgPr></p:bg><p:spTree>");
    const auto deck = deckOf(decktest::replaced(parts, master, xml));
    const QImage image = minihost::renderSlide(*deck, 1, 320);
    ASSERT_EQ(image.size(), QSize(320, 180));
    // Red at the top, blue at the bottom, halfway between in the middle, the same across.
    const QColor top = image.pixelColor(160, 1), middle = image.pixelColor(160, 90),
                 bottom = image.pixelColor(160, 178);
    EXPECT_GT(top.red(), 240);
    EXPECT_LT(top.blue(), 15);
    EXPECT_GT(bottom.blue(), 240);
    EXPECT_LT(bottom.red(), 15);
    EXPECT_NEAR(middle.red(), 128, 8);
    EXPECT_NEAR(middle.blue(), 128, 8);
    EXPECT_EQ(image.pixelColor(5, 90), image.pixelColor(315, 90));
}

TEST(SlideScene, PresetOutlines) {
    DrawnShape shape;
    const QRectF box(0, 0, 100, 50);
    shape.geometry = QStringLiteral("rightArrow");
    QPainterPath path = minihost::outlineOf(shape, box);
    EXPECT_TRUE(path.contains(QPointF(98, 25)));  // the head's tip
    EXPECT_TRUE(path.contains(QPointF(5, 25)));   // the shaft
    EXPECT_FALSE(path.contains(QPointF(5, 5)));   // beside the shaft
    EXPECT_TRUE(path.contains(QPointF(77, 3)));   // the head is as high as the box

    shape.geometry = QStringLiteral("downArrow");
    path = minihost::outlineOf(shape, box);
    EXPECT_TRUE(path.contains(QPointF(50, 48)));
    EXPECT_FALSE(path.contains(QPointF(50, 2)) && path.contains(QPointF(2, 2)));

    shape.geometry = QStringLiteral("triangle");
    path = minihost::outlineOf(shape, box);
    EXPECT_TRUE(path.contains(QPointF(50, 10)));
    EXPECT_FALSE(path.contains(QPointF(5, 10)));

    shape.geometry = QStringLiteral("roundRect");
    shape.adjustments[QStringLiteral("adj")] = 50000;  // corners of half the shorter side
    path = minihost::outlineOf(shape, box);
    EXPECT_FALSE(path.contains(QPointF(3, 3)));
    EXPECT_TRUE(path.contains(QPointF(50, 3)));

    shape.geometry = QStringLiteral("someFuturePreset");  // unknown: its box
    EXPECT_EQ(minihost::outlineOf(shape, box).boundingRect(), box);

    shape.geometry = QStringLiteral("straightConnector1");
    EXPECT_TRUE(minihost::isOpenGeometry(shape.geometry));
    EXPECT_FALSE(minihost::isOpenGeometry(QStringLiteral("rect")));
}

TEST(SlideScene, TableRowsGrowToTheirText) {
    // Two rows 10 pt high; the first cell holds three lines of 18 pt text.
    const QByteArray cell =
        "<a:txBody><a:bodyPr/><a:lstStyle/><a:p><a:r><a:rPr lang=\"en-US\"/>"
        "<a:t>one</a:t></a:r><a:br><a:rPr lang=\"en-US\"/></a:br><a:r><a:rPr "
        "lang=\"en-US\"/><a:t>two</a:t></a:r><a:br><a:rPr lang=\"en-US\"/>"
        "</a:br><a:r><a:rPr lang=\"en-US\"/><a:t>three</a:t></a:r></a:p>"
        "</a:txBody><a:tcPr/>";
    const QByteArray empty =
        "<a:txBody><a:bodyPr/><a:lstStyle/><a:p><a:endParaRPr "
        "lang=\"en-US\" sz=\"800\"/></a:p></a:txBody><a:tcPr/>";
    const QByteArray table =
        "<p:graphicFrame><p:nvGraphicFramePr><p:cNvPr id=\"2\" name=\"Table\"/>"
        "<p:cNvGraphicFramePr/><p:nvPr/></p:nvGraphicFramePr><p:xfrm><a:off x=\"0\" y=\"0\"/>"
        "<a:ext cx=\"2540000\" cy=\"254000\"/></p:xfrm><a:graphic><a:graphicData "
        "uri=\"http://schemas.openxmlformats.org/drawingml/2006/table\"><a:tbl><a:tblPr/>"
        "<a:tblGrid><a:gridCol w=\"2540000\"/></a:tblGrid><a:tr h=\"127000\"><a:tc>" +
        cell + "</a:tc></a:tr><a:tr h=\"127000\"><a:tc>" + empty +
        "</a:tc></a:tr></a:tbl></a:graphicData></a:graphic></p:graphicFrame>";
    const auto deck = deckOf(withShapes(table));
    const minihost::SlideScene scene(*deck, 1);
    const DrawnShape* drawn = scene.shape(2);
    ASSERT_TRUE(drawn);
    ASSERT_EQ(drawn->cells.size(), 2);
    // Three lines of 1.2 x 18 pt and the margins of 3.6 pt above and below.
    EXPECT_NEAR(drawn->cells[0].box.height(), 3 * 21.6 + 7.2, 0.5);
    EXPECT_NEAR(drawn->cells[1].box.top(), drawn->cells[0].box.bottom(), 1e-9);
    // The second row's own 10 pt hold its 8 pt paragraph and margins.
    EXPECT_NEAR(drawn->cells[1].box.height(), 10 * 1.2 + 7.2 - 0.0, 2.5);
}

}  // namespace
