// SPDX-License-Identifier: MIT
// What a slide's shapes inherit: a placeholder takes what it does not say itself (its place, its
// text styles) from the matching placeholder of the slide's layout, and then of the layout's
// master. Drawing a slide and finding where a shape is both read it from here.
#pragma once

#include <pugixml.hpp>
#include <string>
#include <vector>

#include "minihost/slxcore/slidetree_p.h"

namespace minihost {

class DeckCore;
struct TemplatePart;

// A placeholder's p:ph, or an empty node for any other shape.
pugi::xml_node placeholderOf(pugi::xml_node element);
// Placeholder types that share a place: a centred title is a title; a subtitle, an object or an
// untyped placeholder is body text.
std::string placeholderFamily(pugi::xml_node ph);

// Fills in the tree and the placeholder indexes of a layout or master just parsed.
void indexTemplate(TemplatePart& part);

// The slide's layout and master, as far as they can be read (a damaged or missing part leaves
// its nodes empty). Throws DeckLimitError only.
struct Templates {
    pugi::xml_node layoutTree, masterTree, masterTextStyles;
    pugi::xml_node layoutRoot, masterRoot;
    std::string layoutPart, masterPart;
    const TemplatePart* layout = nullptr;
    const TemplatePart* master = nullptr;
};
Templates templatesOf(const DeckCore& core, const std::string& slidePart);

// One shape and what it inherits: the shape itself first, then its layout's and its master's
// placeholders, each when there is one.
struct Lineage {
    std::vector<pugi::xml_node> elements;
    pugi::xml_node ph;  // the shape's own p:ph, or empty
    // A table cell's text style from its table's style: a list-style level (its a:defRPr) that
    // comes before the deck's defaults; empty for other text.
    pugi::xml_node cellStyle;
};
Lineage lineageOf(pugi::xml_node element, const Templates& t);

}  // namespace minihost
