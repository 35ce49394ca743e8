// SPDX-License-Identifier: MIT
// Building and widening ReadingBlocks on their own.
#include <gtest/gtest.h>

#include <QString>
#include <QStringList>

#include "engine/readingblock.h"
#include "engine/readings.h"

namespace {

std::vector<std::string> readingsOf(const ReadingBlock& block) {
    QStringList readings;
    readingsFromBlock(block, readings);
    std::vector<std::string> result;
    for (const QString& reading : readings) result.push_back(reading.toStdString());
    return result;
}

using Readings = std::vector<std::string>;

TEST(ReadingBlock, TaggerBlockJoinsTheReadings) {
    const ReadingBlockPtr block(makeTaggerBlock({u"zhōng", u"", u"guó"}));
    ASSERT_TRUE(block);
    EXPECT_EQ(block->length, 9);
    EXPECT_EQ(block->boundaryCount, 4);
    EXPECT_EQ(readingsOf(*block), (Readings{"zhōng", "", "guó"}));
}

TEST(ReadingBlock, TaggerBlockOfNoReadingsHasOneBoundary) {
    const ReadingBlockPtr block(makeTaggerBlock({}));
    ASSERT_TRUE(block);
    EXPECT_EQ(block->boundaryCount, 1);
    EXPECT_EQ(block->length, 1);
    EXPECT_TRUE(readingsOf(*block).empty());
}

TEST(ReadingBlock, HostBlockOfNoItemsHasOneBoundary) {
    const ZReadingRecord record{0, nullptr, nullptr, 0, nullptr, nullptr};
    const ReadingBlockPtr block(makeHostBlock(record));
    ASSERT_TRUE(block);
    EXPECT_EQ(block->boundaryCount, 1);
    EXPECT_EQ(block->length, 0);
}

TEST(ReadingBlock, HostBlockCopiesItemValuesAsGroupSizes) {
    char16_t output[] = u"zhōngguóx";
    std::uint32_t values[] = {2, 1};
    std::int32_t lengths[] = {5, 3};
    // The output may run past the items; the block keeps the output length.
    const ZReadingRecord record{9, output, nullptr, 2, values, lengths};
    const ReadingBlockPtr block(makeHostBlock(record));
    ASSERT_TRUE(block);
    EXPECT_EQ(block->length, 9);
    EXPECT_EQ(QString::fromUtf16(block->text), QStringLiteral("zhōngguóx"));
    EXPECT_EQ(readingsOf(*block), (Readings{"zhōng", "guó"}));
    EXPECT_EQ(block->groupSizes[0], 2);
    EXPECT_EQ(block->groupSizes[1], 1);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block->boundaries) % alignof(std::int32_t), 0u);
}

TEST(ReadingBlock, InconsistentHostRecordsGiveNoBlock) {
    char16_t output[] = u"abc";
    std::uint32_t values[] = {1, 1};
    std::int32_t lengths[] = {2, 2};
    std::int32_t negative[] = {-1, 4};
    EXPECT_EQ(makeHostBlock({3, output, nullptr, 2, values, lengths}), nullptr);  // 4 > 3 units
    EXPECT_EQ(makeHostBlock({3, output, nullptr, 2, values, negative}), nullptr);
    EXPECT_EQ(makeHostBlock({-1, output, nullptr, 0, nullptr, nullptr}), nullptr);
    EXPECT_EQ(makeHostBlock({3, output, nullptr, -2, values, lengths}), nullptr);
    EXPECT_EQ(makeHostBlock({3, nullptr, nullptr, 0, nullptr, nullptr}), nullptr);
    EXPECT_EQ(makeHostBlock({3, output, nullptr, 1, nullptr, lengths}), nullptr);
    EXPECT_EQ(makeHostBlock({3, output, nullptr, 1, values, nullptr}), nullptr);
}

TEST(ReadingBlock, WideningInsertsEmptyReadingsAtRemovedPositions) {
    const ReadingBlockPtr narrow(makeTaggerBlock({u"zhōng"}));
    const ReadingBlockPtr wide(widenBlock(*narrow, {0, 1, 3}));
    ASSERT_TRUE(wide);
    EXPECT_EQ(readingsOf(*wide), (Readings{"", "", "zhōng", ""}));
    EXPECT_EQ(wide->length, narrow->length);
    EXPECT_EQ(wide->groupSizes, nullptr);
    EXPECT_EQ(wide->extra, nullptr);
}

TEST(ReadingBlock, WideningStopsWhereTheReadingsRunOut) {
    const ReadingBlockPtr narrow(makeTaggerBlock({u"zhōng"}));
    const ReadingBlockPtr wide(widenBlock(*narrow, {2}));
    ASSERT_TRUE(wide);
    EXPECT_EQ(readingsOf(*wide), (Readings{"zhōng"}));
}

TEST(ReadingBlock, WideningCarriesGroupSizesAndExtra) {
    char16_t text[] = u"abc";
    std::int32_t boundaries[] = {0, 1, 3};
    std::int32_t groups[] = {2, 3};
    std::int32_t extra[] = {7, 8};
    const ReadingBlock narrow{3, text, 3, boundaries, groups, extra};
    const ReadingBlockPtr wide(widenBlock(narrow, {1}));
    ASSERT_TRUE(wide);
    EXPECT_EQ(readingsOf(*wide), (Readings{"a", "", "bc"}));
    ASSERT_NE(wide->groupSizes, nullptr);
    ASSERT_NE(wide->extra, nullptr);
    EXPECT_EQ((std::vector<std::int32_t>(wide->groupSizes, wide->groupSizes + 3)),
              (std::vector<std::int32_t>{2, 1, 3}));
    EXPECT_EQ((std::vector<std::int32_t>(wide->extra, wide->extra + 3)),
              (std::vector<std::int32_t>{7, 0, 8}));
    EXPECT_EQ(QString::fromUtf16(wide->text), QStringLiteral("abc"));
}

}  // namespace
