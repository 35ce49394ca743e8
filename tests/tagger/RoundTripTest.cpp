// SPDX-License-Identifier: MIT
// Text -> binary -> text gives the text back, and binary -> text -> binary the same bytes.
#include <gtest/gtest.h>

#include "CharDictionary.h"
#include "RuleDictionary.h"
#include "TinyDictionaries.h"
#include "WordDictionary.h"

using namespace zphonetic::tagger;

namespace {

TEST(RoundTrip, CharacterReadings) {
    const std::string text = formatCharText(parseCharText(tiny::kChars));
    EXPECT_EQ(text, tiny::kChars);  // the tiny source is already in the printed order
    const auto bytes = compileChars(parseCharText(text));
    const std::string back =
        formatCharText(CharDictionary(bytes.data(), bytes.size()).toReadings());
    EXPECT_EQ(back, text);
    EXPECT_EQ(compileChars(parseCharText(back)), bytes);
}

TEST(RoundTrip, Words) {
    const auto bytes = compileWords(parseWordText(tiny::kWords));
    const std::string back = formatWordText(WordDictionary(bytes.data(), bytes.size()).toEntries());
    EXPECT_EQ(back, tiny::kWords);
    EXPECT_EQ(compileWords(parseWordText(back)), bytes);
}

TEST(RoundTrip, WordsInAnyOrderComeBackSorted) {
    const std::string shuffled = "长江\tcháng jiāng\t160\n一个\tyí gè\t190\n行\txíng\t160\n";
    const auto bytes = compileWords(parseWordText(shuffled));
    EXPECT_EQ(formatWordText(WordDictionary(bytes.data(), bytes.size()).toEntries()),
              "一个\tyí gè\t190\n行\txíng\t160\n长江\tcháng jiāng\t160\n");
}

TEST(RoundTrip, Rules) {
    const std::string text =
        "class\tDIGIT\t一三二\n"
        "class\tMONEY\t款钱\n"
        "rule\t一\tyī\t_{DIGIT}\n"
        "rule\t一\tyī\t第_\n"
        "rule\t得\tde\t~@._!了\n"
        "rule\t西\txī\t东={MONEY}\n"
        "rule\t还\thuán\t_{MONEY}\n"
        "rule\t还\thái\t^_$\n";
    const auto bytes = compileRules(parseRuleText(text));
    const std::string back = formatRuleText(RuleDictionary(bytes.data(), bytes.size()).toRuleSet());
    EXPECT_EQ(back, text);
    EXPECT_EQ(compileRules(parseRuleText(back)), bytes);
}

TEST(RoundTrip, RulesKeepTheirOrderPerCharacter) {
    // Compiled rules are grouped by character; the order within a character is kept.
    const auto bytes =
        compileRules(parseRuleText("rule\t还\thuán\t_钱\nrule\t一\tyī\t第_\nrule\t还\thái\t_\n"));
    EXPECT_EQ(formatRuleText(RuleDictionary(bytes.data(), bytes.size()).toRuleSet()),
              "rule\t一\tyī\t第_\nrule\t还\thuán\t_钱\nrule\t还\thái\t_\n");
}

TEST(RoundTrip, ARuleOfSeveralTargetsIsOneRuleForEach) {
    // Each target takes the reading in its place; the compiled file holds them as rules of their
    // own, each in its target's order (单 before 曾 before its second rule).
    const auto bytes =
        compileRules(parseRuleText("rule\t曾单\tzēng shàn\t姓_\nrule\t曾\tcéng\t_\n"));
    EXPECT_EQ(formatRuleText(RuleDictionary(bytes.data(), bytes.size()).toRuleSet()),
              "rule\t单\tshàn\t姓_\nrule\t曾\tzēng\t姓_\nrule\t曾\tcéng\t_\n");
}

TEST(RoundTrip, RuleTextsAddUp) {
    RuleSet set = parseRuleText("class\tMONEY\t钱\nrule\t还\thuán\t_{MONEY}\n");
    appendRuleText("rule\t还\thái\t_\n", set);
    ASSERT_EQ(set.rules.size(), 2u);
    const auto bytes = compileRules(set);
    RuleDictionary dict(bytes.data(), bytes.size());
    const std::u16string text = u"还钱还";
    const uint8_t inWord[3] = {};
    EXPECT_EQ(dict.match(text.data(), inWord, text.size(), 0, false)->text(), u"huán");
    EXPECT_EQ(dict.match(text.data(), inWord, text.size(), 2, false)->text(), u"hái");
    EXPECT_TRUE(dict.hasRules(u'还'));
    EXPECT_FALSE(dict.hasRules(u'钱'));
}

}  // namespace
