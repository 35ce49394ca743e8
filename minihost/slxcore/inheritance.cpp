// SPDX-License-Identifier: MIT
#include "minihost/slxcore/inheritance_p.h"

#include <cstring>

#include "minihost/slxcore/deckcore_p.h"
#include "minihost/slxcore/xmlnode_p.h"

namespace minihost {
namespace {

// The placeholder on a layout or master that `ph` inherits from: the same index, else the same
// family (only the family on a master, whose indices mean nothing to a slide).
pugi::xml_node matchingPlaceholder(pugi::xml_node tree, pugi::xml_node ph, bool byIndex) {
    if (!tree || !ph) return {};
    const std::vector<ShapeNode> shapes = listShapes(tree);
    if (byIndex && ph.attribute("idx"))
        for (const ShapeNode& s : shapes)
            if (pugi::xml_node other = placeholderOf(s.element);
                other &&
                std::strcmp(other.attribute("idx").value(), ph.attribute("idx").value()) == 0)
                return s.element;
    const std::string family = placeholderFamily(ph);
    for (const ShapeNode& s : shapes)
        if (pugi::xml_node other = placeholderOf(s.element);
            other && placeholderFamily(other) == family)
            return s.element;
    return {};
}

}  // namespace

pugi::xml_node placeholderOf(pugi::xml_node element) {
    return child(child(nonVisual(element), "nvPr"), "ph");
}

std::string placeholderFamily(pugi::xml_node ph) {
    const std::string type = ph.attribute("type").value();
    if (type == "ctrTitle" || type == "title") return "title";
    if (type.empty() || type == "obj" || type == "subTitle" || type == "body") return "body";
    return type;
}

Templates templatesOf(const DeckCore& core, const std::string& slidePart) {
    Templates t;
    try {
        const pugi::xml_document* layout =
            core.relatedDocument(slidePart, "slideLayout", &t.layoutPart);
        if (!layout) return t;
        t.layoutRoot = layout->document_element();
        t.layoutTree = shapeTree(*layout);
        if (t.layoutTree.empty()) t.layoutTree = child(child(t.layoutRoot, "cSld"), "spTree");
        const pugi::xml_document* master =
            core.relatedDocument(t.layoutPart, "slideMaster", &t.masterPart);
        if (!master) return t;
        t.masterRoot = master->document_element();
        t.masterTree = child(child(t.masterRoot, "cSld"), "spTree");
        t.masterTextStyles = child(t.masterRoot, "txStyles");
    } catch (const DeckError&) {
        // A damaged layout or master: the slide is read from what it says itself.
    }
    return t;
}

Lineage lineageOf(pugi::xml_node element, const Templates& t) {
    Lineage l;
    l.elements.push_back(element);
    l.ph = placeholderOf(element);
    if (!l.ph) return l;
    pugi::xml_node onLayout = matchingPlaceholder(t.layoutTree, l.ph, true);
    if (onLayout) l.elements.push_back(onLayout);
    pugi::xml_node onMaster =
        matchingPlaceholder(t.masterTree, onLayout ? placeholderOf(onLayout) : l.ph, false);
    if (onMaster) l.elements.push_back(onMaster);
    return l;
}

}  // namespace minihost
