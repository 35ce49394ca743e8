// SPDX-License-Identifier: MIT
// What a slide shows, for programs that draw it: its background and its shapes in z order, every
// value resolved as a presentation program resolves it. Positions and sizes are points on the
// slide; colours are 0x00RRGGBB; text formats come from the run, else the paragraph's level in
// the frame's list style, then for a placeholder the placeholders it inherits from on the layout
// and the master and the master's text style for its kind, for other text the deck's defaults;
// a shape style's text colour comes before the master's and the deck's. Theme fonts and scheme
// colours (with their luminance transforms) are resolved.
//
// Made by Deck::drawing(slide): a copy that stays valid whatever happens to the deck later.
// Text positions are those of Deck::text() and of the selection: UTF-16 units over the frame's
// text, "\r" between paragraphs, "\v" for a line break.
#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QMarginsF>
#include <QPainterPath>
#include <QRectF>
#include <QString>
#include <cstdint>

namespace minihost {

struct TextFormat {
    QString latinFont;
    QString eastAsianFont;  // for ideographs; empty when neither the text nor the theme names one
    float size = 18;        // points, as written (a frame that shrinks its text scales it)
    float characterSpacing = 0;  // points added after every character (a:rPr/@spc)
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    std::uint32_t rgb = 0;
};

// Consecutive text of one format: a run, a field, or a line break ("\v").
struct TextRun {
    int start = 0;  // in the frame's text
    int length = 0;
    TextFormat format;
};

// One colour of a gradient at `position` (0 to 1 along it), with its opacity.
struct GradientStop {
    double position = 0;
    std::uint32_t rgb = 0;
    double alpha = 1;
};

// How an area is filled: a shape's inside, a slide's background, a table cell.
struct Fill {
    enum class Kind { None, Solid, Gradient, Picture, Pattern };
    Kind kind = Kind::None;
    std::uint32_t rgb = 0;  // Solid; a pattern's foreground
    double alpha = 1;       // Solid: opacity from 0 to 1
    std::uint32_t patternBackground = 0xFFFFFF;
    QString pattern;  // a:pattFill/@prst ("pct50", "dkHorz", ...)
    // Gradient: its stops in order of position; linear at `angle` (degrees, clockwise from
    // left to right), or from a centre outward when `path` is "circle", "rect" or "shape", the
    // centre being `focus` (fractions of the box; the first stop at the centre).
    QList<GradientStop> stops;
    double angle = 0;
    QString path;
    QRectF focus{0.5, 0.5, 0, 0};
    QString picture;    // Picture: the media part (for Deck::pictures())
    bool tile = false;  // Picture: repeated at its own size instead of stretched over the box
};

enum class TextAlign { Left, Center, Right, Justify };

struct TextParagraph {
    int start = 0;         // in the frame's text
    QString text;          // without the paragraph break; line breaks are "\v"
    QList<TextRun> runs;   // covering `text` in order
    TextFormat endFormat;  // the paragraph's end: the height of an empty paragraph
    TextAlign align = TextAlign::Left;
    float marginLeft = 0;   // points, from the frame's left inset
    float marginRight = 0;  // points, from the frame's right inset
    float indent = 0;       // of the first line, relative to marginLeft (negative: hanging)
    // Line spacing: a multiple of single spacing, or exact points when lineSpacingPoints > 0.
    float lineSpacing = 1;
    float lineSpacingPoints = 0;
    float spaceBefore = 0, spaceAfter = 0;  // points
    // The bullet: a character, or a number counted over the frame's paragraphs ("3.", "c)"),
    // empty for none; drawn in its own typeface when it names one, its own colour, and scaled.
    QString bullet;
    QString bulletFont;
    bool bulletColored = false;
    std::uint32_t bulletRgb = 0;
    float bulletScale = 1;
};

enum class TextAnchor { Top, Middle, Bottom };
enum class Autofit { None, ShrinkText, ShapeFollowsText };

struct TextFrame {
    QList<TextParagraph> paragraphs;
    QMarginsF insets{7.2, 3.6, 7.2, 3.6};  // points
    bool wrap = true;
    TextAnchor anchor = TextAnchor::Top;
    Autofit autofit = Autofit::None;
    float fontScale = 1;             // ShrinkText: every size is scaled by this
    float lineSpacingReduction = 0;  // ShrinkText: taken off every line spacing (0.2 = 20 %)
};

// A chart as its part caches it: what is plotted, drawn without the spreadsheet behind it.
struct ChartSeries {
    QString name;
    QList<double> values;   // per category (a missing value is NaN)
    QList<double> xValues;  // scatter charts: the x of every value
    std::uint32_t rgb = 0;  // its colour: its own, else the theme's accents in turn
    // Points in colours of their own (c:dPt), by index; pies colour every slice so.
    QMap<int, std::uint32_t> pointColors;
};

struct ChartDrawing {
    // "bar" (columns, or bars when horizontal), "line", "area", "pie", "doughnut", "scatter",
    // "radar"; empty for a graphic frame that holds no chart.
    QString type;
    bool horizontal = false;  // bars along x
    bool stacked = false;     // grouping "stacked" or "percentStacked"
    double gapWidth = 1.5;    // between bar groups, as a share of a bar's width
    QString title;            // its title's text, empty for none
    QStringList categories;
    QList<ChartSeries> series;
    bool legend = false;
};

struct DrawnShape {
    int id = 0;
    QString name;
    QString kind;           // as ShapeInfo::kind
    QRectF box;             // points; inherited from the layout for placeholders
    bool boxKnown = false;  // false: neither the shape nor its layout says where it is
    double rotation = 0;    // degrees, clockwise about the box's centre
    bool flipH = false, flipV = false;
    // The outline of a plain shape: a preset name ("rect", "roundRect", "ellipse", ...),
    // "line" for connectors, "custom" for free-form geometry; empty for pictures, tables and
    // charts, and groups (whose members are shapes of their own).
    QString geometry;
    bool filled = false;
    std::uint32_t fill = 0;  // the fill's colour (a gradient's first, a pattern's foreground)
    Fill fillStyle;          // the fill as drawn
    // The preset's adjust values as written (a:gd "val N": N in thousandths of a percent, or
    // 60000ths of a degree for angles), by name ("adj", "adj1", ...).
    QMap<QString, double> adjustments;
    // "custom": the shape's own outline, in shares of its box (0 to 1 across and down).
    QPainterPath customPath;
    bool outlined = false;  // plain shapes and pictures
    std::uint32_t line = 0;
    float lineWidth = 0.75f;   // points
    QString dash;              // a:prstDash ("dash", "sysDot", ...), empty for a solid line
    QString headEnd, tailEnd;  // arrowheads at a line's start and end ("triangle", ...)
    bool hasText = false;
    TextFrame text;
    QString picture;  // a picture's media part (for Deck::pictures()), empty otherwise
    // The share of the picture cut off each side (a:srcRect: 0.25 is a quarter); negative
    // values leave room around it.
    QMarginsF crop;
    // A table's cells, left to right and top to bottom, each a rectangle with its fill, outline
    // and text (merged cells once, over the cells they cover).
    QList<DrawnShape> cells;
    // A cell's borders (left, top, right, bottom): width 0 for none.
    struct Border {
        std::uint32_t rgb = 0;
        float width = 0;
    };
    Border borders[4];
    ChartDrawing chart;  // a graphic frame's chart
    // A diagram's shapes as its drawing part keeps them, in z order, placed on the slide (a
    // shape whose text has a box of its own is followed by a shape of that box with only the
    // text).
    QList<DrawnShape> members;
};

struct SlideDrawing {
    bool hidden = false;  // left out of a slide show (p:sld/@show="0"), and of a PDF export
    std::uint32_t background = 0xFFFFFF;  // its colour (a gradient's first, a picture's none)
    Fill backgroundFill;                  // as drawn (Solid white when nothing says otherwise)
    // What the slide's master and layout draw behind it (logos, bands, lines: not their
    // placeholders), in z order. Not shapes of the slide: their ids mean nothing on it.
    QList<DrawnShape> behind;
    QList<DrawnShape> shapes;  // z order: the first is at the back
};

}  // namespace minihost
