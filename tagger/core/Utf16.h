// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace zphonetic::tagger {

// Converts UTF-8 to UTF-16. Invalid bytes become U+FFFD, so any input converts.
std::u16string toUtf16(std::string_view utf8);

// True when `bytes` are UTF-8 throughout (no overlong forms, surrogates or values past U+10FFFF).
bool isUtf8(std::string_view bytes);

// Converts UTF-16 to UTF-8. Unpaired surrogates become U+FFFD.
std::string toUtf8(std::u16string_view utf16);

// UTF-8 text made safe to print on a terminal: control characters (C0, DEL, C1) written as
// "\x1b" and the characters that reorder what follows them (bidirectional embeddings, overrides
// and isolates) as "\u202e", so that a text from a file can neither move the cursor, clear the
// screen, set the clipboard nor disguise itself. Invalid bytes become U+FFFD.
std::string printable(std::string_view utf8);

}  // namespace zphonetic::tagger
