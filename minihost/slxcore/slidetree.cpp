// SPDX-License-Identifier: MIT
#include "minihost/slxcore/slidetree_p.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

#include <QStringList>

#include "minihost/slxcore/textbody_p.h"
#include "minihost/slxcore/xmlnode_p.h"

namespace minihost {
namespace {

bool isShapeElement(const char* local) {
    for (const char* name : {"sp", "pic", "graphicFrame", "cxnSp", "grpSp"})
        if (std::strcmp(local, name) == 0) return true;
    return false;
}

void collect(pugi::xml_node parent, const Placement& placement, std::vector<ShapeNode>& out) {
    for (pugi::xml_node c = parent.first_child(); c; c = c.next_sibling()) {
        if (c.type() != pugi::node_element || !isShapeElement(localName(c))) continue;
        const int id = child(nonVisual(c), "cNvPr").attribute("id").as_int(0);
        out.push_back({c, id, placement});
        if (std::strcmp(localName(c), "grpSp") != 0) continue;
        // Members are placed in the group's child space: chOff/chExt map onto off/ext.
        const pugi::xml_node xfrm = transformOf(c);
        const double offX = child(xfrm, "off").attribute("x").as_double();
        const double offY = child(xfrm, "off").attribute("y").as_double();
        const double extX = child(xfrm, "ext").attribute("cx").as_double();
        const double extY = child(xfrm, "ext").attribute("cy").as_double();
        const double chOffX = child(xfrm, "chOff").attribute("x").as_double();
        const double chOffY = child(xfrm, "chOff").attribute("y").as_double();
        const double chExtX = child(xfrm, "chExt").attribute("cx").as_double();
        const double chExtY = child(xfrm, "chExt").attribute("cy").as_double();
        Placement inner;
        inner.scaleX = placement.scaleX * (chExtX > 0 ? extX / chExtX : 1.0);
        inner.scaleY = placement.scaleY * (chExtY > 0 ? extY / chExtY : 1.0);
        inner.offsetX = placement.offsetX + placement.scaleX * offX - inner.scaleX * chOffX;
        inner.offsetY = placement.offsetY + placement.scaleY * offY - inner.scaleY * chOffY;
        collect(c, inner, out);
    }
}

void maxNumericId(pugi::xml_node node, long long& best) {
    for (pugi::xml_attribute a = node.first_attribute(); a; a = a.next_attribute()) {
        if (std::strcmp(a.name(), "id") != 0) continue;
        const char* v = a.value();
        if (!*v || std::strspn(v, "0123456789") != std::strlen(v) || std::strlen(v) > 10) continue;
        best = std::max(best, std::stoll(v));
    }
    for (pugi::xml_node c = node.first_child(); c; c = c.next_sibling()) maxNumericId(c, best);
}

// Shapes that inherit their place from the layout get one of their own when resized.
pugi::xml_node ensureTransform(pugi::xml_node element) {
    if (pugi::xml_node xfrm = transformOf(element)) return xfrm;
    pugi::xml_node props = child(element, "spPr");
    if (!props) props = element.append_child((prefixOf(element) + "spPr").c_str());
    pugi::xml_node xfrm = props.prepend_child("a:xfrm");
    pugi::xml_node off = xfrm.append_child("a:off");
    off.append_attribute("x").set_value(0);
    off.append_attribute("y").set_value(0);
    pugi::xml_node ext = xfrm.append_child("a:ext");
    ext.append_attribute("cx").set_value(0);
    ext.append_attribute("cy").set_value(0);
    return xfrm;
}

void setExtent(const ShapeNode& shape, const char* attr, double scale, float points) {
    pugi::xml_node xfrm = ensureTransform(shape.element);
    pugi::xml_node ext = child(xfrm, "ext");
    if (!ext) ext = xfrm.append_child("a:ext");
    pugi::xml_attribute a = ext.attribute(attr);
    if (!a) a = ext.append_attribute(attr);
    a.set_value(static_cast<long long>(std::llround(points * kEmuPerPoint / scale)));
}

// A rough advance: ideographs and fullwidth forms one em, everything else a little over half.
double advance(QChar c, double size) {
    const ushort u = c.unicode();
    const bool wide = (u >= 0x1100 && u <= 0x115F) || (u >= 0x2E80 && u <= 0xA4CF) ||
                      (u >= 0xAC00 && u <= 0xD7A3) || (u >= 0xF900 && u <= 0xFAFF) ||
                      (u >= 0xFF00 && u <= 0xFF60) || c.isSurrogate();
    return wide ? size : size * 0.55;
}

double inset(pugi::xml_node bodyPr, const char* name, double defaultEmu) {
    pugi::xml_attribute a = bodyPr.attribute(name);
    return (a ? a.as_double() : defaultEmu) / kEmuPerPoint;
}

}  // namespace

// The one child whose local name starts "nv".
pugi::xml_node nonVisual(pugi::xml_node element) {
    for (pugi::xml_node c = element.first_child(); c; c = c.next_sibling())
        if (c.type() == pugi::node_element && std::strncmp(localName(c), "nv", 2) == 0) return c;
    return {};
}

pugi::xml_node transformOf(pugi::xml_node element) {
    if (pugi::xml_node direct = child(element, "xfrm")) return direct;
    for (const char* holder : {"spPr", "grpSpPr"})
        if (pugi::xml_node props = child(element, holder)) return child(props, "xfrm");
    return {};
}

pugi::xml_node shapeTree(const pugi::xml_document& slide) {
    return child(child(child(slide, "sld"), "cSld"), "spTree");
}

std::vector<ShapeNode> listShapes(pugi::xml_node tree) {
    std::vector<ShapeNode> shapes;
    collect(tree, Placement{}, shapes);
    return shapes;
}

ShapeNode findShape(pugi::xml_node tree, int id) {
    for (const ShapeNode& shape : listShapes(tree))
        if (shape.id == id) return shape;
    return {};
}

QString shapeName(pugi::xml_node element) {
    return qs(child(nonVisual(element), "cNvPr").attribute("name").value());
}

int shapeIdOf(pugi::xml_node element) {
    return child(nonVisual(element), "cNvPr").attribute("id").as_int(0);
}

QString shapeKind(pugi::xml_node element) {
    const std::string local = localName(element);
    if (local == "sp") {
        const pugi::xml_node nv = nonVisual(element);
        if (child(nv, "cNvSpPr").attribute("txBox").as_bool()) return QStringLiteral("text box");
        if (child(child(nv, "nvPr"), "ph")) return QStringLiteral("placeholder");
        return QStringLiteral("shape");
    }
    if (local == "pic") return QStringLiteral("picture");
    if (local == "graphicFrame") return QStringLiteral("table or chart");
    if (local == "cxnSp") return QStringLiteral("connector");
    return QStringLiteral("group");
}

pugi::xml_node textBodyOf(pugi::xml_node element) {
    if (std::strcmp(localName(element), "sp") != 0) return {};
    return child(element, "txBody");
}

Box geometry(const ShapeNode& shape) {
    Box box;
    const pugi::xml_node xfrm = transformOf(shape.element);
    const pugi::xml_node off = child(xfrm, "off");
    const pugi::xml_node ext = child(xfrm, "ext");
    if (!off || !ext) return box;
    const Placement& p = shape.placement;
    box.left =
        static_cast<float>((p.offsetX + p.scaleX * off.attribute("x").as_double()) / kEmuPerPoint);
    box.top =
        static_cast<float>((p.offsetY + p.scaleY * off.attribute("y").as_double()) / kEmuPerPoint);
    box.width = static_cast<float>(p.scaleX * ext.attribute("cx").as_double() / kEmuPerPoint);
    box.height = static_cast<float>(p.scaleY * ext.attribute("cy").as_double() / kEmuPerPoint);
    box.known = true;
    return box;
}

void setWidth(const ShapeNode& shape, float points) {
    setExtent(shape, "cx", shape.placement.scaleX, points);
}

void setHeight(const ShapeNode& shape, float points) {
    setExtent(shape, "cy", shape.placement.scaleY, points);
}

void setPosition(const ShapeNode& shape, float left, float top) {
    pugi::xml_node xfrm = ensureTransform(shape.element);
    pugi::xml_node off = child(xfrm, "off");
    if (!off) off = xfrm.prepend_child((prefixOf(xfrm) + "off").c_str());
    const Placement& p = shape.placement;
    auto set = [&](const char* attr, double points, double offset, double scale) {
        pugi::xml_attribute a = off.attribute(attr);
        if (!a) a = off.append_attribute(attr);
        a.set_value(static_cast<long long>(std::llround((points * kEmuPerPoint - offset) / scale)));
    };
    set("x", left, p.offsetX, p.scaleX);
    set("y", top, p.offsetY, p.scaleY);
}

int nextShapeId(const pugi::xml_document& slide) {
    long long best = 0;
    maxNumericId(slide, best);
    return static_cast<int>(std::min<long long>(best + 1, 2147483647));
}

pugi::xml_node addTextbox(pugi::xml_document& slide, float left, float top, float width,
                          float height) {
    pugi::xml_node tree = shapeTree(slide);
    const int id = nextShapeId(slide);
    const std::string p = prefixOf(tree);
    // On top of the others, but before the tree's extension list, which must stay last.
    pugi::xml_node ext = child(tree, "extLst");
    pugi::xml_node sp = ext ? tree.insert_child_before((p + "sp").c_str(), ext)
                            : tree.append_child((p + "sp").c_str());
    const std::string name = "TextBox " + std::to_string(id - 1);
    pugi::xml_node nv = sp.append_child((p + "nvSpPr").c_str());
    pugi::xml_node cNvPr = nv.append_child((p + "cNvPr").c_str());
    cNvPr.append_attribute("id").set_value(id);
    cNvPr.append_attribute("name").set_value(name.c_str());
    nv.append_child((p + "cNvSpPr").c_str()).append_attribute("txBox").set_value("1");
    nv.append_child((p + "nvPr").c_str());
    pugi::xml_node spPr = sp.append_child((p + "spPr").c_str());
    pugi::xml_node xfrm = spPr.append_child("a:xfrm");
    pugi::xml_node off = xfrm.append_child("a:off");
    off.append_attribute("x").set_value(std::llround(left * kEmuPerPoint));
    off.append_attribute("y").set_value(std::llround(top * kEmuPerPoint));
    pugi::xml_node extent = xfrm.append_child("a:ext");
    extent.append_attribute("cx").set_value(std::llround(width * kEmuPerPoint));
    extent.append_attribute("cy").set_value(std::llround(height * kEmuPerPoint));
    pugi::xml_node geom = spPr.append_child("a:prstGeom");
    geom.append_attribute("prst").set_value("rect");
    geom.append_child("a:avLst");
    spPr.append_child("a:noFill");
    pugi::xml_node body = sp.append_child((p + "txBody").c_str());
    pugi::xml_node bodyPr = body.append_child("a:bodyPr");
    bodyPr.append_attribute("wrap").set_value("square");
    bodyPr.append_attribute("rtlCol").set_value("0");
    body.append_child("a:lstStyle");
    body.append_child("a:p")
        .append_child("a:endParaRPr")
        .append_attribute("lang")
        .set_value("zh-CN");
    return sp;
}

bool followsText(pugi::xml_node txBody) {
    return static_cast<bool>(child(child(txBody, "bodyPr"), "spAutoFit"));
}

void setFollowsText(pugi::xml_node txBody, bool on) {
    pugi::xml_node bodyPr = child(txBody, "bodyPr");
    if (!bodyPr) bodyPr = txBody.prepend_child((prefixOf(txBody.first_child()) + "bodyPr").c_str());
    removeChildren(bodyPr, {"noAutofit", "normAutofit", "spAutoFit"});
    ensureChild(bodyPr, on ? "spAutoFit" : "noAutofit", prefixOf(bodyPr), kBodyPropertiesOrder);
}

void fitToText(const ShapeNode& shape, const DeckStyles& styles) {
    const pugi::xml_node txBody = textBodyOf(shape.element);
    if (!followsText(txBody)) return;
    const pugi::xml_node bodyPr = child(txBody, "bodyPr");
    const double left = inset(bodyPr, "lIns", 91440), right = inset(bodyPr, "rIns", 91440);
    const double top = inset(bodyPr, "tIns", 45720), bottom = inset(bodyPr, "bIns", 45720);
    const bool wraps = std::string(bodyPr.attribute("wrap").value()) != "none";
    const Box box = geometry(shape);
    const double room = std::max(1.0, static_cast<double>(box.width) - left - right);
    TextBody body(txBody);
    const std::vector<QString> paragraphs = body.paragraphs();
    const std::vector<int> starts = body.paragraphStarts();
    double height = top + bottom, widest = 0;
    for (std::size_t i = 0; i < paragraphs.size(); ++i) {
        const double size = resolveFont(body.propertiesAt(starts[i]), txBody, styles).size;
        for (const QString& line : paragraphs[i].split(QChar('\v'))) {
            double extent = 0;
            for (QChar c : line) extent += advance(c, size);
            widest = std::max(widest, extent);
            const double lines = wraps ? std::max(1.0, std::ceil(extent / room)) : 1.0;
            height += lines * 1.2 * size;
        }
    }
    setHeight(shape, static_cast<float>(height));
    if (!wraps) setWidth(shape, static_cast<float>(widest + left + right));
}

}  // namespace minihost
