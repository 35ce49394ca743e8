// SPDX-License-Identifier: MIT
// Small helpers over pugixml for parts whose namespace prefixes are kept exactly as written:
// elements are matched by local name, and new elements take the prefix of their neighbours.
#pragma once

#include <QString>
#include <initializer_list>
#include <pugixml.hpp>
#include <string>
#include <vector>

namespace minihost {

// "a:rPr" -> "rPr"; "rPr" -> "rPr".
const char* localName(pugi::xml_node node);
// "a:rPr" -> "a:"; "rPr" -> "".
std::string prefixOf(pugi::xml_node node);
// The first child element named `local` whatever its prefix, or an empty node.
pugi::xml_node child(pugi::xml_node parent, const char* local);
// The attribute named `local` whatever its prefix ("r:id" for "id" only when no plain "id").
pugi::xml_attribute attribute(pugi::xml_node node, const char* local);

// The order in which a schema wants the children of one element: each group is a set of local
// names that take the same place.
using ChildOrder = std::vector<std::vector<const char*>>;
extern const ChildOrder kRunPropertiesOrder;   // a:rPr, a:endParaRPr, a:defRPr
extern const ChildOrder kBodyPropertiesOrder;  // a:bodyPr

// The child `local` of `parent`, created (with `prefix`) at its schema place when missing.
pugi::xml_node ensureChild(pugi::xml_node parent, const char* local, const std::string& prefix,
                           const ChildOrder& order);
// Removes every child whose local name is one of `locals`.
void removeChildren(pugi::xml_node parent, std::initializer_list<const char*> locals);

inline QString qs(const char* utf8) {
    return QString::fromUtf8(utf8);
}

}  // namespace minihost
