// SPDX-License-Identifier: MIT
// What the deck's drawing description resolves for a renderer: backgrounds of the slide, its
// layout and master and the theme's (bgRef), gradients, theme colours with their modifiers and
// the master's colour map, theme fonts, bullets and numbering, preset adjustments, picture crops,
// rotation and flips, tables with their style, and charts from their cached values. Where the
// format's documentation gives example values (Accent 1 darker 25 %: 4F81BD to 376092; lighter
// 40 %: 95B3D7), they are used.
#include <gtest/gtest.h>

#include <cmath>

#include "decktestutil.h"
#include "minihost/slxcore/deck.h"

using minihost::Deck;
using minihost::DrawnShape;
using minihost::Fill;
using minihost::SlideDrawing;

namespace {

const QString kSlide = QStringLiteral("ppt/slides/slide1.xml");
const QString kLayout = QStringLiteral("ppt/slideLayouts/slideLayout1.xml");
const QString kMaster = QStringLiteral("ppt/slideMasters/slideMaster1.xml");
const QString kTheme = QStringLiteral("ppt/theme/theme1.xml");

// Replaces `from` by `to` in part `name` (which must hold it).
decktest::Parts edit(decktest::Parts parts, const QString& name, const QByteArray& from,
                     const QByteArray& to) {
    QByteArray data = decktest::partOf(parts, name);
    EXPECT_TRUE(data.contains(from)) << name.toStdString() << " has no " << from.toStdString();
    data.replace(from, to);
    return decktest::replaced(parts, name, data);
}

decktest::Parts withShapes(decktest::Parts parts, const QByteArray& shapes) {
    return edit(parts, kSlide, "</p:grpSpPr></p:spTree>", "</p:grpSpPr>" + shapes + "</p:spTree>");
}

// Adds part `name` with `data`, its content type and a relationship `id` of `type` from `from`.
decktest::Parts withPart(decktest::Parts parts, const QString& from, const QByteArray& id,
                         const QByteArray& type, const QByteArray& target, const QString& name,
                         const QByteArray& contentType, const QByteArray& data) {
    const QString rels = from.section(QLatin1Char('/'), 0, -2) + QStringLiteral("/_rels/") +
                         from.section(QLatin1Char('/'), -1) + QStringLiteral(".rels");
    parts = edit(parts, rels, "</Relationships>",
                 "<Relationship Id=\"" + id +
                     "\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/"
                     "relationships/" +
                     type + "\" Target=\"" + target + "\"/></Relationships>");
    parts = edit(parts, QStringLiteral("[Content_Types].xml"), "</Types>",
                 "<Override PartName=\"/" + name.toUtf8() + "\" ContentType=\"" + contentType +
                     "\"/></Types>");
    parts.emplace_back(name, data);
    return parts;
}

std::unique_ptr<Deck> load(const decktest::Parts& parts) {
    QString error;
    auto deck = Deck::load(decktest::makeZip(parts), QStringLiteral("t.pptx"), &error);
    EXPECT_TRUE(deck) << error.toStdString();
    return deck;
}

// A copy: the drawing is often a temporary.
DrawnShape shape(const SlideDrawing& drawing, int id) {
    for (const DrawnShape& s : drawing.shapes)
        if (s.id == id) return s;
    ADD_FAILURE() << "no shape " << id;
    return {};
}

// A rectangle with id `id` whose spPr ends with `fill` and whose text body is `body` (none when
// empty).
QByteArray rect(int id, const QByteArray& fill, const QByteArray& body = {},
                const QByteArray& xfrm =
                    "<a:xfrm><a:off x=\"0\" y=\"0\"/><a:ext cx=\"1270000\" "
                    "cy=\"1270000\"/></a:xfrm>") {
    return "<p:sp><p:nvSpPr><p:cNvPr id=\"" + QByteArray::number(id) +
           "\" name=\"S\"/><p:cNvSpPr/><p:nvPr/></p:nvSpPr><p:spPr>" + xfrm +
           "<a:prstGeom prst=\"rect\"><a:avLst/></a:prstGeom>" + fill + "</p:spPr>" +
           (body.isEmpty() ? QByteArray() : "<p:txBody><a:bodyPr/>" + body + "</p:txBody>") +
           "</p:sp>";
}

std::uint32_t fillOf(const std::unique_ptr<Deck>& deck, int id) {
    return shape(deck->drawing(1), id).fill;
}

// Each channel within `tolerance` of the expected colour (the modifiers are computed in HSL).
void expectColor(std::uint32_t actual, std::uint32_t expected, int tolerance = 2) {
    for (int shift : {16, 8, 0})
        EXPECT_NEAR(static_cast<int>(actual >> shift & 0xFF),
                    static_cast<int>(expected >> shift & 0xFF), tolerance)
            << std::hex << actual << " against " << expected;
}

TEST(DrawingStyles, BackgroundsComeFromTheSlideElseItsLayoutElseItsMaster) {
    const auto plain = load(decktest::blankParts());
    EXPECT_EQ(plain->drawing(1).backgroundFill.kind, Fill::Kind::Solid);
    EXPECT_EQ(plain->drawing(1).background, 0xFFFFFFu);

    decktest::Parts parts = edit(decktest::blankParts(), kMaster, "<p:spTree>",
                                 "<p:bg><p:bgPr><a:solidFill><a:srgbClr val=\"112233\"/>"
                                 "</a:solidFill></p:bgPr></p:bg><p:spTree>");
    EXPECT_EQ(load(parts)->drawing(1).background, 0x112233u);
    parts = edit(parts, kLayout, "<p:spTree>",
                 "<p:bg><p:bgPr><a:solidFill><a:schemeClr val=\"accent2\"/></a:solidFill>"
                 "</p:bgPr></p:bg><p:spTree>");
    EXPECT_EQ(load(parts)->drawing(1).background, 0xED7D31u);
    parts = edit(parts, kSlide, "<p:spTree>",
                 "<p:bg><p:bgPr><a:solidFill><a:srgbClr val=\"445566\"/></a:solidFill>"
                 "</p:bgPr></p:bg><p:spTree>");
    EXPECT_EQ(load(parts)->drawing(1).background, 0x445566u);
}

TEST(DrawingStyles, ABackgroundReferenceTakesTheThemesBackgroundStyleInItsColour) {
    // The theme's second background style is a gradient of its placeholder colour, lighter to
    // darker, from a centre.
    decktest::Parts parts =
        edit(decktest::blankParts(), kTheme,
             "<a:bgFillStyleLst><a:solidFill><a:schemeClr val=\"phClr\"/></a:solidFill>",
             "<a:bgFillStyleLst><a:solidFill><a:schemeClr val=\"phClr\"/></a:solidFill>"
             "<a:gradFill rotWithShape=\"1\"><a:gsLst><a:gs pos=\"0\"><a:schemeClr val=\"phClr\">"
             "<a:tint val=\"40000\"/></a:schemeClr></a:gs><a:gs pos=\"100000\"><a:schemeClr "
             "val=\"phClr\"><a:shade val=\"20000\"/></a:schemeClr></a:gs></a:gsLst>"
             "<a:path path=\"circle\"><a:fillToRect l=\"50000\" t=\"-80000\" r=\"50000\" "
             "b=\"180000\"/></a:path></a:gradFill>");
    parts = edit(parts, kMaster, "<p:spTree>",
                 "<p:bg><p:bgRef idx=\"1002\"><a:srgbClr val=\"4F81BD\"/></p:bgRef></p:bg>"
                 "<p:spTree>");
    const SlideDrawing drawing = load(parts)->drawing(1);
    const Fill& bg = drawing.backgroundFill;
    ASSERT_EQ(bg.kind, Fill::Kind::Gradient);
    ASSERT_EQ(bg.stops.size(), 2);
    EXPECT_EQ(bg.path, QStringLiteral("circle"));
    // The focus: inset 50 % from the left and right, -80 % from the top, 180 % from the bottom.
    EXPECT_DOUBLE_EQ(bg.focus.left(), 0.5);
    EXPECT_DOUBLE_EQ(bg.focus.top(), -0.8);
    EXPECT_DOUBLE_EQ(bg.focus.width(), 0);
    // Tinted 40 % (towards white) and shaded 20 % (towards black) from 4F81BD.
    EXPECT_GT(bg.stops[0].rgb & 0xFF, 0xBDu);
    EXPECT_LT(bg.stops[1].rgb & 0xFF, 0x40u);
    expectColor(drawing.background, bg.stops[0].rgb, 0);

    // The first background style: solid in the reference's colour.
    parts = edit(parts, kMaster, "idx=\"1002\"", "idx=\"1001\"");
    EXPECT_EQ(load(parts)->drawing(1).background, 0x4F81BDu);
}

TEST(DrawingStyles, GradientsKeepEveryStopInOrderAndTheirAngle) {
    const auto deck = load(withShapes(
        decktest::blankParts(),
        rect(2,
             "<a:gradFill><a:gsLst><a:gs pos=\"100000\"><a:srgbClr val=\"0000FF\"/></a:gs>"
             "<a:gs pos=\"0\"><a:srgbClr val=\"FF0000\"><a:alpha val=\"50000\"/></a:srgbClr>"
             "</a:gs><a:gs pos=\"40000\"><a:srgbClr val=\"00FF00\"/></a:gs></a:gsLst>"
             "<a:lin ang=\"5400000\" scaled=\"1\"/></a:gradFill>")));
    const DrawnShape s = shape(deck->drawing(1), 2);
    ASSERT_EQ(s.fillStyle.kind, Fill::Kind::Gradient);
    ASSERT_EQ(s.fillStyle.stops.size(), 3);
    EXPECT_EQ(s.fillStyle.stops[0].rgb, 0xFF0000u);
    EXPECT_DOUBLE_EQ(s.fillStyle.stops[0].alpha, 0.5);
    EXPECT_DOUBLE_EQ(s.fillStyle.stops[1].position, 0.4);
    EXPECT_EQ(s.fillStyle.stops[2].rgb, 0x0000FFu);
    EXPECT_DOUBLE_EQ(s.fillStyle.angle, 90);  // 5400000 sixty-thousandths: top to bottom
    EXPECT_TRUE(s.fillStyle.path.isEmpty());
    EXPECT_TRUE(s.filled);
    EXPECT_EQ(s.fill, 0xFF0000u);
}

TEST(DrawingStyles, AGradientWithoutStopsLeavesTheFillToTheShapesStyle) {
    const QByteArray oval =
        "<p:sp><p:nvSpPr><p:cNvPr id=\"2\" name=\"O\"/><p:cNvSpPr/><p:nvPr/></p:nvSpPr><p:spPr>"
        "<a:xfrm><a:off x=\"0\" y=\"0\"/><a:ext cx=\"127000\" cy=\"127000\"/></a:xfrm>"
        "<a:prstGeom prst=\"ellipse\"><a:avLst/></a:prstGeom><a:gradFill rotWithShape=\"1\">"
        "<a:lin ang=\"2700000\" scaled=\"1\"/><a:tileRect/></a:gradFill></p:spPr><p:style>"
        "<a:lnRef idx=\"1\"><a:schemeClr val=\"accent1\"/></a:lnRef><a:fillRef idx=\"3\">"
        "<a:schemeClr val=\"accent2\"/></a:fillRef><a:effectRef idx=\"0\"><a:schemeClr "
        "val=\"accent1\"/></a:effectRef><a:fontRef idx=\"minor\"/></p:style></p:sp>";
    const DrawnShape s = shape(load(withShapes(decktest::blankParts(), oval))->drawing(1), 2);
    // The theme's third fill style is solid in the placeholder colour: accent 2.
    EXPECT_EQ(s.fillStyle.kind, Fill::Kind::Solid);
    EXPECT_EQ(s.fill, 0xED7D31u);
    // Its line: the theme's first line style (0.5 pt) in accent 1.
    EXPECT_TRUE(s.outlined);
    EXPECT_EQ(s.line, 0x4472C4u);
    EXPECT_FLOAT_EQ(s.lineWidth, 0.5f);
}

TEST(DrawingStyles, ThemeColoursWithTheirModifiers) {
    auto color = [](const QByteArray& modifiers) {
        return "<a:solidFill><a:srgbClr val=\"4F81BD\">" + modifiers + "</a:srgbClr></a:solidFill>";
    };
    const auto deck =
        load(withShapes(decktest::blankParts(),
                        rect(2, color("<a:lumMod val=\"75000\"/>")) +
                            rect(3, color("<a:lumMod val=\"60000\"/><a:lumOff val=\"40000\"/>")) +
                            rect(4,
                                 "<a:solidFill><a:schemeClr val=\"accent1\"><a:tint val=\"50000\"/>"
                                 "</a:schemeClr></a:solidFill>") +
                            rect(5, color("<a:shade val=\"50000\"/>")) +
                            rect(6, color("<a:alpha val=\"30000\"/>")) +
                            rect(7, "<a:solidFill><a:prstClr val=\"black\"/></a:solidFill>")));
    expectColor(fillOf(deck, 2), 0x376092);  // Accent 1, darker 25 %
    expectColor(fillOf(deck, 3), 0x95B3D7);  // Accent 1, lighter 40 %
    // Tint 50 % of 4472C4 (the theme's accent 1): halfway to white in lightness.
    expectColor(fillOf(deck, 4), 0xA2B9E2, 3);
    expectColor(fillOf(deck, 5), 0x284160, 3);
    const DrawnShape clear = shape(deck->drawing(1), 6);
    EXPECT_EQ(clear.fill, 0x4F81BDu);
    EXPECT_DOUBLE_EQ(clear.fillStyle.alpha, 0.3);
    EXPECT_EQ(fillOf(deck, 7), 0u);
}

TEST(DrawingStyles, SchemeColoursFollowTheMastersColourMap) {
    // A dark master: background 1 is dark 2, text 1 is light 1.
    decktest::Parts parts =
        edit(decktest::blankParts(), kMaster, "bg1=\"lt1\" tx1=\"dk1\"", "bg1=\"dk2\" tx1=\"lt1\"");
    parts = edit(parts, kMaster, "<p:spTree>",
                 "<p:bg><p:bgPr><a:solidFill><a:schemeClr val=\"bg1\"/></a:solidFill></p:bgPr>"
                 "</p:bg><p:spTree>");
    const auto deck =
        load(withShapes(parts, rect(2, "<a:solidFill><a:schemeClr val=\"tx1\"/></a:solidFill>",
                                    "<a:p><a:r><a:rPr lang=\"en-US\"/><a:t>x</a:t></a:r></a:p>")));
    const SlideDrawing drawing = deck->drawing(1);
    EXPECT_EQ(drawing.background, 0x44546Au);
    EXPECT_EQ(shape(drawing, 2).fill, 0xFFFFFFu);
    // The deck's default text colour is text 1: light on the dark master.
    EXPECT_EQ(shape(drawing, 2).text.paragraphs[0].runs[0].format.rgb, 0xFFFFFFu);
}

TEST(DrawingStyles, ThemeFontsAreResolved) {
    decktest::Parts parts =
        edit(decktest::blankParts(), kTheme,
             "<a:majorFont><a:latin typeface=\"Calibri\"/><a:ea typeface=\"\"/>",
             "<a:majorFont><a:latin typeface=\"Georgia\"/><a:ea "
             "typeface=\"Noto Serif CJK SC\"/>");
    parts = edit(parts, kTheme, "<a:minorFont><a:latin typeface=\"Calibri\"/><a:ea typeface=\"\"/>",
                 "<a:minorFont><a:latin typeface=\"Calibri\"/><a:ea typeface=\"Noto Sans CJK "
                 "SC\"/>");
    const auto deck = load(
        withShapes(parts, rect(2, "",
                               "<a:p><a:r><a:rPr lang=\"zh-CN\"><a:latin typeface=\"+mj-lt\"/>"
                               "<a:ea typeface=\"+mn-ea\"/></a:rPr><a:t>中a</a:t></a:r></a:p>"
                               "<a:p><a:r><a:rPr lang=\"zh-CN\"><a:latin typeface=\"+mn-lt\"/>"
                               "<a:ea typeface=\"+mj-ea\"/></a:rPr><a:t>中a</a:t></a:r></a:p>")));
    const auto paragraphs = shape(deck->drawing(1), 2).text.paragraphs;
    ASSERT_EQ(paragraphs.size(), 2);
    EXPECT_EQ(paragraphs[0].runs[0].format.latinFont, QStringLiteral("Georgia"));
    EXPECT_EQ(paragraphs[0].runs[0].format.eastAsianFont, QStringLiteral("Noto Sans CJK SC"));
    EXPECT_EQ(paragraphs[1].runs[0].format.latinFont, QStringLiteral("Calibri"));
    EXPECT_EQ(paragraphs[1].runs[0].format.eastAsianFont, QStringLiteral("Noto Serif CJK SC"));
}

TEST(DrawingStyles, BulletsAndNumbersByLevelWithHangingIndents) {
    const QByteArray body =
        "<a:lstStyle><a:lvl1pPr marL=\"342900\" indent=\"-342900\"><a:buClr><a:srgbClr "
        "val=\"FF0000\"/></a:buClr><a:buSzPct val=\"75000\"/><a:buFont typeface=\"Wingdings\"/>"
        "<a:buChar char=\"&#xA7;\"/></a:lvl1pPr>"
        "<a:lvl2pPr marL=\"742950\" indent=\"-285750\"><a:buFont typeface=\"+mj-lt\"/>"
        "<a:buAutoNum type=\"alphaLcParenR\"/></a:lvl2pPr></a:lstStyle>"
        "<a:p><a:r><a:rPr lang=\"en-US\"/><a:t>one</a:t></a:r></a:p>"
        "<a:p><a:pPr lvl=\"1\"/><a:r><a:rPr lang=\"en-US\"/><a:t>a</a:t></a:r></a:p>"
        "<a:p><a:pPr lvl=\"1\"/><a:r><a:rPr lang=\"en-US\"/><a:t>b</a:t></a:r></a:p>"
        "<a:p><a:r><a:rPr lang=\"en-US\"/><a:t>two</a:t></a:r></a:p>"
        "<a:p><a:pPr lvl=\"1\"/><a:r><a:rPr lang=\"en-US\"/><a:t>a again</a:t></a:r></a:p>"
        "<a:p><a:pPr><a:buAutoNum type=\"romanUcPeriod\" startAt=\"4\"/></a:pPr><a:r><a:rPr "
        "lang=\"en-US\"/><a:t>IV</a:t></a:r></a:p>"
        "<a:p><a:pPr><a:buAutoNum type=\"romanUcPeriod\" startAt=\"4\"/></a:pPr><a:r><a:rPr "
        "lang=\"en-US\"/><a:t>V</a:t></a:r></a:p>"
        "<a:p><a:pPr><a:buNone/></a:pPr><a:r><a:rPr lang=\"en-US\"/><a:t>none</a:t></a:r></a:p>";
    const auto deck = load(withShapes(decktest::blankParts(), rect(2, "", body)));
    const auto p = shape(deck->drawing(1), 2).text.paragraphs;
    ASSERT_EQ(p.size(), 8);
    // A symbol font's square bullet, as the character it shows, red and three quarters high.
    EXPECT_EQ(p[0].bullet, QStringLiteral("\u25AA"));
    EXPECT_TRUE(p[0].bulletColored);
    EXPECT_EQ(p[0].bulletRgb, 0xFF0000u);
    EXPECT_FLOAT_EQ(p[0].bulletScale, 0.75f);
    EXPECT_FLOAT_EQ(p[0].marginLeft, 27);  // 342900 EMU
    EXPECT_FLOAT_EQ(p[0].indent, -27);     // hanging
    EXPECT_EQ(p[1].bullet, QStringLiteral("a)"));
    EXPECT_EQ(p[2].bullet, QStringLiteral("b)"));
    EXPECT_FLOAT_EQ(p[2].marginLeft, 58.5f);
    // A paragraph of a higher level starts the numbers below it again.
    EXPECT_EQ(p[4].bullet, QStringLiteral("a)"));
    EXPECT_EQ(p[5].bullet, QStringLiteral("IV."));
    EXPECT_EQ(p[6].bullet, QStringLiteral("V."));
    EXPECT_TRUE(p[7].bullet.isEmpty());
}

TEST(DrawingStyles, PresetAdjustmentsCropsRotationAndFlips) {
    const QByteArray shapes =
        "<p:sp><p:nvSpPr><p:cNvPr id=\"2\" name=\"R\"/><p:cNvSpPr/><p:nvPr/></p:nvSpPr><p:spPr>"
        "<a:xfrm rot=\"2700000\" flipH=\"1\" flipV=\"1\"><a:off x=\"0\" y=\"0\"/><a:ext "
        "cx=\"1270000\" cy=\"635000\"/></a:xfrm><a:prstGeom prst=\"roundRect\"><a:avLst>"
        "<a:gd name=\"adj\" fmla=\"val 25000\"/></a:avLst></a:prstGeom>"
        "<a:ln w=\"38100\"><a:solidFill><a:srgbClr val=\"00FF00\"/></a:solidFill>"
        "<a:prstDash val=\"sysDot\"/><a:tailEnd type=\"triangle\"/></a:ln></p:spPr></p:sp>"
        "<p:pic><p:nvPicPr><p:cNvPr id=\"3\" name=\"P\"/><p:cNvPicPr/><p:nvPr/></p:nvPicPr>"
        "<p:blipFill><a:blip r:embed=\"rId99\"/><a:srcRect l=\"25000\" t=\"10000\" r=\"-5000\"/>"
        "<a:stretch><a:fillRect/></a:stretch></p:blipFill><p:spPr><a:xfrm><a:off x=\"0\" "
        "y=\"0\"/><a:ext cx=\"1270000\" cy=\"1270000\"/></a:xfrm><a:prstGeom prst=\"rect\"/>"
        "</p:spPr></p:pic>"
        "<p:sp><p:nvSpPr><p:cNvPr id=\"4\" name=\"F\"/><p:cNvSpPr/><p:nvPr/></p:nvSpPr><p:spPr>"
        "<a:xfrm><a:off x=\"0\" y=\"0\"/><a:ext cx=\"1270000\" cy=\"1270000\"/></a:xfrm>"
        "<a:custGeom><a:pathLst><a:path w=\"100\" h=\"200\"><a:moveTo><a:pt x=\"0\" y=\"0\"/>"
        "</a:moveTo><a:lnTo><a:pt x=\"100\" y=\"100\"/></a:lnTo><a:lnTo><a:pt x=\"0\" "
        "y=\"200\"/></a:lnTo><a:close/></a:path></a:pathLst></a:custGeom></p:spPr></p:sp>";
    const SlideDrawing drawing = load(withShapes(decktest::blankParts(), shapes))->drawing(1);
    const DrawnShape r = shape(drawing, 2);
    EXPECT_EQ(r.geometry, QStringLiteral("roundRect"));
    EXPECT_DOUBLE_EQ(r.adjustments.value(QStringLiteral("adj")), 25000);
    EXPECT_DOUBLE_EQ(r.rotation, 45);
    EXPECT_TRUE(r.flipH);
    EXPECT_TRUE(r.flipV);
    EXPECT_FLOAT_EQ(r.lineWidth, 3);
    EXPECT_EQ(r.line, 0x00FF00u);
    EXPECT_EQ(r.dash, QStringLiteral("sysDot"));
    EXPECT_EQ(r.tailEnd, QStringLiteral("triangle"));
    EXPECT_TRUE(r.headEnd.isEmpty());
    const DrawnShape p = shape(drawing, 3);
    EXPECT_DOUBLE_EQ(p.crop.left(), 0.25);
    EXPECT_DOUBLE_EQ(p.crop.top(), 0.1);
    EXPECT_DOUBLE_EQ(p.crop.right(), -0.05);
    EXPECT_DOUBLE_EQ(p.crop.bottom(), 0);
    const DrawnShape f = shape(drawing, 4);
    EXPECT_EQ(f.geometry, QStringLiteral("custom"));
    // In shares of the box: the path's own width and height are 100 and 200.
    EXPECT_EQ(f.customPath.boundingRect(), QRectF(0, 0, 1, 1));
    EXPECT_TRUE(f.customPath.contains(QPointF(0.5, 0.5)));
    EXPECT_FALSE(f.customPath.contains(QPointF(0.9, 0.1)));
}

TEST(DrawingStyles, GroupMembersAreInTheGroupsPlace) {
    // A group at (100, 100) pt, twice as large as its members' space.
    const QByteArray shapes =
        "<p:grpSp><p:nvGrpSpPr><p:cNvPr id=\"2\" name=\"G\"/><p:cNvGrpSpPr/><p:nvPr/>"
        "</p:nvGrpSpPr><p:grpSpPr><a:xfrm><a:off x=\"1270000\" y=\"1270000\"/><a:ext "
        "cx=\"2540000\" cy=\"2540000\"/><a:chOff x=\"635000\" y=\"0\"/><a:chExt cx=\"1270000\" "
        "cy=\"1270000\"/></a:xfrm></p:grpSpPr>" +
        rect(3, "", {},
             "<a:xfrm><a:off x=\"635000\" y=\"127000\"/><a:ext cx=\"254000\" cy=\"127000\"/>"
             "</a:xfrm>") +
        "</p:grpSp>";
    const DrawnShape member =
        shape(load(withShapes(decktest::blankParts(), shapes))->drawing(1), 3);
    EXPECT_EQ(member.box, QRectF(100, 120, 40, 20));
}

TEST(DrawingStyles, TablesWithTheirCellsStyleAndBorders) {
    const QByteArray styles =
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>"
        "<a:tblStyleLst xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\" "
        "def=\"{S}\"><a:tblStyle styleId=\"{S}\" styleName=\"Medium\"><a:wholeTbl><a:tcTxStyle>"
        "<a:schemeClr val=\"dk1\"/></a:tcTxStyle><a:tcStyle><a:tcBdr><a:insideH><a:ln "
        "w=\"12700\"><a:solidFill><a:srgbClr val=\"FFFFFF\"/></a:solidFill></a:ln></a:insideH>"
        "</a:tcBdr><a:fill><a:solidFill><a:schemeClr val=\"accent1\"><a:tint val=\"20000\"/>"
        "</a:schemeClr></a:solidFill></a:fill></a:tcStyle></a:wholeTbl><a:firstRow><a:tcTxStyle "
        "b=\"on\"><a:schemeClr val=\"lt1\"/></a:tcTxStyle><a:tcStyle><a:tcBdr/><a:fill>"
        "<a:solidFill><a:schemeClr val=\"accent1\"/></a:solidFill></a:fill></a:tcStyle>"
        "</a:firstRow></a:tblStyle></a:tblStyleLst>";
    const QByteArray cell =
        "<a:txBody><a:bodyPr/><a:lstStyle/><a:p><a:r><a:rPr "
        "lang=\"en-US\"/><a:t>T</a:t></a:r></a:p></a:txBody>";
    const QByteArray table =
        "<p:graphicFrame><p:nvGraphicFramePr><p:cNvPr id=\"2\" name=\"Table\"/>"
        "<p:cNvGraphicFramePr/><p:nvPr/></p:nvGraphicFramePr><p:xfrm><a:off x=\"0\" y=\"0\"/>"
        "<a:ext cx=\"3810000\" cy=\"762000\"/></p:xfrm><a:graphic><a:graphicData "
        "uri=\"http://schemas.openxmlformats.org/drawingml/2006/table\"><a:tbl><a:tblPr "
        "firstRow=\"1\"><a:tableStyleId>{S}</a:tableStyleId></a:tblPr><a:tblGrid>"
        "<a:gridCol w=\"1270000\"/> <a:gridCol w=\"2540000\"/></a:tblGrid>"
        "<a:tr h=\"381000\"><a:tc gridSpan=\"2\">" +
        cell + "<a:tcPr/></a:tc><a:tc hMerge=\"1\">" + cell +
        "<a:tcPr/></a:tc></a:tr><a:tr h=\"381000\"><a:tc>" + cell +
        "<a:tcPr marL=\"0\" anchor=\"ctr\"><a:lnR w=\"25400\"><a:solidFill><a:srgbClr "
        "val=\"FF0000\"/></a:solidFill></a:lnR><a:solidFill><a:srgbClr val=\"00FF00\"/>"
        "</a:solidFill></a:tcPr></a:tc><a:tc>" +
        cell + "<a:tcPr/></a:tc></a:tr></a:tbl></a:graphicData></a:graphic></p:graphicFrame>";
    decktest::Parts parts = withShapes(decktest::blankParts(), table);
    parts = withPart(parts, QStringLiteral("ppt/presentation.xml"), "rId90", "tableStyles",
                     "tableStyles.xml", QStringLiteral("ppt/tableStyles.xml"),
                     "application/vnd.openxmlformats-officedocument.presentationml.tableStyles+xml",
                     styles);
    const DrawnShape t = shape(load(parts)->drawing(1), 2);
    ASSERT_EQ(t.cells.size(), 3);  // the merged cell once
    // The header spans both columns, in accent 1 with bold light text.
    EXPECT_EQ(t.cells[0].box, QRectF(0, 0, 300, 30));
    EXPECT_EQ(t.cells[0].fill, 0x4472C4u);
    EXPECT_TRUE(t.cells[0].text.paragraphs[0].runs[0].format.bold);
    EXPECT_EQ(t.cells[0].text.paragraphs[0].runs[0].format.rgb, 0xFFFFFFu);
    // Its own fill, right border, margin and anchor before the style's.
    const DrawnShape& own = t.cells[1];
    EXPECT_EQ(own.box, QRectF(0, 30, 100, 30));
    EXPECT_EQ(own.fill, 0x00FF00u);
    EXPECT_EQ(own.borders[2].rgb, 0xFF0000u);
    EXPECT_FLOAT_EQ(own.borders[2].width, 2);
    EXPECT_EQ(own.borders[1].rgb, 0xFFFFFFu);  // inside: the style's horizontal lines
    EXPECT_FLOAT_EQ(own.borders[1].width, 1);
    EXPECT_DOUBLE_EQ(own.text.insets.left(), 0);
    EXPECT_EQ(own.text.anchor, minihost::TextAnchor::Middle);
    EXPECT_FALSE(own.text.paragraphs[0].runs[0].format.bold);
    EXPECT_EQ(own.text.paragraphs[0].runs[0].format.rgb, 0u);
    // The rest: the whole table's fill, accent 1 tinted 20 %.
    EXPECT_EQ(t.cells[2].box, QRectF(100, 30, 200, 30));
    expectColor(t.cells[2].fill, 0xDAE3F3, 3);
}

TEST(DrawingStyles, ChartsFromTheirCachedValues) {
    const QByteArray chart =
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>"
        "<c:chartSpace xmlns:c=\"http://schemas.openxmlformats.org/drawingml/2006/chart\" "
        "xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\"><c:chart><c:title>"
        "<c:tx><c:rich><a:bodyPr/><a:p><a:r><a:t>Sales</a:t></a:r></a:p></c:rich></c:tx>"
        "</c:title><c:plotArea><c:barChart><c:barDir val=\"bar\"/><c:grouping "
        "val=\"stacked\"/><c:gapWidth val=\"50\"/>"
        "<c:ser><c:idx val=\"0\"/><c:tx><c:strRef><c:strCache><c:ptCount val=\"1\"/><c:pt "
        "idx=\"0\"><c:v>2024</c:v></c:pt></c:strCache></c:strRef></c:tx>"
        "<c:dPt><c:idx val=\"1\"/><c:spPr><a:solidFill><a:srgbClr val=\"FF0000\"/></a:solidFill>"
        "</c:spPr></c:dPt>"
        "<c:cat><c:strRef><c:strCache><c:ptCount val=\"3\"/><c:pt idx=\"0\"><c:v>A</c:v></c:pt>"
        "<c:pt idx=\"1\"><c:v>B</c:v></c:pt><c:pt idx=\"2\"><c:v>C</c:v></c:pt></c:strCache>"
        "</c:strRef></c:cat><c:val><c:numRef><c:numCache><c:ptCount val=\"3\"/><c:pt idx=\"0\">"
        "<c:v>1.5</c:v></c:pt><c:pt idx=\"2\"><c:v>3</c:v></c:pt></c:numCache></c:numRef>"
        "</c:val></c:ser>"
        "<c:ser><c:idx val=\"1\"/><c:spPr><a:solidFill><a:srgbClr val=\"123456\"/></a:solidFill>"
        "</c:spPr><c:val><c:numLit><c:ptCount val=\"1\"/><c:pt idx=\"0\"><c:v>2</c:v></c:pt>"
        "</c:numLit></c:val></c:ser></c:barChart></c:plotArea><c:legend/></c:chart>"
        "</c:chartSpace>";
    const QByteArray frame =
        "<p:graphicFrame><p:nvGraphicFramePr><p:cNvPr id=\"2\" name=\"Chart\"/>"
        "<p:cNvGraphicFramePr/><p:nvPr/></p:nvGraphicFramePr><p:xfrm><a:off x=\"0\" y=\"0\"/>"
        "<a:ext cx=\"3810000\" cy=\"2540000\"/></p:xfrm><a:graphic><a:graphicData "
        "uri=\"http://schemas.openxmlformats.org/drawingml/2006/chart\"><c:chart "
        "xmlns:c=\"http://schemas.openxmlformats.org/drawingml/2006/chart\" r:id=\"rId91\"/>"
        "</a:graphicData></a:graphic></p:graphicFrame>";
    decktest::Parts parts = withShapes(decktest::blankParts(), frame);
    parts = withPart(parts, kSlide, "rId91", "chart", "../charts/chart1.xml",
                     QStringLiteral("ppt/charts/chart1.xml"),
                     "application/vnd.openxmlformats-officedocument.drawingml.chart+xml", chart);
    const minihost::ChartDrawing c = shape(load(parts)->drawing(1), 2).chart;
    EXPECT_EQ(c.type, QStringLiteral("bar"));
    EXPECT_TRUE(c.horizontal);
    EXPECT_TRUE(c.stacked);
    EXPECT_DOUBLE_EQ(c.gapWidth, 0.5);
    EXPECT_EQ(c.title, QStringLiteral("Sales"));
    EXPECT_TRUE(c.legend);
    EXPECT_EQ(c.categories, (QStringList{"A", "B", "C"}));
    ASSERT_EQ(c.series.size(), 2);
    EXPECT_EQ(c.series[0].name, QStringLiteral("2024"));
    ASSERT_EQ(c.series[0].values.size(), 3);
    EXPECT_DOUBLE_EQ(c.series[0].values[0], 1.5);
    EXPECT_TRUE(std::isnan(c.series[0].values[1]));  // not cached: not drawn
    EXPECT_DOUBLE_EQ(c.series[0].values[2], 3);
    EXPECT_EQ(c.series[0].rgb, 0x4472C4u);  // the theme's first accent
    EXPECT_EQ(c.series[0].pointColors.value(1), 0xFF0000u);
    EXPECT_EQ(c.series[1].rgb, 0x123456u);
    EXPECT_EQ(c.series[1].values, QList<double>{2});
}

TEST(DrawingStyles, DiagramsFromTheirDrawingPart) {
    const QByteArray data =
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>"
        "<dgm:dataModel xmlns:dgm=\"http://schemas.openxmlformats.org/drawingml/2006/diagram\" "
        "xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\"><dgm:ptLst/>"
        "<dgm:extLst><a:ext uri=\"x\"><dsp:dataModelExt "
        "xmlns:dsp=\"http://schemas.microsoft.com/office/drawing/2008/diagram\" "
        "relId=\"rId93\"/></a:ext></dgm:extLst></dgm:dataModel>";
    const QByteArray drawing =
        "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>"
        "<dsp:drawing xmlns:dsp=\"http://schemas.microsoft.com/office/drawing/2008/diagram\" "
        "xmlns:a=\"http://schemas.openxmlformats.org/drawingml/2006/main\"><dsp:spTree>"
        "<dsp:nvGrpSpPr><dsp:cNvPr id=\"0\" name=\"\"/><dsp:cNvGrpSpPr/></dsp:nvGrpSpPr>"
        "<dsp:grpSpPr/><dsp:sp modelId=\"{1}\"><dsp:nvSpPr><dsp:cNvPr id=\"0\" name=\"\"/>"
        "<dsp:cNvSpPr/></dsp:nvSpPr><dsp:spPr><a:xfrm><a:off x=\"127000\" y=\"0\"/><a:ext "
        "cx=\"254000\" cy=\"127000\"/></a:xfrm><a:prstGeom prst=\"roundRect\"><a:avLst/>"
        "</a:prstGeom><a:solidFill><a:srgbClr val=\"00AA00\"/></a:solidFill></dsp:spPr>"
        "<dsp:txBody><a:bodyPr/><a:lstStyle/><a:p><a:r><a:rPr lang=\"en-US\"/><a:t>Step</a:t>"
        "</a:r></a:p></dsp:txBody><dsp:txXfrm><a:off x=\"139700\" y=\"12700\"/><a:ext "
        "cx=\"228600\" cy=\"101600\"/></dsp:txXfrm></dsp:sp></dsp:spTree></dsp:drawing>";
    const QByteArray frame =
        "<p:graphicFrame><p:nvGraphicFramePr><p:cNvPr id=\"2\" name=\"Diagram\"/>"
        "<p:cNvGraphicFramePr/><p:nvPr/></p:nvGraphicFramePr><p:xfrm><a:off x=\"1270000\" "
        "y=\"2540000\"/><a:ext cx=\"3810000\" cy=\"2540000\"/></p:xfrm><a:graphic>"
        "<a:graphicData uri=\"http://schemas.openxmlformats.org/drawingml/2006/diagram\">"
        "<dgm:relIds xmlns:dgm=\"http://schemas.openxmlformats.org/drawingml/2006/diagram\" "
        "r:dm=\"rId92\" r:lo=\"rId0\" r:qs=\"rId0\" r:cs=\"rId0\"/></a:graphicData>"
        "</a:graphic></p:graphicFrame>";
    decktest::Parts parts = withShapes(decktest::blankParts(), frame);
    parts =
        withPart(parts, kSlide, "rId92", "diagramData", "../diagrams/data1.xml",
                 QStringLiteral("ppt/diagrams/data1.xml"),
                 "application/vnd.openxmlformats-officedocument.drawingml.diagramData+xml", data);
    parts = withPart(parts, kSlide, "rId93", "diagramDrawing", "../diagrams/drawing1.xml",
                     QStringLiteral("ppt/diagrams/drawing1.xml"),
                     "application/vnd.ms-office.drawingml.diagramDrawing+xml", drawing);
    const DrawnShape d = shape(load(parts)->drawing(1), 2);
    ASSERT_EQ(d.members.size(), 2);
    // The shape in the frame's place (100, 200 pt), without its text; then its text in its own
    // box.
    EXPECT_EQ(d.members[0].box, QRectF(110, 200, 20, 10));
    EXPECT_EQ(d.members[0].geometry, QStringLiteral("roundRect"));
    EXPECT_EQ(d.members[0].fill, 0x00AA00u);
    EXPECT_FALSE(d.members[0].hasText);
    EXPECT_EQ(d.members[1].box, QRectF(111, 201, 18, 8));
    EXPECT_TRUE(d.members[1].geometry.isEmpty());
    ASSERT_TRUE(d.members[1].hasText);
    EXPECT_EQ(d.members[1].text.paragraphs[0].text, QStringLiteral("Step"));
}

TEST(DrawingStyles, HiddenSlidesSaySo) {
    EXPECT_FALSE(load(decktest::blankParts())->drawing(1).hidden);
    const auto deck = load(edit(decktest::blankParts(), kSlide, "<p:sld ", "<p:sld show=\"0\" "));
    EXPECT_TRUE(deck->drawing(1).hidden);
}

}  // namespace
