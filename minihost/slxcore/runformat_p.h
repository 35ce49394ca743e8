// SPDX-License-Identifier: MIT
// Character formatting: what a run's properties (a:rPr) resolve to, and how the object model's
// font operations write them back in schema order.
#pragma once

#include <QString>
#include <cstdint>
#include <map>
#include <pugixml.hpp>
#include <string>
#include <vector>

namespace minihost {

// What the deck defines for text that does not say: the presentation's default run properties
// and the theme's fonts and colours.
struct DeckStyles {
    pugi::xml_node defaultRunProperties;  // presentation.xml defaultTextStyle/lvl1pPr/defRPr
    QString minorLatin, majorLatin, minorEastAsian, majorEastAsian;
    std::map<std::string, std::uint32_t> schemeColors;  // "dk1" -> 0x00RRGGBB
    // The master's colour map (p:clrMap: "bg1" -> "dk2", ...); empty: the usual one (text on
    // dark 1, background on light 1).
    std::map<std::string, std::string> colorMap;
    pugi::xml_node formatScheme;  // the theme's a:fmtScheme: fill, line and background styles
};

struct FontValues {
    QString name;
    float size = 18.0f;
    float spacing = 0;  // points after every character (spc, in hundredths of a point)
    bool bold = false;
    std::uint32_t rgb = 0;  // 0x00RRGGBB
    // What only drawing needs.
    QString eastAsianName;  // a:ea, empty when nothing in the chain names one
    bool italic = false;
    bool underline = false;  // any u other than "none"
    bool strike = false;     // any strike other than "noStrike"
};

// The values that apply to a character with properties `rPr` in text body `txBody`: its own,
// else the body's list style (level 1), else the deck's defaults, else 18 pt, not bold, black,
// the theme's minor Latin font ("Calibri" without a theme). Theme font references (+mn-lt,
// +mj-ea, ...) and scheme colours are resolved; colour transforms (lumMod, ...) are not.
FontValues resolveFont(pugi::xml_node rPr, pugi::xml_node txBody, const DeckStyles& styles);
// The same over any chain of run properties, nearest first (empty nodes are skipped): each value
// comes from the first that sets it. `transforms` as for colorOf().
FontValues resolveFont(const std::vector<pugi::xml_node>& chain, const DeckStyles& styles,
                       bool transforms = false);

// The colour a colour-choice holder (a:solidFill, a theme's a:dk1, ...) gives, scheme colours
// resolved through the theme with the master's colour map; false when it holds no colour. With
// `transforms`, a:lumMod, a:lumOff, a:tint, a:shade and a:satMod are applied too (drawing wants
// them; the object model's Font.Color does not). A theme style's placeholder colour (phClr) is
// `placeholder` when one is given.
bool colorOf(pugi::xml_node holder, const DeckStyles& styles, std::uint32_t* rgb,
             bool transforms = false, const std::uint32_t* placeholder = nullptr);
// The opacity (0 to 1) the holder's colour gives with its a:alpha; 1 without one.
double alphaOf(pugi::xml_node holder);
// The colour map of a master (p:clrMap), or of a layout or slide that overrides it.
std::map<std::string, std::string> colorMapOf(pugi::xml_node root);

// Writers; each keeps the element's other attributes and children.
void setBold(pugi::xml_node rPr, bool bold);
void setSize(pugi::xml_node rPr, float points);             // sz in hundredths of a point
void setTypeface(pugi::xml_node rPr, const QString& name);  // a:latin
void setColor(pugi::xml_node rPr, std::uint32_t rgb);       // 0x00RRGGBB -> a:solidFill/a:srgbClr

// Reads the theme part's font and colour scheme into `styles`.
void readTheme(const pugi::xml_document& theme, DeckStyles& styles);

}  // namespace minihost
