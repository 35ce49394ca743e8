// SPDX-License-Identifier: MIT
#pragma once

// The character dictionary ("Pinyin.dic"): for each BMP character, its modern readings, the
// default (most common) first.
//
// Text form, one character per line, sorted by code point:   行<TAB>xíng háng héng xìng hàng
// Sections besides the syllable table:
//   3  u32[65537]  start of each code unit's readings in section 4 (end = next start)
//   4  u16[]       syllable indices

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Container.h"
#include "Syllables.h"

namespace zphonetic::tagger {

inline constexpr char kCharMagic[] = "ZPYCHARS";

// Readings by character, as the compiler collects them and the decompiler prints them.
using CharReadings = std::map<char16_t, std::vector<std::u16string>>;

// Parses the text form; throws FormatError naming the line for a malformed line.
CharReadings parseCharText(const std::string& text);
std::string formatCharText(const CharReadings& readings);
std::vector<uint8_t> compileChars(const CharReadings& readings);

// A checked view of a character dictionary in memory (does not own the bytes).
class CharDictionary {
public:
    // Throws FormatError when the bytes are not an intact character dictionary.
    CharDictionary(const uint8_t* data, size_t size);

    // Number of readings of `c` (0 when it has none).
    size_t count(char16_t c) const {
        const uint32_t s = start(c);
        const uint32_t e = start(c + 1u);
        return e > s ? e - s : 0;
    }
    // Reading `k` of `c`, or nullptr when there is no such reading.
    const Syllable* reading(char16_t c, size_t k) const {
        if (k >= count(c)) return nullptr;
        return syllables_.get(ids_.at(start(c) + k, 0xFFFF));
    }
    CharReadings toReadings() const;
    // The file behind the view: whether what was read of it was intact (see ContainerView).
    const ContainerView& file() const { return file_; }
    // Every distinct syllable the file uses.
    const SyllableTable& syllables() const { return syllables_; }

private:
    uint32_t start(uint32_t unit) const;

    ContainerView file_;
    SyllableTable syllables_;
    LeArray<uint32_t> index_;
    LeArray<uint16_t> ids_;
};

}  // namespace zphonetic::tagger
