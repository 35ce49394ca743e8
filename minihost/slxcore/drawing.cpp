// SPDX-License-Identifier: MIT
// Deck::drawing(): what a slide shows, resolved through the slide's layout and master.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "minihost/slxcore/bullets_p.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/deckcore_p.h"
#include "minihost/slxcore/drawing_p.h"
#include "minihost/slxcore/fills_p.h"
#include "minihost/slxcore/inheritance_p.h"
#include "minihost/slxcore/slidedrawing.h"
#include "minihost/slxcore/textbody_p.h"
#include "minihost/slxcore/xmlnode_p.h"

namespace minihost {
namespace {

constexpr double kPercent = 100000.0;  // DrawingML percentages are thousandths of a percent

// The list-style level properties ("a:lvl2pPr") that apply to text at `level` (0-based) in the
// shape, nearest first: its own list style, then for a placeholder its placeholders' and the
// master's text style for its kind, for other shapes the deck's defaults.
std::vector<pugi::xml_node> levelSources(const Lineage& l, const Templates& t, const DeckCore& core,
                                         int level) {
    const std::string name = "lvl" + std::to_string(std::clamp(level, 0, 8) + 1) + "pPr";
    std::vector<pugi::xml_node> sources;
    for (pugi::xml_node element : l.elements)
        sources.push_back(child(child(child(element, "txBody"), "lstStyle"), name.c_str()));
    if (l.ph) {
        const std::string family = placeholderFamily(l.ph);
        const char* style = family == "title"  ? "titleStyle"
                            : family == "body" ? "bodyStyle"
                                               : "otherStyle";
        sources.push_back(child(child(t.masterTextStyles, style), name.c_str()));
    } else {
        if (l.cellStyle) sources.push_back(l.cellStyle);
        // The deck's defaults are for text outside placeholders only.
        sources.push_back(
            child(child(core.presentation.document_element(), "defaultTextStyle"), name.c_str()));
    }
    return sources;
}

// The first attribute `name` along `chain`, or an empty attribute.
pugi::xml_attribute firstAttribute(const std::vector<pugi::xml_node>& chain, const char* name) {
    for (pugi::xml_node n : chain)
        if (pugi::xml_attribute a = n.attribute(name)) return a;
    return {};
}

pugi::xml_node firstChild(const std::vector<pugi::xml_node>& chain, const char* local) {
    for (pugi::xml_node n : chain)
        if (pugi::xml_node c = child(n, local)) return c;
    return {};
}

TextFormat formatOf(pugi::xml_node rPr, const std::vector<pugi::xml_node>& levels,
                    pugi::xml_node fontReference, const DeckStyles& styles) {
    std::vector<pugi::xml_node> chain{rPr};
    for (pugi::xml_node level : levels) chain.push_back(child(level, "defRPr"));
    const FontValues values = resolveFont(chain, styles, true);
    TextFormat f;
    f.latinFont = values.name;
    f.eastAsianFont = values.eastAsianName;
    f.size = values.size;
    f.characterSpacing = values.spacing;
    f.bold = values.bold;
    f.italic = values.italic;
    f.underline = values.underline;
    f.strike = values.strike;
    f.rgb = values.rgb;
    // A shape's style names the colour of its text (white on a filled shape) unless the run or
    // the shape's own list style names one: it comes before the master's and the deck's.
    const auto own = std::find_if(chain.begin(), chain.end(),
                                  [](pugi::xml_node n) { return child(n, "solidFill"); });
    if (own - chain.begin() >= 2) colorOf(fontReference, styles, &f.rgb, true);
    return f;
}

// A spacing element (a:lnSpc, a:spcBef, ...) as points, given the text size for percentages.
float spacingPoints(pugi::xml_node spacing, float size) {
    if (pugi::xml_node pts = child(spacing, "spcPts")) return pts.attribute("val").as_float() / 100;
    if (pugi::xml_node pct = child(spacing, "spcPct"))
        return static_cast<float>(pct.attribute("val").as_double() / kPercent * 1.2 * size);
    return 0;
}

TextParagraph paragraphOf(pugi::xml_node p, const Lineage& l, const Templates& t,
                          const DeckCore& core, const DeckStyles& styles,
                          pugi::xml_node fontReference, Numbering& numbering) {
    TextParagraph para;
    const pugi::xml_node pPr = child(p, "pPr");
    const std::vector<pugi::xml_node> levels =
        levelSources(l, t, core, pPr.attribute("lvl").as_int(0));
    std::vector<pugi::xml_node> chain{pPr};
    chain.insert(chain.end(), levels.begin(), levels.end());

    const std::string align = firstAttribute(chain, "algn").value();
    para.align = align == "ctr"                         ? TextAlign::Center
                 : align == "r"                         ? TextAlign::Right
                 : (align == "just" || align == "dist") ? TextAlign::Justify
                                                        : TextAlign::Left;
    para.marginLeft = static_cast<float>(firstAttribute(chain, "marL").as_double() / kEmuPerPoint);
    para.marginRight = static_cast<float>(firstAttribute(chain, "marR").as_double() / kEmuPerPoint);
    para.indent = static_cast<float>(firstAttribute(chain, "indent").as_double() / kEmuPerPoint);
    para.endFormat = formatOf(child(p, "endParaRPr"), levels, fontReference, styles);
    const float size = para.endFormat.size;
    if (pugi::xml_node lnSpc = firstChild(chain, "lnSpc")) {
        if (pugi::xml_node pct = child(lnSpc, "spcPct"))
            para.lineSpacing = static_cast<float>(pct.attribute("val").as_double() / kPercent);
        else
            para.lineSpacingPoints = spacingPoints(lnSpc, size);
    }
    para.spaceBefore = spacingPoints(firstChild(chain, "spcBef"), size);
    para.spaceAfter = spacingPoints(firstChild(chain, "spcAft"), size);
    numbering.apply(para, chain, pPr.attribute("lvl").as_int(0), styles);
    return para;
}

void fillText(DrawnShape& shape, pugi::xml_node txBody, const Lineage& l, const Templates& t,
              const DeckCore& core, const DeckStyles& styles, pugi::xml_node fontReference) {
    shape.hasText = true;
    TextFrame& frame = shape.text;
    std::vector<pugi::xml_node> bodies;
    for (pugi::xml_node element : l.elements)
        bodies.push_back(child(child(element, "txBody"), "bodyPr"));
    auto inset = [&](const char* name, double fallback) {
        const pugi::xml_attribute a = firstAttribute(bodies, name);
        return a ? a.as_double() / kEmuPerPoint : fallback;
    };
    frame.insets =
        QMarginsF(inset("lIns", 7.2), inset("tIns", 3.6), inset("rIns", 7.2), inset("bIns", 3.6));
    frame.wrap = std::strcmp(firstAttribute(bodies, "wrap").value(), "none") != 0;
    const std::string anchor = firstAttribute(bodies, "anchor").value();
    frame.anchor = anchor == "ctr" ? TextAnchor::Middle
                   : anchor == "b" ? TextAnchor::Bottom
                                   : TextAnchor::Top;
    for (pugi::xml_node bodyPr : bodies) {
        if (child(bodyPr, "spAutoFit")) {
            frame.autofit = Autofit::ShapeFollowsText;
        } else if (pugi::xml_node norm = child(bodyPr, "normAutofit")) {
            frame.autofit = Autofit::ShrinkText;
            frame.fontScale =
                static_cast<float>(norm.attribute("fontScale").as_double(kPercent) / kPercent);
            frame.lineSpacingReduction =
                static_cast<float>(norm.attribute("lnSpcReduction").as_double(0) / kPercent);
        } else if (!child(bodyPr, "noAutofit")) {
            continue;
        }
        break;
    }

    const TextBody body(txBody);
    const std::vector<pugi::xml_node>& nodes = body.paragraphNodes();
    const std::vector<QString> texts = body.paragraphs();
    const std::vector<int> starts = body.paragraphStarts();
    const std::vector<TextBody::Piece> pieces = body.pieces();
    // Pieces come paragraph by paragraph, in order: one pass over them.
    std::size_t piece = 0;
    Numbering numbering;
    for (std::size_t i = 0; i < nodes.size() && i < texts.size() && i < starts.size(); ++i) {
        TextParagraph para = paragraphOf(nodes[i], l, t, core, styles, fontReference, numbering);
        para.start = starts[i];
        para.text = texts[i];
        const std::vector<pugi::xml_node> levels =
            levelSources(l, t, core, child(nodes[i], "pPr").attribute("lvl").as_int(0));
        for (; piece < pieces.size() && pieces[piece].paragraph == nodes[i]; ++piece)
            if (pieces[piece].length > 0)
                para.runs << TextRun{
                    pieces[piece].start, pieces[piece].length,
                    formatOf(pieces[piece].properties, levels, fontReference, styles)};
        frame.paragraphs << para;
    }
}

// The outline a line holder (a:ln) says: its colour, width and dash; false when it says nothing
// of its colour (inherited).
bool lineOf(pugi::xml_node ln, const DeckStyles& styles, DrawnShape& shape,
            const std::uint32_t* placeholder = nullptr) {
    if (ln.attribute("w"))
        shape.lineWidth = static_cast<float>(ln.attribute("w").as_double() / kEmuPerPoint);
    if (pugi::xml_node dash = child(ln, "prstDash"); dash && shape.dash.isEmpty())
        shape.dash = qs(dash.attribute("val").value());
    if (child(ln, "headEnd").attribute("type") && shape.headEnd.isEmpty())
        shape.headEnd = qs(child(ln, "headEnd").attribute("type").value());
    if (child(ln, "tailEnd").attribute("type") && shape.tailEnd.isEmpty())
        shape.tailEnd = qs(child(ln, "tailEnd").attribute("type").value());
    Fill fill;
    if (!fillOf(ln, styles, nullptr, &fill, placeholder)) return false;
    shape.outlined = fill.kind != Fill::Kind::None;
    shape.line = mainColor(fill);
    return true;
}

void fillGeometry(DrawnShape& shape, const ShapeNode& node, const Lineage& l) {
    for (pugi::xml_node element : l.elements) {
        const ShapeNode inherited{element, node.id,
                                  element == node.element ? node.placement : Placement{}};
        const Box box = geometry(inherited);
        if (!box.known) continue;
        shape.box = QRectF(box.left, box.top, box.width, box.height);
        shape.boxKnown = true;
        const pugi::xml_node xfrm = transformOf(element);
        shape.rotation = xfrm.attribute("rot").as_double() / 60000.0;
        shape.flipH = xfrm.attribute("flipH").as_bool();
        shape.flipV = xfrm.attribute("flipV").as_bool();
        return;
    }
}

// A free-form geometry (a:custGeom) in shares of its box: each a:path's points over its own
// width and height. Guides by name are not evaluated (their points count as 0).
QPainterPath customPathOf(pugi::xml_node custom) {
    QPainterPath result;
    for (pugi::xml_node path : child(custom, "pathLst").children()) {
        const double w = std::max(1.0, path.attribute("w").as_double(1));
        const double h = std::max(1.0, path.attribute("h").as_double(1));
        auto point = [&](pugi::xml_node pt) {
            return QPointF(pt.attribute("x").as_double() / w, pt.attribute("y").as_double() / h);
        };
        for (pugi::xml_node step : path.children()) {
            const std::string local = localName(step);
            std::vector<QPointF> pts;
            for (pugi::xml_node pt : step.children())
                if (pt.type() == pugi::node_element) pts.push_back(point(pt));
            if (local == "moveTo" && pts.size() >= 1) {
                result.moveTo(pts[0]);
            } else if (local == "lnTo" && pts.size() >= 1) {
                result.lineTo(pts[0]);
            } else if (local == "cubicBezTo" && pts.size() >= 3) {
                result.cubicTo(pts[0], pts[1], pts[2]);
            } else if (local == "quadBezTo" && pts.size() >= 2) {
                result.quadTo(pts[0], pts[1]);
            } else if (local == "arcTo") {
                // An arc of the ellipse with radii wR, hR from the current point, angles in
                // 60000ths of a degree clockwise.
                const double rx = step.attribute("wR").as_double() / w;
                const double ry = step.attribute("hR").as_double() / h;
                const double start = step.attribute("stAng").as_double() / 60000.0;
                const double sweep = step.attribute("swAng").as_double() / 60000.0;
                const double radians = start * M_PI / 180;
                const QPointF centre = result.currentPosition() -
                                       QPointF(rx * std::cos(radians), ry * std::sin(radians));
                result.arcTo(QRectF(centre.x() - rx, centre.y() - ry, 2 * rx, 2 * ry), -start,
                             -sweep);
            } else if (local == "close") {
                result.closeSubpath();
            }
        }
    }
    return result;
}

void fillOutline(DrawnShape& shape, const Lineage& l, const DeckStyles& styles,
                 const PartOfId& partOf) {
    const std::string local = localName(l.elements.front());
    if (local == "cxnSp") shape.geometry = QStringLiteral("line");
    if (local == "pic") {
        // A picture is not filled, but it may have an outline.
        lineOf(child(child(l.elements.front(), "spPr"), "ln"), styles, shape);
        return;
    }
    if (local == "sp") {
        shape.geometry = QStringLiteral("rect");
        for (pugi::xml_node element : l.elements) {
            const pugi::xml_node spPr = child(element, "spPr");
            if (pugi::xml_node preset = child(spPr, "prstGeom")) {
                shape.geometry = qs(preset.attribute("prst").value());
                for (pugi::xml_node gd : child(preset, "avLst").children())
                    if (gd.attribute("name"))
                        shape.adjustments[qs(gd.attribute("name").value())] =
                            QString::fromLatin1(gd.attribute("fmla").value())
                                .section(' ', 1)
                                .toDouble();
                break;
            }
            if (pugi::xml_node custom = child(spPr, "custGeom")) {
                shape.geometry = QStringLiteral("custom");
                shape.customPath = customPathOf(custom);
                break;
            }
        }
    }
    if (shape.geometry.isEmpty()) return;
    const pugi::xml_node style = child(l.elements.front(), "style");
    bool decided = false;
    for (pugi::xml_node element : l.elements)
        if ((decided = fillOf(child(element, "spPr"), styles, partOf, &shape.fillStyle))) break;
    if (!decided) themeFillOf(child(style, "fillRef"), styles, partOf, &shape.fillStyle);
    shape.filled = shape.fillStyle.kind != Fill::Kind::None;
    shape.fill = mainColor(shape.fillStyle);
    // A line style of the theme is drawn in the reference's colour.
    const pugi::xml_node lnRef = child(style, "lnRef");
    std::uint32_t lnColor = 0;
    const bool lnColored = colorOf(lnRef, styles, &lnColor, true);
    decided = false;
    for (pugi::xml_node element : l.elements)
        if ((decided = lineOf(child(child(element, "spPr"), "ln"), styles, shape))) break;
    if (!decided && lnRef.attribute("idx").as_int() > 0) {
        int n = lnRef.attribute("idx").as_int();
        for (pugi::xml_node ln : child(styles.formatScheme, "lnStyleLst").children())
            if (ln.type() == pugi::node_element && --n == 0) {
                const float width = shape.lineWidth;
                decided = lineOf(ln, styles, shape, lnColored ? &lnColor : nullptr);
                // The shape's own width, when it gives one, comes before the theme's.
                for (pugi::xml_node element : l.elements)
                    if (child(child(element, "spPr"), "ln").attribute("w")) shape.lineWidth = width;
                break;
            }
        if (!decided) {
            shape.outlined = lnColored;
            shape.line = lnColor;
        }
    }
}

// The media part a picture shows; empty when it names none that can be found.
QString picturePart(const DeckCore& core, const std::string& slidePart, pugi::xml_node pic) {
    const pugi::xml_node blip = child(child(pic, "blipFill"), "blip");
    const std::string id = attribute(blip, "embed").value();
    if (id.empty()) return {};
    try {
        return QString::fromStdString(core.relatedPart(slidePart, id));
    } catch (const DeckError&) {
        return {};  // damaged relationships: the picture is drawn as its labelled place
    }
}

// A graphic frame's table (a:tbl), or an empty node.
pugi::xml_node tableOf(pugi::xml_node element) {
    if (std::strcmp(localName(element), "graphicFrame") != 0) return {};
    return child(child(child(element, "graphic"), "graphicData"), "tbl");
}

// The parts of a table style (a:tblStyle) that apply to the cell at `row`, `column` of a table
// of `rows` by `columns`, weakest first, as the table's a:tblPr switches them on.
std::vector<pugi::xml_node> styleParts(pugi::xml_node style, pugi::xml_node tblPr, std::size_t row,
                                       std::size_t column, std::size_t rows, std::size_t columns) {
    const bool firstRow = tblPr.attribute("firstRow").as_bool();
    const bool firstCol = tblPr.attribute("firstCol").as_bool();
    std::vector<pugi::xml_node> parts{child(style, "wholeTbl")};
    if (tblPr.attribute("bandRow").as_bool())
        parts.push_back(child(style, (row - (firstRow ? 1 : 0)) % 2 ? "band2H" : "band1H"));
    if (tblPr.attribute("bandCol").as_bool())
        parts.push_back(child(style, (column - (firstCol ? 1 : 0)) % 2 ? "band2V" : "band1V"));
    if (tblPr.attribute("lastCol").as_bool() && column + 1 == columns)
        parts.push_back(child(style, "lastCol"));
    if (firstCol && column == 0) parts.push_back(child(style, "firstCol"));
    if (tblPr.attribute("lastRow").as_bool() && row + 1 == rows)
        parts.push_back(child(style, "lastRow"));
    if (firstRow && row == 0) parts.push_back(child(style, "firstRow"));
    return parts;
}

// The table style a table names (a:tableStyleId) in the deck's table styles, or an empty node.
pugi::xml_node tableStyleOf(pugi::xml_node tblPr, const DeckCore& core) {
    const std::string id = child(tblPr, "tableStyleId").text().get();
    if (id.empty()) return {};
    try {
        const TemplatePart* styles =
            core.relatedTemplate(core.presentationPart, "tableStyles", nullptr);
        if (!styles) return {};
        for (pugi::xml_node style : styles->doc.document_element().children())
            if (id == style.attribute("styleId").value()) return style;
    } catch (const DeckError&) {
        // A damaged table styles part: the tables are drawn with their own fills only.
    }
    return {};
}

// What the style parts give a cell: its fill, borders and text colour and weight (as a list-style
// level in `text`, for the cell's text).
void applyTableStyle(DrawnShape& cell, const std::vector<pugi::xml_node>& parts, bool lastRow,
                     bool lastColumn, bool firstRow, bool firstColumn, const DeckStyles& styles,
                     pugi::xml_document& text) {
    pugi::xml_node level = text.append_child("a:lvl1pPr");
    pugi::xml_node defRPr = level.append_child("a:defRPr");
    for (pugi::xml_node part : parts) {
        const pugi::xml_node tcStyle = child(part, "tcStyle");
        Fill fill;
        if (fillOf(child(tcStyle, "fill"), styles, nullptr, &fill))
            cell.fillStyle = fill;
        else if (pugi::xml_node ref = child(tcStyle, "fillRef"))
            themeFillOf(ref, styles, nullptr, &cell.fillStyle);
        const pugi::xml_node borders = child(tcStyle, "tcBdr");
        const char* outer[] = {"left", "top", "right", "bottom"};
        const char* inner[] = {"insideV", "insideH", "insideV", "insideH"};
        const bool edge[] = {firstColumn, firstRow, lastColumn, lastRow};
        for (int side = 0; side < 4; ++side) {
            const pugi::xml_node ln =
                child(child(borders, edge[side] ? outer[side] : inner[side]), "ln");
            Fill line;
            if (!fillOf(ln, styles, nullptr, &line)) continue;
            cell.borders[side] = {
                mainColor(line),
                line.kind == Fill::Kind::None
                    ? 0.0f
                    : static_cast<float>(ln.attribute("w").as_double(12700) / kEmuPerPoint)};
        }
        const pugi::xml_node textStyle = child(part, "tcTxStyle");
        if (const pugi::xml_attribute b = textStyle.attribute("b"))
            defRPr.attribute("b")
                ? defRPr.attribute("b").set_value(std::strcmp(b.value(), "on") == 0)
                : defRPr.append_attribute("b").set_value(std::strcmp(b.value(), "on") == 0);
        for (pugi::xml_node color : textStyle.children()) {
            const std::string local = localName(color);
            if (local != "schemeClr" && local != "srgbClr" && local != "prstClr") continue;
            defRPr.remove_child("a:solidFill");
            defRPr.append_child("a:solidFill").append_copy(color);
        }
    }
    cell.filled = cell.fillStyle.kind != Fill::Kind::None;
    cell.fill = mainColor(cell.fillStyle);
}

// At most this many cells of a table are drawn: a hostile deck's million empty cells would
// otherwise each get a text layout.
constexpr int kCellsDrawn = 4096;

// A table's cells, each a rectangle in the table's box by its grid, with its fill, borders and
// text (its margins are its insets).
void fillTable(DrawnShape& shape, pugi::xml_node tbl, const Templates& t, const DeckCore& core,
               const DeckStyles& styles) {
    if (!shape.boxKnown) return;
    std::vector<double> columns, rows;
    for (pugi::xml_node col : child(tbl, "tblGrid").children())
        if (std::strcmp(localName(col), "gridCol") == 0)
            columns.push_back(col.attribute("w").as_double() / kEmuPerPoint);
    for (pugi::xml_node tr : tbl.children())
        if (std::strcmp(localName(tr), "tr") == 0)
            rows.push_back(tr.attribute("h").as_double() / kEmuPerPoint);
    auto sum = [](const std::vector<double>& sizes, std::size_t from, int count) {
        double total = 0;
        for (std::size_t i = from; i < sizes.size() && i < from + static_cast<std::size_t>(count);
             ++i)
            total += sizes[i];
        return total;
    };
    const pugi::xml_node tblPr = child(tbl, "tblPr");
    const pugi::xml_node style = tableStyleOf(tblPr, core);
    std::size_t row = 0;
    double y = shape.box.top();
    for (pugi::xml_node tr : tbl.children()) {
        if (std::strcmp(localName(tr), "tr") != 0) continue;
        std::size_t column = 0;
        double x = shape.box.left();
        for (pugi::xml_node tc : tr.children()) {
            if (std::strcmp(localName(tc), "tc") != 0) continue;
            const double width = sum(columns, column, 1);
            const bool covered =
                tc.attribute("hMerge").as_bool() || tc.attribute("vMerge").as_bool();
            if (!covered && shape.cells.size() < kCellsDrawn) {
                DrawnShape cell;
                cell.id = shape.id;
                cell.kind = QStringLiteral("table cell");
                cell.geometry = QStringLiteral("rect");
                cell.boxKnown = true;
                cell.box = QRectF(
                    x, y, sum(columns, column, std::max(1, tc.attribute("gridSpan").as_int(1))),
                    sum(rows, row, std::max(1, tc.attribute("rowSpan").as_int(1))));
                const pugi::xml_node tcPr = child(tc, "tcPr");
                pugi::xml_document cellText;
                if (style)
                    applyTableStyle(
                        cell, styleParts(style, tblPr, row, column, rows.size(), columns.size()),
                        row + 1 == rows.size(), column + 1 == columns.size(), row == 0, column == 0,
                        styles, cellText);
                if (Fill own; fillOf(tcPr, styles, nullptr, &own)) {
                    cell.fillStyle = own;
                    cell.filled = own.kind != Fill::Kind::None;
                    cell.fill = mainColor(own);
                }
                const char* sides[] = {"lnL", "lnT", "lnR", "lnB"};
                for (int side = 0; side < 4; ++side) {
                    const pugi::xml_node ln = child(tcPr, sides[side]);
                    Fill line;
                    if (fillOf(ln, styles, nullptr, &line) && line.kind != Fill::Kind::None)
                        cell.borders[side] = {
                            mainColor(line),
                            static_cast<float>(ln.attribute("w").as_double(12700) / kEmuPerPoint)};
                }
                if (const pugi::xml_node body = child(tc, "txBody")) {
                    fillText(cell, body, Lineage{{tc}, {}, cellText.first_child()}, t, core, styles,
                             {});
                    auto margin = [&](const char* name, double fallback) {
                        const pugi::xml_attribute a = tcPr.attribute(name);
                        return a ? a.as_double() / kEmuPerPoint : fallback;
                    };
                    cell.text.insets = QMarginsF(margin("marL", 7.2), margin("marT", 3.6),
                                                 margin("marR", 7.2), margin("marB", 3.6));
                    const std::string anchor = tcPr.attribute("anchor").value();
                    cell.text.anchor = anchor == "ctr" ? TextAnchor::Middle
                                       : anchor == "b" ? TextAnchor::Bottom
                                                       : TextAnchor::Top;
                }
                shape.cells << cell;
            }
            x += width;
            ++column;
        }
        y += sum(rows, row, 1);
        ++row;
    }
}

// The first element named `local` under `node`, at any depth (or an empty node).
pugi::xml_node descendant(pugi::xml_node node, const char* local) {
    return node.find_node([local](pugi::xml_node n) {
        return n.type() == pugi::node_element && std::strcmp(localName(n), local) == 0;
    });
}

DrawnShape drawnShape(const ShapeNode& node, const Templates& t, const DeckCore& core,
                      const DeckStyles& styles, const std::string& partName);

// A diagram's shapes from its drawing part (named by its data part's dataModelExt), placed in the
// frame's box.
void fillDiagram(DrawnShape& shape, pugi::xml_node frame, const Templates& t, const DeckCore& core,
                 const DeckStyles& styles, const std::string& slidePart) {
    const pugi::xml_node relIds = child(child(child(frame, "graphic"), "graphicData"), "relIds");
    const std::string dataId = attribute(relIds, "dm").value();
    if (!shape.boxKnown || dataId.empty()) return;
    try {
        const std::string dataPart = core.relatedPart(slidePart, dataId);
        if (dataPart.empty()) return;
        const std::string drawingId =
            descendant(core.keptPart(dataPart)->doc, "dataModelExt").attribute("relId").value();
        const std::string drawingPart =
            drawingId.empty() ? std::string() : core.relatedPart(slidePart, drawingId);
        if (drawingPart.empty()) return;
        const TemplatePart* drawing = core.keptPart(drawingPart);
        const QPointF origin = shape.box.topLeft();
        for (const ShapeNode& node : listShapes(drawing->tree)) {
            if (std::strcmp(localName(node.element), "sp") != 0) continue;
            DrawnShape member = drawnShape(node, t, core, styles, drawingPart);
            member.box.translate(origin);
            if (const pugi::xml_node txXfrm = child(node.element, "txXfrm");
                txXfrm && member.hasText) {
                DrawnShape text = member;
                text.geometry.clear();
                text.filled = text.outlined = false;
                text.fillStyle = Fill();
                const pugi::xml_node off = child(txXfrm, "off"), ext = child(txXfrm, "ext");
                text.box = QRectF(off.attribute("x").as_double() / kEmuPerPoint,
                                  off.attribute("y").as_double() / kEmuPerPoint,
                                  ext.attribute("cx").as_double() / kEmuPerPoint,
                                  ext.attribute("cy").as_double() / kEmuPerPoint)
                               .translated(origin);
                member.hasText = false;
                member.text = TextFrame();
                shape.members << member << text;
            } else {
                shape.members << member;
            }
        }
    } catch (const DeckError&) {
        // A damaged diagram: its frame's place is drawn.
    }
}

// The background of a slide, layout or master root; false when it has none of its own.
bool backgroundOf(pugi::xml_node root, const DeckStyles& styles, const PartOfId& partOf,
                  Fill* fill) {
    const pugi::xml_node bg = child(child(root, "cSld"), "bg");
    if (!bg) return false;
    if (fillOf(child(bg, "bgPr"), styles, partOf, fill)) return true;
    if (pugi::xml_node ref = child(bg, "bgRef")) return themeFillOf(ref, styles, partOf, fill);
    return false;
}

// Media parts named by relationship ids of part `partName`.
PartOfId partsOf(const DeckCore& core, const std::string& partName) {
    return [&core, partName](const std::string& id) -> QString {
        try {
            return QString::fromStdString(core.relatedPart(partName, id));
        } catch (const DeckError&) {
            return {};  // damaged relationships: nothing drawn
        }
    };
}

// The deck's styles with the colour map that applies on a slide: its master's, unless the layout
// or the slide overrides it.
DeckStyles stylesOf(const DeckCore& core, pugi::xml_node slideRoot, const Templates& t) {
    DeckStyles styles = core.styles;
    styles.colorMap = colorMapOf(t.masterRoot);
    for (pugi::xml_node root : {t.layoutRoot, slideRoot})
        if (std::map<std::string, std::string> own = colorMapOf(root); !own.empty())
            styles.colorMap = own;
    return styles;
}

DrawnShape drawnShape(const ShapeNode& node, const Templates& t, const DeckCore& core,
                      const DeckStyles& styles, const std::string& partName) {
    DrawnShape shape;
    shape.id = node.id;
    shape.name = shapeName(node.element);
    shape.kind = shapeKind(node.element);
    const Lineage lineage = lineageOf(node.element, t);
    fillGeometry(shape, node, lineage);
    fillOutline(shape, lineage, styles, partsOf(core, partName));
    if (const pugi::xml_node body = textBodyOf(node.element))
        fillText(shape, body, lineage, t, core, styles,
                 child(child(node.element, "style"), "fontRef"));
    if (std::strcmp(localName(node.element), "pic") == 0) {
        shape.picture = picturePart(core, partName, node.element);
        const pugi::xml_node src = child(child(node.element, "blipFill"), "srcRect");
        shape.crop = QMarginsF(
            src.attribute("l").as_double() / kPercent, src.attribute("t").as_double() / kPercent,
            src.attribute("r").as_double() / kPercent, src.attribute("b").as_double() / kPercent);
    }
    if (const pugi::xml_node table = tableOf(node.element))
        fillTable(shape, table, t, core, styles);
    else if (descendant(child(child(node.element, "graphic"), "graphicData"), "relIds"))
        fillDiagram(shape, node.element, t, core, styles, partName);
    else if (std::strcmp(localName(node.element), "graphicFrame") == 0)
        shape.chart = chartOf(core, styles, partName, node.element);
    return shape;
}

}  // namespace

DrawnShape drawnShapeOf(const DeckCore& core, int slide, const ShapeNode& node) {
    const SlidePart& part = *core.slides[static_cast<std::size_t>(slide)];
    const Templates t = templatesOf(core, part.partName);
    return drawnShape(node, t, core, stylesOf(core, part.doc.document_element(), t), part.partName);
}

std::optional<TextLayout> Deck::textLayout(int slide, int shapeId) const {
    if (slide < 1 || slide > slideCount()) return std::nullopt;
    const ShapeNode node = d->shape(slide - 1, shapeId);
    if (!node.element) return std::nullopt;
    const DrawnShape shape = drawnShapeOf(*d, slide - 1, node);
    if (!shape.hasText || !shape.boxKnown) return std::nullopt;
    return TextLayout(shape);
}

SlideDrawing Deck::drawing(int slide) const {
    SlideDrawing result;
    if (slide < 1 || slide > slideCount()) return result;
    const SlidePart& part = *d->slides[slide - 1];
    const Templates t = templatesOf(*d, part.partName);
    result.hidden = !part.doc.document_element().attribute("show").as_bool(true);
    const DeckStyles styles = stylesOf(*d, part.doc.document_element(), t);
    result.backgroundFill.kind = Fill::Kind::Solid;
    result.backgroundFill.rgb = 0xFFFFFF;
    const std::pair<pugi::xml_node, const std::string*> backgrounds[] = {
        {part.doc.document_element(), &part.partName},
        {t.layoutRoot, &t.layoutPart},
        {t.masterRoot, &t.masterPart}};
    for (const auto& [root, partName] : backgrounds)
        if (backgroundOf(root, styles, partsOf(*d, *partName), &result.backgroundFill)) break;
    result.background = result.backgroundFill.kind == Fill::Kind::Picture
                            ? 0xFFFFFF
                            : mainColor(result.backgroundFill);

    // What the master and the layout draw besides their placeholders, unless the slide (or the
    // layout, for the master's) hides it.
    const bool slideShows = part.doc.document_element().attribute("showMasterSp").as_bool(true);
    const bool layoutShows = t.layoutRoot.attribute("showMasterSp").as_bool(true);
    const std::pair<pugi::xml_node, const std::string*> behind[] = {
        {slideShows && layoutShows ? t.masterTree : pugi::xml_node(), &t.masterPart},
        {slideShows ? t.layoutTree : pugi::xml_node(), &t.layoutPart}};
    for (const auto& [tree, partName] : behind)
        for (const ShapeNode& node : listShapes(tree))
            if (!placeholderOf(node.element))
                result.behind << drawnShape(node, t, *d, styles, *partName);
    for (const ShapeNode& node : listShapes(shapeTree(part.doc)))
        result.shapes << drawnShape(node, t, *d, styles, part.partName);
    return result;
}

}  // namespace minihost
