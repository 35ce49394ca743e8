// SPDX-License-Identifier: MIT
#include "minihost/slxcore/xmlnode_p.h"

#include <cstring>

namespace minihost {
namespace {

int rankOf(const char* local, const ChildOrder& order) {
    for (std::size_t i = 0; i < order.size(); ++i)
        for (const char* name : order[i])
            if (std::strcmp(name, local) == 0) return static_cast<int>(i);
    return -1;
}

}  // namespace

const ChildOrder kRunPropertiesOrder = {
    {"ln"},
    {"noFill", "solidFill", "gradFill", "blipFill", "pattFill", "grpFill"},
    {"effectLst", "effectDag"},
    {"highlight"},
    {"uLnTx", "uLn"},
    {"uFillTx", "uFill"},
    {"latin"},
    {"ea"},
    {"cs"},
    {"sym"},
    {"hlinkClick"},
    {"hlinkMouseOver"},
    {"rtl"},
    {"extLst"},
};

const ChildOrder kBodyPropertiesOrder = {
    {"prstTxWarp"}, {"noAutofit", "normAutofit", "spAutoFit"}, {"scene3d"}, {"sp3d"}, {"flatTx"},
    {"extLst"},
};

const char* localName(pugi::xml_node node) {
    const char* name = node.name();
    const char* colon = std::strchr(name, ':');
    return colon ? colon + 1 : name;
}

std::string prefixOf(pugi::xml_node node) {
    const char* name = node.name();
    const char* colon = std::strchr(name, ':');
    return colon ? std::string(name, colon + 1) : std::string();
}

pugi::xml_node child(pugi::xml_node parent, const char* local) {
    for (pugi::xml_node node = parent.first_child(); node; node = node.next_sibling())
        if (node.type() == pugi::node_element && std::strcmp(localName(node), local) == 0)
            return node;
    return {};
}

pugi::xml_attribute attribute(pugi::xml_node node, const char* local) {
    if (pugi::xml_attribute plain = node.attribute(local)) return plain;
    for (pugi::xml_attribute attr = node.first_attribute(); attr; attr = attr.next_attribute()) {
        const char* colon = std::strchr(attr.name(), ':');
        if (colon && std::strcmp(colon + 1, local) == 0) return attr;
    }
    return {};
}

pugi::xml_node ensureChild(pugi::xml_node parent, const char* local, const std::string& prefix,
                           const ChildOrder& order) {
    if (pugi::xml_node existing = child(parent, local)) return existing;
    const std::string name = prefix + local;
    const int rank = rankOf(local, order);
    // Before the first child that the schema wants later; unknown children keep their place.
    for (pugi::xml_node node = parent.first_child(); node; node = node.next_sibling()) {
        if (node.type() != pugi::node_element) continue;
        const int other = rankOf(localName(node), order);
        if (other > rank) return parent.insert_child_before(name.c_str(), node);
    }
    return parent.append_child(name.c_str());
}

void removeChildren(pugi::xml_node parent, std::initializer_list<const char*> locals) {
    for (pugi::xml_node node = parent.first_child(); node;) {
        pugi::xml_node next = node.next_sibling();
        if (node.type() == pugi::node_element)
            for (const char* local : locals)
                if (std::strcmp(localName(node), local) == 0) {
                    parent.remove_child(node);
                    break;
                }
        node = next;
    }
}

}  // namespace minihost
