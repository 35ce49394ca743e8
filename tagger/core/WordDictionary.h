// SPDX-License-Identifier: MIT
#pragma once

// The word dictionary ("firrule.dic"): words with the reading of each of their characters and a
// cost (the word's negative log probability in thousandths, lower = more frequent), as a trie.
//
// Text form, one word per line, sorted by UTF-16 code units:   银行<TAB>yín háng<TAB>7203
// Sections besides the syllable table:
//   3  u32[65536]   node of each first character (0 = no word starts with it)
//   4  u32[4 * n]   nodes; node 0 is empty. Per node: first child, child count, start of the
//                   word's readings in section 5 (kNoWord when the path is not a word),
//                   label << 16 | cost. Children are contiguous and sorted by label.
//   5  u16[]        syllable indices, one per character of each word

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
    uint16_t cost = 0;
};

// Parses the text form (any order); throws FormatError naming the line for a malformed line.
std::vector<WordEntry> parseWordText(const std::string& text);
// Prints entries in the order given (compile and toEntries() give them sorted).
std::string formatWordText(const std::vector<WordEntry>& entries);
// Sorts the entries and builds the file; throws FormatError for a repeated or empty word.
std::vector<uint8_t> compileWords(std::vector<WordEntry> entries);

// A checked view of a word dictionary in memory (does not own the bytes).
class WordDictionary {
public:
    static constexpr uint32_t kNoWord = 0xFFFFFFFF;

    // Throws FormatError when the bytes are not an intact word dictionary.
    WordDictionary(const uint8_t* data, size_t size);

    // Trie steps: the node of a first character, the child of `node` labelled `c`; 0 = none.
    uint32_t first(char16_t c) const { return root_.at(c); }
    uint32_t child(uint32_t node, char16_t c) const;
    // True when the path to `node` is a word; its cost and the syllable of its k-th character.
    bool isWord(uint32_t node) const { return nodes_.at(4 * size_t{node} + 2, kNoWord) != kNoWord; }
    uint16_t cost(uint32_t node) const {
        return static_cast<uint16_t>(nodes_.at(4 * size_t{node} + 3) & 0xFFFF);
    }
    const Syllable* reading(uint32_t node, size_t k) const {
        const uint32_t start = nodes_.at(4 * size_t{node} + 2, kNoWord);
        return start == kNoWord ? nullptr : syllables_.get(ids_.at(start + k, 0xFFFF));
    }

    // Every word, sorted; a damaged trie (a cycle, a reading out of range) throws FormatError.
    std::vector<WordEntry> toEntries() const;

private:
    ContainerView file_;
    SyllableTable syllables_;
    LeArray<uint32_t> root_;
    LeArray<uint32_t> nodes_;
    LeArray<uint16_t> ids_;
};

}  // namespace zphonetic::tagger
