// SPDX-License-Identifier: MIT
#include "minihost/slxcore/slidetree_p.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

#include "minihost/slxcore/xmlnode_p.h"

namespace minihost {
namespace {

bool isShapeElement(const char* local) {
    for (const char* name : {"sp", "pic", "graphicFrame", "cxnSp", "grpSp"})
        if (std::strcmp(local, name) == 0) return true;
    return false;
}

bool isShape(pugi::xml_node node) {
    return node.type() == pugi::node_element && isShapeElement(localName(node));
}

bool isGroup(pugi::xml_node node) {
    return std::strcmp(localName(node), "grpSp") == 0;
}

int idOf(pugi::xml_node element) {
    return child(nonVisual(element), "cNvPr").attribute("id").as_int(0);
}

// Where the members of `group`, itself placed by `outer`, are: chOff/chExt of the group's child
// space map onto its off/ext.
Placement membersOf(pugi::xml_node group, const Placement& outer) {
    const pugi::xml_node xfrm = transformOf(group);
    const double offX = child(xfrm, "off").attribute("x").as_double();
    const double offY = child(xfrm, "off").attribute("y").as_double();
    const double extX = child(xfrm, "ext").attribute("cx").as_double();
    const double extY = child(xfrm, "ext").attribute("cy").as_double();
    const double chOffX = child(xfrm, "chOff").attribute("x").as_double();
    const double chOffY = child(xfrm, "chOff").attribute("y").as_double();
    const double chExtX = child(xfrm, "chExt").attribute("cx").as_double();
    const double chExtY = child(xfrm, "chExt").attribute("cy").as_double();
    Placement inner;
    inner.scaleX = outer.scaleX * (chExtX > 0 ? extX / chExtX : 1.0);
    inner.scaleY = outer.scaleY * (chExtY > 0 ? extY / chExtY : 1.0);
    inner.offsetX = outer.offsetX + outer.scaleX * offX - inner.scaleX * chOffX;
    inner.offsetY = outer.offsetY + outer.scaleY * offY - inner.scaleY * chOffY;
    return inner;
}

// A listed shape as listShapes gives it: its placement made of the groups around it, outermost
// first, as the walk down to it makes it.
ShapeNode shapeNodeOf(pugi::xml_node element) {
    std::vector<pugi::xml_node> groups;
    for (pugi::xml_node up = element.parent(); up && isGroup(up); up = up.parent())
        groups.push_back(up);
    Placement placement;
    for (auto group = groups.rbegin(); group != groups.rend(); ++group)
        placement = membersOf(*group, placement);
    return {element, idOf(element), placement};
}

// The largest numeric value of an attribute named "id" anywhere in a document (0 for none).
class LargestId : public pugi::xml_tree_walker {
public:
    bool for_each(pugi::xml_node& node) override {
        for (pugi::xml_attribute a = node.first_attribute(); a; a = a.next_attribute()) {
            if (std::strcmp(a.name(), "id") != 0) continue;
            const char* v = a.value();
            const std::size_t length = std::strlen(v);
            if (!length || std::strspn(v, "0123456789") != length || length > 10) continue;
            largest = std::max(largest, std::stoll(v));
        }
        return true;
    }
    long long largest = 0;
};

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
    // Per group being walked: the next child to look at, and where the group's members go.
    struct Level {
        pugi::xml_node next;
        Placement placement;
    };
    std::vector<Level> walk{{tree.first_child(), Placement{}}};
    while (!walk.empty()) {
        const pugi::xml_node c = walk.back().next;
        if (!c) {
            walk.pop_back();
            continue;
        }
        walk.back().next = c.next_sibling();
        if (!isShape(c)) continue;
        const Placement placement = walk.back().placement;
        shapes.push_back({c, idOf(c), placement});
        if (isGroup(c)) walk.push_back({c.first_child(), membersOf(c, placement)});
    }
    return shapes;
}

void SlideShapes::build(const pugi::xml_document& slide) {
    if (m_built) return;
    const pugi::xml_node tree = shapeTree(slide);
    m_byId.clear();
    m_repeatedIds = false;
    for (const ShapeNode& shape : listShapes(tree))
        if (!m_byId.emplace(shape.id, shape.element).second) m_repeatedIds = true;
    m_extensions = child(tree, "extLst");
    LargestId walker;
    pugi::xml_node(slide).traverse(walker);
    m_nextId = walker.largest + 1;
    m_built = true;
}

ShapeNode SlideShapes::find(const pugi::xml_document& slide, int id) {
    build(slide);
    const auto it = m_byId.find(id);
    return it == m_byId.end() ? ShapeNode{} : shapeNodeOf(it->second);
}

int SlideShapes::takeId(const pugi::xml_document& slide) {
    build(slide);
    const int id = static_cast<int>(std::min<long long>(m_nextId, 2147483647));
    m_nextId = std::max<long long>(m_nextId, id + 1ll);
    return id;
}

void SlideShapes::added(pugi::xml_node shape) {
    if (!m_built) return;  // read whole when first needed
    std::vector<ShapeNode> shapes = listShapes(shape);
    shapes.insert(shapes.begin(), ShapeNode{shape, idOf(shape), Placement{}});
    for (const ShapeNode& one : shapes)
        if (!m_byId.emplace(one.id, one.element).second) m_repeatedIds = true;
    // Which of two shapes with one id comes first is known only from the whole part.
    if (m_repeatedIds) forget();
}

void SlideShapes::removed(pugi::xml_node shape) {
    if (!m_built) return;
    std::vector<ShapeNode> shapes = listShapes(shape);
    shapes.insert(shapes.begin(), ShapeNode{shape, idOf(shape), Placement{}});
    // With ids repeated, another shape may take the id; without the largest id, the next new
    // shape takes the largest that is left plus one: the part is read again.
    const bool largest = std::any_of(shapes.begin(), shapes.end(), [this](const ShapeNode& one) {
        return one.id >= m_nextId - 1;
    });
    if (m_repeatedIds || largest) return forget();
    for (const ShapeNode& one : shapes) m_byId.erase(one.id);
}

void SlideShapes::forget() {
    m_byId.clear();
    m_extensions = pugi::xml_node();
    m_built = false;
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

pugi::xml_node SlideShapes::addTextbox(pugi::xml_document& slide, float left, float top,
                                       float width, float height) {
    build(slide);
    pugi::xml_node tree = shapeTree(slide);
    if (!tree) return {};
    const int id = takeId(slide);
    const std::string p = prefixOf(tree);
    pugi::xml_node sp = m_extensions ? tree.insert_child_before((p + "sp").c_str(), m_extensions)
                                     : tree.append_child((p + "sp").c_str());
    m_byId.emplace(id, sp);
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

}  // namespace minihost
