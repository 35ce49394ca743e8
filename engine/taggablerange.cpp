// SPDX-License-Identifier: MIT
#include "engine/taggablerange.h"

// Taggability is defined by Unicode block (Hiragana, Katakana, CJK Compatibility, CJK Unified
// Ideographs, CJK Compatibility Ideographs, Halfwidth and Fullwidth Forms). Within the BMP those
// blocks are exactly these ranges, so testing them directly needs no per-process block table.
bool isTaggable(char16_t unit) {
    return (unit >= 0x3040 && unit <= 0x30FF) || (unit >= 0x3300 && unit <= 0x33FF) ||
           (unit >= 0x4E00 && unit <= 0x9FFF) || (unit >= 0xF900 && unit <= 0xFAFF) ||
           (unit >= 0xFF00 && unit <= 0xFFEF);
}
