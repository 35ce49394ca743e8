// SPDX-License-Identifier: MIT
#pragma once

// The word dictionary ("firrule.dic"): words with the reading of each of their characters and a
// cost (the word's negative log probability in 64ths of a nat, 0..2047, lower = more frequent),
// as a double-array trie. Following a character from a state reads one 8-byte state, which also
// holds the word's cost: the segmenter touches as little memory per character as it can, since
// the states that running text visits lie scattered over the table and most such reads wait for
// memory.
//
// Text form, one word per line, sorted by UTF-16 code units:   银行<TAB>yín háng<TAB>450
// Sections besides the syllable table:
//   3  u16[65536]  code of each character (1..K, most frequent in words first; 0 = in no word)
//   4  u16[K + 1]  the character of each code
//   5  u64[S]      states; state 0 is the root. Per state, from the low bits:
//                    base << 11 | cost           (the child by code c is base + c, if its parent
//                                                 is this state)
//                    (parent + 1 | kWordBit) << 32  (parent + 1 = 0: a free slot; kWordBit: the
//                                                 path to this state is a word)
//   6  u32[S]      readings of the word of each state: for a word of one or two characters its
//                  syllable indices (15 bits each, first in the low bits); for a longer one
//                  kLongBit | start of its syllable indices in section 7. Read only for the
//                  words of the best path, so kept apart from the states.
//   7  u16[]       syllable indices of the words of three or more characters

#include <cstdint>
#include <string>
#include <vector>

#include "Container.h"
#include "Syllables.h"

namespace zphonetic::tagger {

inline constexpr char kWordMagic[] = "ZPYWORDS";

struct WordEntry {
    std::u16string word;
    std::vector<std::u16string> readings;  // one per UTF-16 unit of `word`
    uint16_t cost = 0;                     // 0..kMaxWordCost
};

constexpr uint16_t kMaxWordCost = 2047;

// A word's cost field of a text form; throws FormatError naming the line unless it is 0..2047.
uint16_t parseWordCost(size_t lineNo, const std::string& field);
// Parses the text form (any order); throws FormatError naming the line for a malformed line.
std::vector<WordEntry> parseWordText(const std::string& text);
// Prints entries in the order given (compile and toEntries() give them sorted).
std::string formatWordText(const std::vector<WordEntry>& entries);
// Sorts the entries and builds the file; throws FormatError for a repeated or empty word.
std::vector<uint8_t> compileWords(std::vector<WordEntry> entries);

// A checked view of a word dictionary in memory (does not own the bytes).
class WordDictionary {
public:
    static constexpr uint32_t kRoot = 0;
    static constexpr uint32_t kWordBit = 0x80000000u;
    static constexpr uint32_t kLongBit = 0x80000000u;

    // Throws FormatError when the bytes are not an intact word dictionary.
    WordDictionary(const uint8_t* data, size_t size);

    // The state reached from `state` by character `c`, or 0 when no word continues that way.
    uint32_t next(uint32_t state, char16_t c) const {
        const uint32_t code = codes_.at(c);
        const uint32_t base = static_cast<uint32_t>(states_.at(state)) >> 11;
        if (code == 0 || base == 0) return 0;  // base 0: a state without children
        const uint64_t t = uint64_t{base} + code;
        return parentPlusOne(states_.at(t)) == uint64_t{state} + 1 ? static_cast<uint32_t>(t) : 0;
    }
    // True when the path to `state` is a word; its cost and the syllable of its k-th character.
    bool isWord(uint32_t state) const { return (states_.at(state) >> 32) & kWordBit; }
    uint16_t cost(uint32_t state) const {
        return static_cast<uint16_t>(states_.at(state) & kMaxWordCost);
    }
    const Syllable* reading(uint32_t state, size_t k) const {
        return isWord(state) ? syllableOf(readings_.at(state), k) : nullptr;
    }
    // The syllables of the word of `state` into out[0, length): what reading(state, k) gives
    // for each k, with one read of the word's readings.
    void readWord(uint32_t state, size_t length, const Syllable** out) const {
        const bool word = isWord(state);
        const uint32_t r = word ? readings_.at(state) : 0;
        for (size_t k = 0; k < length; ++k) out[k] = word ? syllableOf(r, k) : nullptr;
    }

    // Every word, sorted; a damaged trie (a loop, a reading out of range) throws FormatError.
    std::vector<WordEntry> toEntries() const;
    // The file behind the view: whether what was read of it was intact (see ContainerView).
    const ContainerView& file() const { return file_; }
    // Every distinct syllable the file uses.
    const SyllableTable& syllables() const { return syllables_; }

private:
    // Syllable k of a word whose reading entry (section 6) is r.
    const Syllable* syllableOf(uint32_t r, size_t k) const {
        if (r & kLongBit) return syllables_.get(ids_.at(size_t{r & ~kLongBit} + k, 0xFFFF));
        return k < 2 ? syllables_.get((r >> (15 * k)) & 0x7FFF) : nullptr;
    }
    static uint32_t parentPlusOne(uint64_t state) {
        return static_cast<uint32_t>(state >> 32) & ~kWordBit;
    }

    ContainerView file_;
    SyllableTable syllables_;
    LeArray<uint16_t> codes_;
    LeArray<uint16_t> chars_;
    LeArray<uint64_t> states_;
    LeArray<uint32_t> readings_;
    LeArray<uint16_t> ids_;
};

}  // namespace zphonetic::tagger
