// SPDX-License-Identifier: MIT
// Deck::drawing(): what a slide shows, resolved through the slide's layout and master.
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/deckcore_p.h"
#include "minihost/slxcore/drawing_p.h"
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
                          const DeckCore& core, pugi::xml_node fontReference) {
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
    para.endFormat = formatOf(child(p, "endParaRPr"), levels, fontReference, core.styles);
    const float size = para.endFormat.size;
    if (pugi::xml_node lnSpc = firstChild(chain, "lnSpc")) {
        if (pugi::xml_node pct = child(lnSpc, "spcPct"))
            para.lineSpacing = static_cast<float>(pct.attribute("val").as_double() / kPercent);
        else
            para.lineSpacingPoints = spacingPoints(lnSpc, size);
    }
    para.spaceBefore = spacingPoints(firstChild(chain, "spcBef"), size);
    para.spaceAfter = spacingPoints(firstChild(chain, "spcAft"), size);
    for (pugi::xml_node n : chain) {
        if (child(n, "buNone")) break;
        if (pugi::xml_node bu = child(n, "buChar")) {
            para.bullet = qs(bu.attribute("char").value());
            break;
        }
    }
    return para;
}

void fillText(DrawnShape& shape, pugi::xml_node txBody, const Lineage& l, const Templates& t,
              const DeckCore& core, pugi::xml_node fontReference) {
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
    for (std::size_t i = 0; i < nodes.size() && i < texts.size() && i < starts.size(); ++i) {
        TextParagraph para = paragraphOf(nodes[i], l, t, core, fontReference);
        para.start = starts[i];
        para.text = texts[i];
        const std::vector<pugi::xml_node> levels =
            levelSources(l, t, core, child(nodes[i], "pPr").attribute("lvl").as_int(0));
        for (; piece < pieces.size() && pieces[piece].paragraph == nodes[i]; ++piece)
            if (pieces[piece].length > 0)
                para.runs << TextRun{
                    pieces[piece].start, pieces[piece].length,
                    formatOf(pieces[piece].properties, levels, fontReference, core.styles)};
        frame.paragraphs << para;
    }
}

// The colour of a fill or line holder (a:solidFill, a gradient's first stop); false for none.
bool fillColor(pugi::xml_node properties, const DeckStyles& styles, bool* set, std::uint32_t* rgb) {
    if (child(properties, "noFill")) {
        *set = false;
        return true;
    }
    if (pugi::xml_node solid = child(properties, "solidFill")) {
        *set = colorOf(solid, styles, rgb, true);
        return true;
    }
    if (pugi::xml_node gradient = child(properties, "gradFill")) {
        *set = colorOf(child(child(gradient, "gsLst"), "gs"), styles, rgb, true);
        return true;
    }
    return false;  // says nothing: inherited
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

void fillOutline(DrawnShape& shape, const Lineage& l, const DeckStyles& styles) {
    const std::string local = localName(l.elements.front());
    if (local == "cxnSp") shape.geometry = QStringLiteral("line");
    if (local == "pic") {
        // A picture is not filled, but it may have an outline.
        const pugi::xml_node ln = child(child(l.elements.front(), "spPr"), "ln");
        if (ln.attribute("w"))
            shape.lineWidth = static_cast<float>(ln.attribute("w").as_double() / kEmuPerPoint);
        fillColor(ln, styles, &shape.outlined, &shape.line);
        return;
    }
    if (local == "sp") {
        shape.geometry = QStringLiteral("rect");
        for (pugi::xml_node element : l.elements) {
            const pugi::xml_node spPr = child(element, "spPr");
            if (pugi::xml_node preset = child(spPr, "prstGeom")) {
                shape.geometry = qs(preset.attribute("prst").value());
                break;
            }
            if (child(spPr, "custGeom")) {
                shape.geometry = QStringLiteral("custom");
                break;
            }
        }
    }
    if (shape.geometry.isEmpty()) return;
    const pugi::xml_node style = child(l.elements.front(), "style");
    bool decided = false;
    for (pugi::xml_node element : l.elements)
        if ((decided = fillColor(child(element, "spPr"), styles, &shape.filled, &shape.fill)))
            break;
    if (!decided)
        if (pugi::xml_node ref = child(style, "fillRef"); ref.attribute("idx").as_int() > 0)
            shape.filled = colorOf(ref, styles, &shape.fill, true);
    decided = false;
    for (pugi::xml_node element : l.elements) {
        const pugi::xml_node ln = child(child(element, "spPr"), "ln");
        if (ln.attribute("w"))
            shape.lineWidth = static_cast<float>(ln.attribute("w").as_double() / kEmuPerPoint);
        if ((decided = fillColor(ln, styles, &shape.outlined, &shape.line))) break;
    }
    if (!decided)
        if (pugi::xml_node ref = child(style, "lnRef"); ref.attribute("idx").as_int() > 0)
            shape.outlined = colorOf(ref, styles, &shape.line, true);
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

// The background of a slide, layout or master root; false when it has none of its own.
bool backgroundOf(pugi::xml_node root, const DeckStyles& styles, std::uint32_t* rgb) {
    const pugi::xml_node bg = child(child(root, "cSld"), "bg");
    if (!bg) return false;
    bool set = false;
    if (fillColor(child(bg, "bgPr"), styles, &set, rgb)) return set;
    if (pugi::xml_node ref = child(bg, "bgRef")) return colorOf(ref, styles, rgb, true);
    return false;
}

DrawnShape drawnShape(const ShapeNode& node, const Templates& t, const DeckCore& core,
                      const std::string& partName) {
    DrawnShape shape;
    shape.id = node.id;
    shape.name = shapeName(node.element);
    shape.kind = shapeKind(node.element);
    const Lineage lineage = lineageOf(node.element, t);
    fillGeometry(shape, node, lineage);
    fillOutline(shape, lineage, core.styles);
    if (const pugi::xml_node body = textBodyOf(node.element))
        fillText(shape, body, lineage, t, core, child(child(node.element, "style"), "fontRef"));
    if (std::strcmp(localName(node.element), "pic") == 0)
        shape.picture = picturePart(core, partName, node.element);
    return shape;
}

}  // namespace

DrawnShape drawnShapeOf(const DeckCore& core, int slide, const ShapeNode& node) {
    const SlidePart& part = *core.slides[static_cast<std::size_t>(slide)];
    return drawnShape(node, templatesOf(core, part.partName), core, part.partName);
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
    for (pugi::xml_node root : {part.doc.document_element(), t.layoutRoot, t.masterRoot})
        if (backgroundOf(root, d->styles, &result.background)) break;

    // What the master and the layout draw besides their placeholders, unless the slide (or the
    // layout, for the master's) hides it.
    const bool slideShows = part.doc.document_element().attribute("showMasterSp").as_bool(true);
    const bool layoutShows = t.layoutRoot.attribute("showMasterSp").as_bool(true);
    const std::pair<pugi::xml_node, const std::string*> behind[] = {
        {slideShows && layoutShows ? t.masterTree : pugi::xml_node(), &t.masterPart},
        {slideShows ? t.layoutTree : pugi::xml_node(), &t.layoutPart}};
    for (const auto& [tree, partName] : behind)
        for (const ShapeNode& node : listShapes(tree))
            if (!placeholderOf(node.element)) result.behind << drawnShape(node, t, *d, *partName);
    for (const ShapeNode& node : listShapes(shapeTree(part.doc)))
        result.shapes << drawnShape(node, t, *d, part.partName);
    return result;
}

}  // namespace minihost
