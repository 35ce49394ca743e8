// SPDX-License-Identifier: MIT
// Syllables as people type them, spelt as the dictionaries spell them.
#include <gtest/gtest.h>

#include <set>

#include "CharDictionary.h"
#include "MappedFile.h"
#include "RuleDictionary.h"
#include "SyllableInput.h"
#include "TinyDictionaries.h"
#include "WordDictionary.h"

using zphonetic::tagger::spellSyllable;

namespace {

std::string spelt(const char* typed) {
    const std::optional<std::u16string> s = spellSyllable(tiny::u16(typed));
    return s ? tiny::u8(*s) : "<none>";
}

TEST(SyllableInput, ToneMarksAndToneNumbersGiveTheSameSpelling) {
    const char* cases[][2] = {
        {"zēng", "zēng"},      {"zeng1", "zēng"},
        {"ZENG1", "zēng"},     {"Zēng", "zēng"},
        {"hao3", "hǎo"},       {"haǒ", "hǎo"},
        {"gui4", "guì"},       {"liu2", "liú"},
        {"guo2", "guó"},       {"dou1", "dōu"},
        {"xue2", "xué"},       {"er2", "ér"},
        {"zhuang4", "zhuàng"}, {"lv4", "lǜ"},
        {"lu:4", "lǜ"},        {"lü4", "lǜ"},
        {"nve4", "nüè"},       {"nue4", "nüè"},
        {"lue4", "lüè"},       {"jü2", "jú"},
        {"qv4", "qù"},         {"yü", "yu"},
        {"de", "de"},          {"de5", "de"},
        {"de0", "de"},         {"r", "r"},
        {"R5", "r"},           {"ng2", "ńg"},
        {"m2", "ḿ"},           {"n4", "ǹ"},
        {"ê4", "ề"},           {"e\u0301", "é"},
        {"ha\u030Co", "hǎo"},  {"lu\u0308\u0300", "lǜ"},
    };
    for (const auto& [typed, want] : cases) EXPECT_EQ(spelt(typed), want) << typed;
}

TEST(SyllableInput, WhatIsNoSyllableIsRefused) {
    for (const char* typed :
         {"", "zzz", "zeng6", "ze1ng", "zēng1", "hǎǒ", "m1", "ê1", "1", "r2", "zh", "xian1 ",
          "zeng12", "zhong1guo2", "nǐhǎo", "ni3hao3", "lüan", "a-", "\u0301a"}) {
        EXPECT_EQ(spelt(typed), "<none>") << typed;
    }
}

// Every syllable the built dictionaries use, and each without its tone, is spelt as it is.
TEST(SyllableInput, EverySyllableOfTheDictionariesIsSpeltAsItIs) {
    using namespace zphonetic::tagger;
    std::set<std::u16string> syllables;
    const auto collect = [&syllables](const SyllableTable& table) {
        for (size_t k = 0; k < table.size(); ++k) syllables.emplace(table.get(k)->text());
    };
    const MappedFile charFile(ZPHONETIC_DICT_DIR "/Pinyin.dic");
    collect(CharDictionary(charFile.data(), charFile.size()).syllables());
    const MappedFile wordFile(ZPHONETIC_DICT_DIR "/firrule.dic");
    collect(WordDictionary(wordFile.data(), wordFile.size()).syllables());
    const MappedFile ruleFile(ZPHONETIC_DICT_DIR "/secrule.dic");
    collect(RuleDictionary(ruleFile.data(), ruleFile.size()).syllables());
    ASSERT_GT(syllables.size(), 1500u);
    for (const std::u16string& s : syllables) {
        std::u16string toneless;
        for (char16_t c : s) {
            const MarkedLetter m = unmarkLetter(c);
            toneless.push_back(m.letter != 0 ? m.letter : c);
        }
        EXPECT_EQ(spellSyllable(s), s) << tiny::u8(s);
        EXPECT_EQ(spellSyllable(toneless), toneless) << tiny::u8(toneless);
    }
}

}  // namespace
