// SPDX-License-Identifier: MIT
// Which UTF-16 code units the engine hands to a reading provider.
#pragma once

// True for Hiragana and Katakana (U+3040-30FF), CJK Compatibility (U+3300-33FF), CJK Unified
// Ideographs (U+4E00-9FFF), CJK Compatibility Ideographs (U+F900-FAFF) and Halfwidth and
// Fullwidth Forms (U+FF00-FFEF). Everything else, CJK punctuation (U+3000-303F), Extension A
// (U+3400-4DBF) and surrogates included, is not taggable.
bool isTaggable(char16_t unit);
