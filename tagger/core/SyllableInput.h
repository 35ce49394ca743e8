// SPDX-License-Identifier: MIT
#pragma once

// Pinyin syllables as people type them, spelt as the dictionaries store them.

#include <optional>
#include <string>
#include <string_view>

namespace zphonetic::tagger {

// The syllable `typed` spelt in NFC with its tone mark where the rules of pinyin put it
// ("zēng", "lǜ", "de"), or nothing when it is no syllable of Mandarin.
//
// Taken as typed: tone marks precomposed or combining, on any vowel of the syllable ("haǒ" gives
// "hǎo"); or a tone number after it ("zeng1"; "de5", "de0" and "de" are neutral); "v" or "u:"
// for "ü" ("lv4", "lu:4"); "ü" after j, q, x, y written either way ("jü" gives "ju"); "lue" and
// "nue" for "lüe" and "nüe"; capital letters. The syllable without its tone must be one of
// Mandarin's, and the tone one its letters can carry in NFC ("ḿ", but no "m" of the first tone).
std::optional<std::u16string> spellSyllable(std::u16string_view typed);

}  // namespace zphonetic::tagger
