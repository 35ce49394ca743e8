// SPDX-License-Identifier: MIT
// Reading and writing the character format of a text range, and the host's colour values.
#include "common/bstrholder.h"
#include "common/comptr.h"
#include "document/textaccess.h"

using slxoldapi::ColorFormat;
using slxoldapi::Font;
using slxoldapi::TextRange;

std::uint32_t toHostColor(const QColor& color) {
    return static_cast<std::uint32_t>(color.red()) |
           static_cast<std::uint32_t>(color.green()) << 8 |
           static_cast<std::uint32_t>(color.blue()) << 16;
}

QColor fromHostColor(std::uint32_t value) {
    // Read as 0xAARRGGBB on purpose (not the mirror of toHostColor); QRgb's alpha is ignored.
    return QColor(static_cast<QRgb>(value));
}

void readTextStyle(TextRange* range, TextStyle& style) {
    if (!range) return;
    ComPtr<Font> font;
    if (SUCCEEDED(range->get_Font(font.put())) && font) {
        BstrHolder name;
        if (SUCCEEDED(font->get_Name(name.put()))) style.fontName = name.toQString();
        ComPtr<ColorFormat> color;
        std::uint32_t rgb = 0;
        if (SUCCEEDED(font->get_Color(color.put())) && color && SUCCEEDED(color->get_RGB(&rgb)))
            style.color = fromHostColor(rgb);
        float size = 14.0f;
        if (SUCCEEDED(font->get_Size(&size))) style.fontSize = static_cast<int>(size);
    }
    BstrHolder text;
    if (SUCCEEDED(range->get_Text(text.put()))) style.text = text.toQString();
}

void applyTextStyle(TextRange* range, const TextStyle* style) {
    if (!range || !style) return;
    ComPtr<Font> font;
    if (FAILED(range->get_Font(font.put())) || !font) return;
    font->put_Bold(style->bold ? -1 : 0);
    if (style->fontSize > 0) font->put_Size(static_cast<float>(style->fontSize));
    if (!style->fontName.isEmpty()) {
        BstrHolder name(style->fontName);
        font->put_Name(name.get());
    }
    if (style->applyColor) {
        ComPtr<ColorFormat> color;
        if (SUCCEEDED(font->get_Color(color.put())) && color)
            color->put_RGB(toHostColor(style->color));
    }
}
