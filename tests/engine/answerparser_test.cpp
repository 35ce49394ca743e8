// SPDX-License-Identifier: MIT
// The answer parser on its own: statuses, reading extents and splitting.
#include <gtest/gtest.h>

#include <QString>

#include "engine/answerparser.h"

namespace {

std::string utf8(const std::u16string& text) {
    return QString::fromStdU16String(text).toStdString();
}

std::vector<std::string> utf8(const std::vector<std::u16string>& pieces) {
    std::vector<std::string> result;
    for (const auto& piece : pieces) result.push_back(utf8(piece));
    return result;
}

using Pieces = std::vector<std::string>;

TEST(AnswerParser, ParsesOneReadingPerCharacter) {
    const ParsedAnswer parsed = parseAnswer(u"中/zhōng国/guó", u"中国");
    EXPECT_EQ(parsed.status, AnswerStatus::Parsed);
    EXPECT_EQ(utf8(parsed.joined), "zhōngguó");
    EXPECT_EQ(parsed.lengths, (std::vector<std::int32_t>{5, 3}));
}

TEST(AnswerParser, TwoUnitsOrLessParseNothing) {
    EXPECT_EQ(parseAnswer(u"", u"中").status, AnswerStatus::NothingParsed);
    EXPECT_EQ(parseAnswer(u"中", u"中").status, AnswerStatus::NothingParsed);
    EXPECT_EQ(parseAnswer(u"中/", u"中").status, AnswerStatus::NothingParsed);
    EXPECT_EQ(parseAnswer(u"xx", u"中").status, AnswerStatus::NothingParsed);
}

TEST(AnswerParser, AnEmptyReferenceParsesNothing) {
    EXPECT_EQ(parseAnswer(u"中/zhōng", u"").status, AnswerStatus::NothingParsed);
}

TEST(AnswerParser, ThreeUnitsAreEnoughForOneReading) {
    const ParsedAnswer parsed = parseAnswer(u"中/z", u"中");
    EXPECT_EQ(parsed.status, AnswerStatus::Parsed);
    EXPECT_EQ(utf8(parsed.joined), "z");
}

TEST(AnswerParser, ADifferentCharacterIsAMismatch) {
    const ParsedAnswer parsed = parseAnswer(u"国/guó", u"中");
    EXPECT_EQ(parsed.status, AnswerStatus::Mismatch);
    EXPECT_TRUE(parsed.lengths.empty());
}

TEST(AnswerParser, AMissingSlashIsAMismatch) {
    EXPECT_EQ(parseAnswer(u"中zhōng", u"中").status, AnswerStatus::Mismatch);
}

TEST(AnswerParser, AMismatchLaterDropsWhatWasParsed) {
    const ParsedAnswer parsed = parseAnswer(u"中/zhōng人/rén", u"中国");
    EXPECT_EQ(parsed.status, AnswerStatus::Mismatch);
    EXPECT_TRUE(parsed.joined.empty());
}

TEST(AnswerParser, ASlashAtTheReadingStartGivesAnEmptyReadingThenAMismatch) {
    EXPECT_EQ(parseAnswer(u"中//国/guó", u"中国").status, AnswerStatus::Mismatch);
    const ParsedAnswer alone = parseAnswer(u"中//", u"中");
    EXPECT_EQ(alone.status, AnswerStatus::Parsed);
    EXPECT_EQ(alone.lengths, (std::vector<std::int32_t>{0}));
}

TEST(AnswerParser, AnAnswerEndingEarlyKeepsTheMatchedReadings) {
    const ParsedAnswer parsed = parseAnswer(u"中/zhōng国/guó", u"中国人");
    EXPECT_EQ(parsed.status, AnswerStatus::Parsed);
    EXPECT_EQ(parsed.lengths.size(), 2u);
    // The next character must leave room for its "/" and one more unit.
    EXPECT_EQ(parseAnswer(u"中/zhōng国/", u"中国").lengths.size(), 1u);
}

TEST(AnswerParser, EmptyReadingsBetweenCharacters) {
    const ParsedAnswer parsed = parseAnswer(u"中/国/guó", u"中国");
    EXPECT_EQ(parsed.status, AnswerStatus::Parsed);
    EXPECT_EQ(parsed.lengths, (std::vector<std::int32_t>{0, 3}));
}

TEST(AnswerParser, TypographyReplacesEveryAAndG) {
    std::u16string answer = u"刚/gang大/dà Ag";
    applyReadingTypography(answer);
    EXPECT_EQ(utf8(answer), "刚/ɡɑnɡ大/dà Aɡ");
}

TEST(SplitReadings, ALoneCharacterGivesEveryCandidate) {
    const ParsedAnswer parsed = parseAnswer(u"长/cháng zhǎng", u"长");
    EXPECT_EQ(utf8(splitReadings(parsed, 1)), (Pieces{"cháng", "zhǎng"}));
}

TEST(SplitReadings, ALoneCharacterSplitsAtEverySingleSpace) {
    const ParsedAnswer parsed = parseAnswer(u"长/a  b ", u"长");
    EXPECT_EQ(utf8(splitReadings(parsed, 1)), (Pieces{"a", "", "b", ""}));
}

TEST(SplitReadings, ASentenceKeepsTheFirstCandidateOfEachCharacter) {
    const ParsedAnswer parsed = parseAnswer(u"长/cháng zhǎng大/dà", u"长大");
    EXPECT_EQ(utf8(splitReadings(parsed, 2)), (Pieces{"cháng", "dà"}));
}

TEST(SplitReadings, ASpaceBeyondTheReadingDoesNotCutIt) {
    const ParsedAnswer parsed = parseAnswer(u"大/dà长/cháng zhǎng", u"大长");
    EXPECT_EQ(utf8(splitReadings(parsed, 2)), (Pieces{"dà", "cháng"}));
}

TEST(SplitReadings, ALeadingSpaceCutsToNothing) {
    const ParsedAnswer parsed = parseAnswer(u"中/ zhōng国/guó", u"中国");
    EXPECT_EQ(utf8(splitReadings(parsed, 2)), (Pieces{"", "guó"}));
}

}  // namespace
