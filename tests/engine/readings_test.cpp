// SPDX-License-Identifier: MIT
// The readings list and the candidates map, through the real binding and the test library.
#include "enginetest.h"

namespace {

using Journal = std::vector<std::string>;
using Readings = std::vector<std::string>;

class ReadingsTest : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        load();
        tagger.reset();
        scriptReadings();
    }
    QMap<QChar, QStringList> candidates;
    QStringList readings;
};

TEST_F(ReadingsTest, ChineseAroundALatinLetterLinesUpWithTheText) {
    tagAlternatives(&handle, QStringLiteral("中a国"), candidates);
    EXPECT_TRUE(tagReadings(&handle, QStringLiteral("中a国"), &candidates, readings));
    EXPECT_EQ(utf8(readings), (Readings{"zhōnɡ", "", "ɡuó"}));
}

TEST_F(ReadingsTest, AChineseCharacterMissingFromTheMapGetsTwoSpaces) {
    candidates.insert(QChar(u'中'), {QStringLiteral("zhōnɡ")});
    EXPECT_TRUE(tagReadings(&handle, QStringLiteral("中国a"), &candidates, readings));
    EXPECT_EQ(utf8(readings), (Readings{"zhōnɡ", "  ", ""}));
    EXPECT_EQ(tagger.journal().at(1), "PinyinTagSen 中");
}

TEST_F(ReadingsTest, LatinTextGivesFalseAndLeavesTheListAlone) {
    readings = QStringList{QStringLiteral("kept")};
    EXPECT_FALSE(tagReadings(&handle, QStringLiteral("abc"), &candidates, readings));
    EXPECT_EQ(utf8(readings), (Readings{"kept"}));
    EXPECT_FALSE(tagReadings(&handle, QString(), nullptr, readings));
    EXPECT_EQ(utf8(readings), (Readings{"kept"}));
    EXPECT_TRUE(tagger.journal().empty());
}

TEST_F(ReadingsTest, APolyphonicCharacterHasEveryCandidateButOneReadingInContext) {
    tagger.answer(u"长大", u"长/zhǎng大/dà");
    tagAlternatives(&handle, QStringLiteral("长大"), candidates);
    EXPECT_EQ(utf8(candidates.value(QChar(u'长'))), (Readings{"chánɡ", "zhǎnɡ"}));
    EXPECT_EQ(utf8(candidates.value(QChar(u'大'))), (Readings{"dà"}));
    EXPECT_TRUE(tagReadings(&handle, QStringLiteral("长大"), &candidates, readings));
    EXPECT_EQ(utf8(readings), (Readings{"zhǎnɡ", "dà"}));
}

TEST_F(ReadingsTest, ALoneChineseCharacterKeepsEveryCandidateInTheList) {
    // As designed: the text reaching the tagger is one character, so its answer is split into
    // candidates, and the list is longer than the text.
    tagAlternatives(&handle, QStringLiteral("长"), candidates);
    EXPECT_TRUE(tagReadings(&handle, QStringLiteral("长"), &candidates, readings));
    EXPECT_EQ(utf8(readings), (Readings{"chánɡ", "zhǎnɡ"}));
}

TEST_F(ReadingsTest, U9FA5IsChineseButU9FA6AndExtensionAAreNot) {
    const QString text = QString::fromUtf16(u"\u9FA5\u9FA6\u3400");
    tagAlternatives(&handle, text, candidates);
    EXPECT_EQ(candidates.keys(), QList<QChar>{QChar(0x9FA5)});
    EXPECT_TRUE(tagReadings(&handle, text, &candidates, readings));
    EXPECT_EQ(utf8(readings), (Readings{"yù", "", ""}));
    EXPECT_EQ(tagger.journal(),
              (Journal{"GetPinyinObject", "PinyinTagSen \u9FA5", "ReleasePinyinObject",
                       "GetPinyinObject", "PinyinTagSen \u9FA5", "ReleasePinyinObject"}));
}

TEST_F(ReadingsTest, EveryOccurrenceIsTaggedAgainAndReplacesTheEntry) {
    candidates.insert(QChar(u'中'), {QStringLiteral("old")});
    candidates.insert(QChar(u'x'), {QStringLiteral("kept")});
    tagAlternatives(&handle, QStringLiteral("中中"), candidates);
    EXPECT_EQ(utf8(candidates.value(QChar(u'中'))), (Readings{"zhōnɡ"}));
    EXPECT_EQ(utf8(candidates.value(QChar(u'x'))), (Readings{"kept"}));
    EXPECT_EQ(tagger.journal(),
              (Journal{"GetPinyinObject", "PinyinTagSen 中", "ReleasePinyinObject",
                       "GetPinyinObject", "PinyinTagSen 中", "ReleasePinyinObject"}));
}

TEST_F(ReadingsTest, ACharacterWithoutReadingsGetsNoEntry) {
    tagger.setAnswer(u"人", nullptr, 0);
    tagAlternatives(&handle, QStringLiteral("人"), candidates);
    EXPECT_TRUE(candidates.isEmpty());
}

TEST_F(ReadingsTest, WithoutAMapEveryChineseCharacterIsTagged) {
    EXPECT_TRUE(tagReadings(&handle, QStringLiteral("中国"), nullptr, readings));
    EXPECT_EQ(utf8(readings), (Readings{"zhōnɡ", "ɡuó"}));
}

TEST_F(ReadingsTest, ANullHandleGivesNoReadings) {
    tagAlternatives(nullptr, QStringLiteral("中国"), candidates);
    EXPECT_TRUE(candidates.isEmpty());
    readings = QStringList{QStringLiteral("kept")};
    EXPECT_FALSE(tagReadings(nullptr, QStringLiteral("中国"), nullptr, readings));
    EXPECT_EQ(utf8(readings), (Readings{"kept"}));
    EXPECT_TRUE(tagger.journal().empty());
}

TEST_F(ReadingsTest, NoLibraryGivesNoReadings) {
    unloadPinyinTagger(handle);
    tagAlternatives(&handle, QStringLiteral("中国"), candidates);
    EXPECT_TRUE(candidates.isEmpty());
    EXPECT_FALSE(tagReadings(&handle, QStringLiteral("中国"), &candidates, readings));
    EXPECT_TRUE(readings.isEmpty());
}

TEST_F(ReadingsTest, AFailedTagStillMarksMissingCharactersInTheOldList) {
    // Step by step as designed: the marks are applied to whatever the list holds.
    readings = QStringList{QString(), QStringLiteral("x")};
    EXPECT_FALSE(tagReadings(&handle, QStringLiteral("中国"), &candidates, readings));
    EXPECT_EQ(utf8(readings), (Readings{"  ", "x"}));
}

TEST_F(ReadingsTest, TheHostServiceFeedsTheSameOperations) {
    minihost::setFeatureState(ZFeatureTaggingLibrary, false);
    tagAlternatives(&handle, QStringLiteral("中a国"), candidates);
    EXPECT_EQ(candidates.size(), 2);
    EXPECT_TRUE(tagReadings(&handle, QStringLiteral("中a国"), &candidates, readings));
    EXPECT_EQ(utf8(readings), (Readings{"zhōng", "", "guó"}));
    EXPECT_TRUE(tagger.journal().empty());
}

TEST(ReadingsFromBlock, EmptyAndMissingRangesGiveEmptyStrings) {
    char16_t text[] = u"zhōngguó";
    std::int32_t boundaries[] = {0, 5, 5, 8, 3};
    ReadingBlock block{9, text, 5, boundaries, nullptr, nullptr};
    QStringList readings{QStringLiteral("old")};
    readingsFromBlock(block, readings);
    EXPECT_EQ(utf8(readings), (Readings{"zhōng", "", "guó", ""}));
    block.boundaries = nullptr;
    readingsFromBlock(block, readings);
    EXPECT_EQ(utf8(readings), (Readings{"", "", "", ""}));
    block.boundaryCount = 0;
    readingsFromBlock(block, readings);
    EXPECT_TRUE(readings.isEmpty());
}

}  // namespace
