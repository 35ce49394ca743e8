// SPDX-License-Identifier: MIT
// The word compiler's output for a fixed, generated word list, compared with the bytes it gave
// when the golden value was recorded. The list is made here, not read from the dictionary
// sources, so a deliberate change of the data never moves it; a change of the compiler that
// moves a single byte does. When the file format changes on purpose, record the new value.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "WordDictionary.h"

using namespace zphonetic::tagger;

namespace {

// FNV-1a over every byte: independent of the container's own checksum.
uint64_t fingerprint(const std::vector<uint8_t>& bytes) {
    uint64_t hash = 0xcbf29ce484222325u;
    for (uint8_t byte : bytes) {
        hash ^= byte;
        hash *= 0x100000001b3u;
    }
    return hash;
}

// Words over a small alphabet, so that states have many children and the placement of their
// children runs into crowded parts of the table; lengths 1 to 6, so that both the inline and
// the separate readings are written; costs over the whole range, ties included.
std::vector<WordEntry> generatedWords() {
    static const char16_t* const kSyllables[] = {u"yín", u"háng", u"zhǎng", u"hái", u"shì",
                                                 u"jué", u"de",   u"nǐ",    u"hǎo", u"dōu",
                                                 u"děi", u"xíng", u"guó",   u"ma",  u"lǜ"};
    std::mt19937 random(20261124u);  // the engine's sequence is fixed by the standard
    std::set<std::u16string> seen;
    std::vector<WordEntry> words;
    while (words.size() < 40000) {
        WordEntry entry;
        const size_t length = 1 + random() % 6;
        for (size_t k = 0; k < length; ++k) {
            // The first characters from 400, the later ones from all 3000: wide, then narrow.
            const uint32_t spread = k == 0 ? 400 : 3000;
            entry.word.push_back(static_cast<char16_t>(0x4E00 + random() % spread));
            entry.readings.push_back(kSyllables[random() % std::size(kSyllables)]);
        }
        entry.cost = static_cast<uint16_t>(random() % (kMaxWordCost + 1));
        if (seen.insert(entry.word).second) words.push_back(std::move(entry));
    }
    return words;
}

TEST(WordCompilerGolden, GivesTheRecordedBytesForAFixedWordList) {
    const std::vector<uint8_t> bytes = compileWords(generatedWords());
    EXPECT_EQ(bytes.size(), 4506160u);
    EXPECT_EQ(fingerprint(bytes), 4285556885385561352u);
}

TEST(WordCompilerGolden, DoesNotDependOnTheOrderOfItsInput) {
    std::vector<WordEntry> words = generatedWords();
    const std::vector<uint8_t> forward = compileWords(words);
    std::reverse(words.begin(), words.end());
    EXPECT_EQ(compileWords(words), forward);
}

}  // namespace
