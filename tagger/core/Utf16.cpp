// SPDX-License-Identifier: MIT
#include "Utf16.h"

#include <cstdint>
#include <cstdio>

namespace zphonetic::tagger {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

void appendUtf16(std::u16string& out, char32_t cp) {
    if (cp < 0x10000) {
        out.push_back(static_cast<char16_t>(cp));
    } else {
        cp -= 0x10000;
        out.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
        out.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
    }
}

void appendUtf8(std::string& out, char32_t cp) {
    if (cp < 0x80) {
        out.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else if (cp < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
}

// Decodes the character at in[i]: its code point and the number of bytes it takes, or 0 bytes
// when the bytes there are not UTF-8.
size_t decode(std::string_view in, size_t i, char32_t& cp) {
    const auto b = static_cast<uint8_t>(in[i]);
    int extra = 0;
    if (b < 0x80) {
        cp = b;
        return 1;
    }
    if ((b & 0xE0) == 0xC0) {
        extra = 1;
        cp = b & 0x1F;
    } else if ((b & 0xF0) == 0xE0) {
        extra = 2;
        cp = b & 0x0F;
    } else if ((b & 0xF8) == 0xF0) {
        extra = 3;
        cp = b & 0x07;
    } else {
        return 0;
    }
    for (int k = 1; k <= extra; ++k) {
        if (i + k >= in.size()) return 0;
        const auto c = static_cast<uint8_t>(in[i + k]);
        if ((c & 0xC0) != 0x80) return 0;
        cp = (cp << 6) | (c & 0x3F);
    }
    // Overlong forms, surrogates and values past U+10FFFF are not characters.
    static constexpr char32_t kMinimum[] = {0, 0x80, 0x800, 0x10000};
    if (cp < kMinimum[extra] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return 0;
    return static_cast<size_t>(extra) + 1;
}

}  // namespace

std::u16string toUtf16(std::string_view in) {
    std::u16string out;
    out.reserve(in.size());
    size_t i = 0;
    while (i < in.size()) {
        char32_t cp = 0;
        const size_t taken = decode(in, i, cp);
        if (taken == 0) {
            out.push_back(kReplacement);
            ++i;
            continue;
        }
        appendUtf16(out, cp);
        i += taken;
    }
    return out;
}

bool isUtf8(std::string_view in) {
    char32_t cp = 0;
    for (size_t i = 0; i < in.size();) {
        const size_t taken = decode(in, i, cp);
        if (taken == 0) return false;
        i += taken;
    }
    return true;
}

std::string toUtf8(std::u16string_view in) {
    std::string out;
    out.reserve(in.size() * 3);
    for (size_t i = 0; i < in.size(); ++i) {
        char32_t cp = in[i];
        if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < in.size() && in[i + 1] >= 0xDC00 &&
            in[i + 1] <= 0xDFFF) {
            cp = 0x10000 + ((cp - 0xD800) << 10) + (in[i + 1] - 0xDC00);
            ++i;
        } else if (cp >= 0xD800 && cp <= 0xDFFF) {
            cp = kReplacement;
        }
        appendUtf8(out, cp);
    }
    return out;
}

std::string printable(std::string_view utf8) {
    const std::u16string text = toUtf16(utf8);
    std::u16string out;
    out.reserve(text.size());
    for (const char16_t c : text) {
        const bool control = c < 0x20 || (c >= 0x7F && c <= 0x9F);
        const bool reorders = (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
        if (!control && !reorders) {
            out.push_back(c);
            continue;
        }
        char escape[8];
        std::snprintf(escape, sizeof escape, control ? "\\x%02x" : "\\u%04x",
                      static_cast<unsigned>(c));
        for (const char* p = escape; *p; ++p) out.push_back(static_cast<char16_t>(*p));
    }
    return toUtf8(out);
}

}  // namespace zphonetic::tagger
