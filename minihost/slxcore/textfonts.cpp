// SPDX-License-Identifier: MIT
#include "minihost/slxcore/textfonts_p.h"

#include <hb.h>

#include <QTextLayout>
#include <algorithm>
#include <cmath>

#include "minihost/slxcore/shapingfaces_p.h"

namespace minihost {
namespace {

// How far a run is laid out: beyond any slide.
constexpr double kEndless = 1e7;

// At most this many units are shaped at once. HarfBuzz keeps 40 bytes a glyph while it shapes:
// a text of millions of units (the readings of a very long text) is shaped in pieces, each told
// the text around it, cut after a space where there is one.
constexpr int kShapedAtOnce = 8192;

// Where the piece of `text` starting at `start` ends: after its last space, else at the most
// units shaped at once (never inside a surrogate pair), else at the text's end.
int pieceEnd(const QString& text, int start) {
    const int n = static_cast<int>(text.size());
    if (n - start <= kShapedAtOnce) return n;
    int end = start + kShapedAtOnce;
    for (int at = end; at > start + kShapedAtOnce / 2; --at)
        if (text[at - 1] == QChar(' ')) return at;
    if (text[end].isLowSurrogate()) --end;
    return end;
}

// Shapes text as LibreOffice does, with HarfBuzz told its language: East Asian text as Chinese,
// so that the font's Chinese forms are used (a full-width dash, full-width quotes), Latin text as
// English. False when the typeface lacks a glyph for it (or cannot be read): then the system
// shapes it, falling back to other fonts as it draws it.
bool shapeWithLanguage(const QString& text, const TextFont& textFont, Script script,
                       ShapedText& shaped) {
    const bool eastAsian = script == Script::EastAsian;
    const ShapingFace* face = shapingFace(textFont.typeface);
    if (!face) return false;
    const QFont& font = textFont.font;
    // Points per font unit: the font is kUnits pixels per point.
    const double scale = font.pixelSize() / kUnits / face->unitsPerEm();
    const double spacing =
        font.letterSpacingType() == QFont::AbsoluteSpacing ? font.letterSpacing() / kUnits : 0.0;
    const int n = static_cast<int>(text.size());
    // Each unit's advance first, at offsets[unit + 1]; summed into offsets at the end.
    shaped.offsets.assign(static_cast<std::size_t>(n) + 1, 0.0);
    shaped.glyphs.reserve(static_cast<std::size_t>(n));
    shaped.glyphUnits.reserve(static_cast<std::size_t>(n));
    shaped.glyphX.reserve(static_cast<std::size_t>(n));
    hb_buffer_t* buffer = hb_buffer_create();
    const auto* utf16 = reinterpret_cast<const uint16_t*>(text.utf16());
    bool complete = true;
    double x = 0;
    for (int start = 0; start < n && complete;) {
        const int end = pieceEnd(text, start);
        hb_buffer_clear_contents(buffer);
        hb_buffer_add_utf16(buffer, utf16, n, static_cast<unsigned>(start), end - start);
        hb_buffer_set_language(buffer, hb_language_from_string(eastAsian ? "zh-cn" : "en", -1));
        hb_buffer_guess_segment_properties(buffer);
        hb_buffer_set_direction(buffer, HB_DIRECTION_LTR);
        hb_shape(face->font(), buffer, nullptr, 0);
        unsigned count = 0;
        const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer, &count);
        const hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer, &count);
        for (unsigned g = 0; g < count; ++g) {
            const int unit = static_cast<int>(infos[g].cluster);  // in the whole text
            complete = complete && infos[g].codepoint != 0;
            shaped.glyphs.push_back(infos[g].codepoint);
            shaped.glyphUnits.push_back(unit);
            shaped.glyphX.push_back(x + positions[g].x_offset * scale);
            double step = positions[g].x_advance * scale;
            // Character spacing follows each character, after its last glyph.
            if (g + 1 == count || infos[g + 1].cluster != infos[g].cluster) step += spacing;
            shaped.offsets[static_cast<std::size_t>(unit) + 1] += step;
            x += step;
        }
        start = end;
    }
    hb_buffer_destroy(buffer);
    if (!complete) return false;
    shaped.inTypeface = true;
    for (int i = 0; i < n; ++i)
        shaped.offsets[static_cast<std::size_t>(i) + 1] +=
            shaped.offsets[static_cast<std::size_t>(i)];
    return true;
}

// Text shaped as the system shapes it, as QPainter draws it.
std::vector<double> systemOffsets(const QString& text, const QFont& font) {
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(kEndless);
    layout.endLayout();
    std::vector<double> offsets(static_cast<std::size_t>(text.size()) + 1, 0.0);
    for (int i = 0; i <= text.size(); ++i) {
        // Inside a pair the cursor is at its start: the pair's advance belongs to its first unit.
        const bool inPair = i > 0 && i < text.size() && text[i].isLowSurrogate();
        offsets[static_cast<std::size_t>(i)] = line.cursorToX(inPair ? i + 1 : i) / kUnits;
    }
    return offsets;
}

}  // namespace

TextFont fontFor(const TextFormat& format, Script script, double scale) {
    const bool eastAsian = script == Script::EastAsian;
    const QString& family = eastAsian ? format.eastAsianFont : format.latinFont;
    const Typeface typeface = eastAsian ? eastAsianTypefaceFor(family, format.bold, format.italic)
                                        : typefaceFor(family, format.bold, format.italic);
    TextFont result{QFont(typeface.isNull() ? family : typeface.family), typeface};
    QFont& font = result.font;
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(format.size * scale * kUnits))));
    font.setBold(format.bold);
    font.setItalic(format.italic);
    font.setUnderline(format.underline);
    font.setStrikeOut(format.strike);
    font.setKerning(true);
    if (format.characterSpacing != 0)
        font.setLetterSpacing(QFont::AbsoluteSpacing, format.characterSpacing * kUnits);
    // Hinting would round advances at the layout's size, not at the size the slide is shown at.
    font.setHintingPreference(QFont::PreferNoHinting);
    return result;
}

ShapedText shapeText(const QString& text, const TextFont& font, Script script) {
    ShapedText shaped;
    if (shapeWithLanguage(text, font, script, shaped)) return shaped;
    shaped = ShapedText();
    shaped.offsets = systemOffsets(text, font.font);
    return shaped;
}

}  // namespace minihost
