// SPDX-License-Identifier: MIT
// Bullets and numbering as the deck's drawing resolves them: the first of a:buNone, a:buChar and
// a:buAutoNum along a paragraph's properties and its list-style levels, with the bullet's own
// typeface, colour and size; numbers counted over the paragraphs of a frame.
#pragma once

#include <QString>
#include <map>
#include <pugixml.hpp>
#include <vector>

#include "minihost/slxcore/runformat_p.h"
#include "minihost/slxcore/slidedrawing.h"

namespace minihost {

// Fills `para`'s bullet from `chain` (its a:pPr, then its levels, nearest first). A numbered
// paragraph's bullet is its number, counted by `numbering`.
class Numbering {
public:
    void apply(TextParagraph& para, const std::vector<pugi::xml_node>& chain, int level,
               const DeckStyles& styles);

private:
    // The number the next paragraph of each level and scheme gets.
    std::map<int, std::pair<std::string, int>> m_next;
};

// Number `n` (from 1) written as an a:buAutoNum scheme writes it ("arabicPeriod": "3.",
// "alphaLcParenR": "c)", "romanUcPeriod": "III.", ...).
QString autoNumber(const std::string& scheme, int n);

}  // namespace minihost
