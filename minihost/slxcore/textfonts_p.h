// SPDX-License-Identifier: MIT
// The fonts the text layout measures and draws with, and text shaped in them: a run's format in
// one script at kUnits pixels per point of size, shaped with HarfBuzz as LibreOffice shapes it
// (East Asian text as Chinese: the glyph forms and widths Chinese typography uses, such as
// full-width quotes and dashes).
#pragma once

#include <QFont>
#include <QString>
#include <vector>

#include "minihost/slxcore/slidedrawing.h"
#include "minihost/slxcore/textscripts_p.h"
#include "minihost/slxcore/typefaces.h"

namespace minihost {

// Text is measured and drawn at this many pixels per point: font pixel sizes are whole numbers,
// and a tenth of a point keeps sizes such as 10.5 pt and the advances of small text exact.
constexpr double kUnits = 10.0;

// The font of text in one format and script: the face it is shaped in, and a QFont of that
// face's family for what the system measures and draws (a text the face lacks a glyph of, a
// bullet, the lines under and through text).
struct TextFont {
    QFont font;
    Typeface typeface;  // null when the system has no font
};

// The font for text of `format` in `script`, its size scaled by `scale`: the Latin or East Asian
// typeface as the system draws it (see textlayout.h and typefaces.h), bold, italic, underline,
// strike-through, the character spacing after every character, pair kerning, no hinting.
TextFont fontFor(const TextFormat& format, Script script, double scale);

// A run of text (without breaks or tabs) shaped in one font.
struct ShapedText {
    // Where each position is, in points from the run's start: size() + 1 entries, the last its
    // whole advance (the character spacing after every character included). The second unit of a
    // pair is where the pair ends.
    std::vector<double> offsets;
    // Whether it was shaped in the font's typeface. Not when the typeface lacks a glyph of the
    // text: the system shaped it, and draws it as a string in the QFont, which shapes it as it
    // was measured, other fonts standing in for the missing glyphs.
    bool inTypeface = false;
    // The typeface's glyphs to draw, each with the unit it belongs to and its x in points from
    // the run's start (none when not in the typeface).
    std::vector<quint32> glyphs;
    std::vector<int> glyphUnits;
    std::vector<double> glyphX;
};
ShapedText shapeText(const QString& text, const TextFont& font, Script script);

}  // namespace minihost
