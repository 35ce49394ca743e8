// SPDX-License-Identifier: MIT
#pragma once

// Pinyin syllables as the dictionaries store them: NFC, tone marks on the vowel, lower-case
// ASCII letters plus ü (U+00FC) and the precomposed toned vowels. Each dictionary file holds its
// own table of the distinct syllables it uses, and refers to them by index.

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "Container.h"

namespace zphonetic::tagger {

// The longest syllable, in UTF-16 units ("zhuàng", "shuāng" have 6).
constexpr size_t kSyllableUnits = 8;

// One syllable ready for output: its UTF-16 text in a fixed block that is copied whole, and its
// tone (1-4, 5 = neutral). Plain data, so that a dictionary's table of them is built and held at
// little cost.
struct Syllable {
    char16_t units[kSyllableUnits] = {};
    uint8_t size = 0;
    uint8_t tone = 5;
    std::u16string_view text() const { return {units, size}; }
};

// A syllable from its text; the caller makes sure it is syllable text (isSyllableText()).
Syllable makeSyllable(std::u16string_view text);

// A precomposed letter of a syllable taken apart: u'ǜ' -> {u'ü', 4}, u'ê' -> {u'ê', 5}; {0, 0}
// for a character that is no such letter (plain ASCII letters and "ü" included).
struct MarkedLetter {
    char16_t letter;
    uint8_t tone;
};
MarkedLetter unmarkLetter(char16_t c);
// `letter` with the mark of `tone` (1-4) as NFC spells it (u'ü', 4 -> u'ǜ'; u'm', 2 -> u'ḿ'), or 0
// when NFC has no such letter (u'm', 1).
char16_t markLetter(char16_t letter, uint8_t tone);

// The tone of a syllable (1-4 from its mark, 5 when it has none).
uint8_t toneOf(std::u16string_view syllable);

// True when `syllable` is a non-empty run of at most kSyllableUnits letters a syllable may hold
// (see above).
bool isSyllableText(std::u16string_view syllable);

// The tone-number spelling used by annotated corpora: "lǜ" -> "lu:4", "de" -> "de5".
std::string numberedSyllable(std::u16string_view syllable);

// Section ids of a syllable table inside a dictionary file.
constexpr uint32_t kSyllableIndexSection = 1;  // u32[count + 1], start of each text in units
constexpr uint32_t kSyllableTextSection = 2;   // u16[], all syllables run together

// Collects syllables while a dictionary is compiled and gives each an index.
class SyllableTableBuilder {
public:
    // Index of `syllable`, added if new; throws FormatError when it is not syllable text.
    uint16_t add(const std::u16string& syllable);
    void writeTo(ContainerWriter& writer) const;

private:
    std::vector<std::u16string> syllables_;
    std::unordered_map<std::u16string, uint16_t> index_;
};

// The syllables of a dictionary file, copied out of it once when it is opened.
class SyllableTable {
public:
    // Throws FormatError when the sections are missing or a syllable is not syllable text.
    explicit SyllableTable(const ContainerView& file);
    size_t size() const { return syllables_.size(); }
    // The syllable with this index, or nullptr for an index the table does not have.
    const Syllable* get(size_t index) const {
        return index < syllables_.size() ? &syllables_[index] : nullptr;
    }

private:
    std::vector<Syllable> syllables_;
};

}  // namespace zphonetic::tagger
