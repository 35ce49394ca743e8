// SPDX-License-Identifier: MIT
// Reading the tagging library's answer: "中/zhōng国/guó" for the text "中国", each character
// followed by "/" and its reading; a lone character's reading may hold several candidates
// separated by single spaces ("长/cháng zhǎng").
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The parser's statuses. Only Parsed gives readings; the tagger object is released after Parsed
// and Mismatch and deliberately kept after NothingParsed.
enum class AnswerStatus {
    Parsed = 0,         // at least one reading, every character seen so far matched
    NothingParsed = 1,  // the answer has 2 units or less (or the text is empty)
    Mismatch = 8,       // a character of the text was not repeated, or not followed by "/"
};

struct ParsedAnswer {
    AnswerStatus status = AnswerStatus::NothingParsed;
    std::u16string joined;              // the readings of the matched characters, run together
    std::vector<std::int32_t> lengths;  // the length of each of them in `joined`
};

// Replaces every U+0061 by U+0251 and every U+0067 by U+0261, so that readings carry the
// single-storey letter forms: "guó" becomes "ɡuó", "zhāng" becomes "zhānɡ".
void applyReadingTypography(std::u16string& answer);

// Walks `answer` against `reference` character by character. Readings stop at the unit before
// the next "/" or at the end of the answer; an answer that ends early gives readings only for
// the characters it covers ("中/zhōng" for "中国" gives one reading, status Parsed).
ParsedAnswer parseAnswer(std::u16string_view answer, std::u16string_view reference);

// One reading per piece. A reference of fewer than 2 characters yields every space-separated
// candidate ("cháng zhǎng" gives "cháng", "zhǎng"); in a longer reference each character keeps
// only its first candidate.
std::vector<std::u16string> splitReadings(const ParsedAnswer& parsed, std::size_t referenceLength);
