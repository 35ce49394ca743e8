// SPDX-License-Identifier: MIT
// The engine on tiny dictionaries: segmentation, rules, tone change, lone characters.
#include <gtest/gtest.h>

#include "Tagger.h"
#include "TinyDictionaries.h"

using zphonetic::tagger::Tagger;

namespace {

std::string tag(const char* utf8) {
    Tagger tagger(tiny::dictionaries());
    const std::u16string text = tiny::u16(utf8);
    size_t length = 0;
    char16_t* answer = tagger.answer(text.data(), text.size(), length);
    std::u16string out(answer, length);
    EXPECT_EQ(answer[length], u'\0');
    delete[] answer;
    return tiny::u8(out);
}

TEST(Tagger, SegmentationTakesTheMostProbablePath) {
    // 市+长江+大桥 costs 480, 市长+江+大桥 570: 长 is cháng.
    EXPECT_EQ(tag("市长江大桥"), "市/shì长/cháng江/jiāng大/dà桥/qiáo");
    EXPECT_EQ(tag("市长"), "市/shì长/zhǎng");
}

TEST(Tagger, WordsGiveTheirReadings) {
    EXPECT_EQ(tag("银行行长"), "银/yín行/háng行/háng长/zhǎng");
}

TEST(Tagger, AWordOfThreeCharactersGivesEachItsOwnReading) {
    // Words of three or more characters keep their syllables apart from the states; these
    // readings are none of the characters' defaults.
    using namespace zphonetic::tagger;
    const std::string words = std::string(tiny::kWords) + "大大行\tdài dài háng\t10\n";
    Tagger tagger(std::make_shared<const Dictionaries>(
        tiny::charBytes(), compileWords(parseWordText(words)), tiny::ruleBytes()));
    const std::u16string text = tiny::u16("看大大行");
    size_t length = 0;
    char16_t* answer = tagger.answer(text.data(), text.size(), length);
    EXPECT_EQ(tiny::u8(std::u16string(answer, length)), "看/kàn大/dài大/dài行/háng");
    delete[] answer;
}

TEST(Tagger, ACharacterAloneTakesItsOwnWordReadingThenItsDefault) {
    EXPECT_EQ(tag("还行"), "还/hái行/xíng");  // word entries of their own
    EXPECT_EQ(tag("看天"), "看/kàn天/tiān");  // no word: first reading in Pinyin.dic
}

TEST(Tagger, ContextRulesDecideCharactersLeftAlone) {
    EXPECT_EQ(tag("还钱"), "还/huán钱/qián");
    EXPECT_EQ(tag("还是"), "还/hái是/shì");
    // "^_$" only matches a text of one character, and a lone character lists all readings.
    EXPECT_EQ(tag("好"), "好/hǎo hào");
}

TEST(Tagger, RulesDoNotTouchCharactersInsideWords) {
    EXPECT_EQ(tag("一个"), "一/yí个/gè");  // the word's own reading, not the rule for digits
}

TEST(Tagger, RulesReadTheSegmentationAndOverrideAWordWhereTheContextSays) {
    using namespace zphonetic::tagger;
    const std::string rules = std::string(tiny::kRules) +
                              "rule\t长\tzhǎng\t~_\n"     // after a repeated character
                              "rule\t好\thào\t@_\n"       // after a word of two or more
                              "rule\t看\tkān\t_!行\n"     // before 行 standing alone
                              "rule\t大\tdài\t市._\n"     // any character between
                              "rule\t行\txíng\t银=天\n";  // 行 inside a word, before 天
    Tagger tagger(std::make_shared<const Dictionaries>(tiny::charBytes(), tiny::wordBytes(),
                                                       compileRules(parseRuleText(rules))));
    auto tagWith = [&](const char* utf8) {
        const std::u16string text = tiny::u16(utf8);
        size_t length = 0;
        char16_t* answer = tagger.answer(text.data(), text.size(), length);
        const std::string out = tiny::u8(std::u16string(answer, length));
        delete[] answer;
        return out;
    };
    EXPECT_EQ(tagWith("天天长"), "天/tiān天/tiān长/zhǎng");
    EXPECT_EQ(tagWith("看天长"), "看/kàn天/tiān长/cháng");
    EXPECT_EQ(tagWith("银行好"), "银/yín行/háng好/hào");  // 行 before 好: the word's reading
    EXPECT_EQ(tagWith("市看大"), "市/shì看/kàn大/dài");
    EXPECT_EQ(tagWith("市大"), "市/shì大/dà");
    EXPECT_EQ(tagWith("看天好"), "看/kàn天/tiān好/hǎo");
    EXPECT_EQ(tagWith("看行"), "看/kān行/xíng");
    EXPECT_EQ(tagWith("看行长"), "看/kàn行/háng长/zhǎng");  // 行 is inside the word 行长
    EXPECT_EQ(tagWith("银行天"), "银/yín行/xíng天/tiān");
    EXPECT_EQ(tagWith("银行"), "银/yín行/háng");
}

TEST(Tagger, YiChangesToneByTheNextSyllable) {
    EXPECT_EQ(tag("一天"), "一/yì天/tiān");
    EXPECT_EQ(tag("一大"), "一/yí大/dà");
    EXPECT_EQ(tag("天一"), "天/tiān一/yī");  // last: its own tone
    EXPECT_EQ(tag("一一"), "一/yī一/yī");    // a rule for counting wins over the tone change
    EXPECT_EQ(tag("看一看"), "看/kàn一/yi看/kàn");
}

TEST(Tagger, BuChangesToneBeforeAFourthTone) {
    EXPECT_EQ(tag("不大"), "不/bú大/dà");
    EXPECT_EQ(tag("不好"), "不/bù好/hǎo");
    EXPECT_EQ(tag("不是"), "不/bú是/shì");  // from the word
    EXPECT_EQ(tag("好不好"), "好/hǎo不/bu好/hǎo");
    EXPECT_EQ(tag("是不是"), "是/shì不/bu是/shì");  // even where 不是 is a word
    EXPECT_EQ(tag("好不"), "好/hǎo不/bù");
}

TEST(Tagger, LoneCharactersListEveryReadingDefaultFirst) {
    EXPECT_EQ(tag("行"), "行/xíng háng héng xìng hàng");
    EXPECT_EQ(tag("还"), "还/hái huán");
    EXPECT_EQ(tag("钱"), "钱/qián");
    EXPECT_EQ(tag("中"), "中/");  // not in the dictionary
}

TEST(Tagger, CharactersWithoutReadingsGetEmptyOnes) {
    EXPECT_EQ(tag("ア中钱Ａ"), "ア/中/钱/qiánＡ/");
    EXPECT_EQ(tag("中国"), "中/国/");
    EXPECT_EQ(tag(""), "");
}

TEST(Tagger, LoneSurrogatesAndAnyUnitAreAnswered) {
    Tagger tagger(tiny::dictionaries());
    const char16_t text[] = {0xD800, u'钱', 0xDC00, u'/', 0};
    size_t length = 0;
    char16_t* answer = tagger.answer(text, 4, length);
    EXPECT_EQ(std::u16string(answer, length),
              std::u16string(
                  {0xD800, u'/', u'钱', u'/', u'q', u'i', u'á', u'n', 0xDC00, u'/', u'/', u'/'}));
    delete[] answer;
}

TEST(Tagger, LongTextsAreTaggedWhole) {
    std::string text;
    std::string expected;
    for (int i = 0; i < 2000; ++i) {
        text += "银行行长";
        expected += "银/yín行/háng行/háng长/zhǎng";
    }
    EXPECT_EQ(tag(text.c_str()), expected);
}

TEST(Tagger, ReadingsReportWhatWasLeftOpen) {
    Tagger tagger(tiny::dictionaries());
    const std::u16string text = tiny::u16("还钱看天");
    const auto& readings = tagger.readings(text.data(), text.size());
    ASSERT_EQ(readings.size(), 4u);
    EXPECT_FALSE(tagger.isOpen(0));  // settled by a rule
    EXPECT_TRUE(tagger.isOpen(2));
    EXPECT_FALSE(tagger.isOpen(9));
}

}  // namespace
