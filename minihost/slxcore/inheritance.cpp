// SPDX-License-Identifier: MIT
#include "minihost/slxcore/inheritance_p.h"

#include <cstring>

#include "minihost/slxcore/deckcore_p.h"
#include "minihost/slxcore/xmlnode_p.h"

namespace minihost {
namespace {

// The placeholder on a layout or master that `ph` inherits from: the same index, else the same
// family (only the family on a master, whose indices mean nothing to a slide).
pugi::xml_node matchingPlaceholder(const TemplatePart* part, pugi::xml_node ph, bool byIndex) {
    if (!part || !part->tree || !ph) return {};
    if (byIndex && ph.attribute("idx"))
        if (const auto it = part->placeholdersByIndex.find(ph.attribute("idx").value());
            it != part->placeholdersByIndex.end())
            return it->second;
    const auto it = part->placeholdersByFamily.find(placeholderFamily(ph));
    return it == part->placeholdersByFamily.end() ? pugi::xml_node() : it->second;
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

void indexTemplate(TemplatePart& part) {
    const pugi::xml_node root = part.doc.document_element();
    // A diagram's drawing part keeps its shapes' tree at its root.
    part.tree = std::strcmp(localName(root), "drawing") == 0 ? child(root, "spTree")
                                                             : child(child(root, "cSld"), "spTree");
    for (const ShapeNode& s : listShapes(part.tree))
        if (const pugi::xml_node ph = placeholderOf(s.element)) {
            // No index reads as "", which a slide's idx="" matches.
            part.placeholdersByIndex.emplace(ph.attribute("idx").value(), s.element);
            part.placeholdersByFamily.emplace(placeholderFamily(ph), s.element);
        }
}

Templates templatesOf(const DeckCore& core, const std::string& slidePart) {
    Templates t;
    try {
        t.layout = core.relatedTemplate(slidePart, "slideLayout", &t.layoutPart);
        if (!t.layout) return t;
        t.layoutRoot = t.layout->doc.document_element();
        t.layoutTree = t.layout->tree;
        t.master = core.relatedTemplate(t.layoutPart, "slideMaster", &t.masterPart);
        if (!t.master) return t;
        t.masterRoot = t.master->doc.document_element();
        t.masterTree = t.master->tree;
        t.masterTextStyles = child(t.masterRoot, "txStyles");
    } catch (const DeckLimitError&) {
        throw;
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
    pugi::xml_node onLayout = matchingPlaceholder(t.layout, l.ph, true);
    if (onLayout) l.elements.push_back(onLayout);
    pugi::xml_node onMaster =
        matchingPlaceholder(t.master, onLayout ? placeholderOf(onLayout) : l.ph, false);
    if (onMaster) l.elements.push_back(onMaster);
    return l;
}

}  // namespace minihost
