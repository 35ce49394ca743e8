// SPDX-License-Identifier: MIT
// Fills as the deck's drawing resolves them: solid, gradient, picture and pattern fills of shapes,
// table cells and backgrounds, and the theme's fill styles that shape styles and background
// references name.
#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <pugixml.hpp>

#include "minihost/slxcore/runformat_p.h"
#include "minihost/slxcore/slidedrawing.h"

namespace minihost {

// The media part a relationship id names (of the part the fill is in); empty when none.
using PartOfId = std::function<QString(const std::string& id)>;

// The fill `properties` (a:spPr, p:bgPr, a:tcPr, ...) says: its a:noFill, a:solidFill,
// a:gradFill, a:blipFill or a:pattFill. False when it says nothing (the fill is inherited).
// `placeholder` is the colour of a theme style's phClr.
bool fillOf(pugi::xml_node properties, const DeckStyles& styles, const PartOfId& partOf, Fill* fill,
            const std::uint32_t* placeholder = nullptr);

// The theme's fill style `index` (a:fillRef/@idx, a:bgRef/@idx: 1 to 999 of the fill styles,
// from 1001 of the background fill styles) in the colour of `reference`; false when the theme
// has none of that number.
bool themeFillOf(pugi::xml_node reference, const DeckStyles& styles, const PartOfId& partOf,
                 Fill* fill);

// The colour that stands for a fill where one colour is wanted (a gradient's first stop).
std::uint32_t mainColor(const Fill& fill);

}  // namespace minihost
