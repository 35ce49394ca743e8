// SPDX-License-Identifier: MIT
// Fuzzes the tagging library's answer parser: any answer against any text must parse without
// reading out of bounds, and what it yields must be consistent.
//
// Input: the first byte picks how many UTF-16 units of the rest form the text (1 to 8); the
// remaining units are the answer.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <string>

#include "engine/answerparser.h"

namespace {

void check(bool condition) {
    if (!condition) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1) return 0;
    const std::size_t referenceUnits = data[0] % 8 + 1;
    std::u16string units((size - 1) / 2, u'\0');
    std::memcpy(units.data(), data + 1, units.size() * sizeof(char16_t));
    const std::size_t split = referenceUnits < units.size() ? referenceUnits : units.size();
    const std::u16string reference = units.substr(0, split);
    std::u16string answer = units.substr(split);

    applyReadingTypography(answer);
    check(answer.find(u'a') == std::u16string::npos && answer.find(u'g') == std::u16string::npos);

    const ParsedAnswer parsed = parseAnswer(answer, reference);
    const auto total =
        std::accumulate(parsed.lengths.begin(), parsed.lengths.end(), std::size_t{0});
    check(total == parsed.joined.size());
    check(parsed.lengths.size() <= reference.size());
    if (parsed.status != AnswerStatus::Parsed) {
        check(parsed.lengths.empty());
        return 0;
    }
    check(!parsed.lengths.empty());
    const auto pieces = splitReadings(parsed, reference.size());
    if (reference.size() >= 2) {
        check(pieces.size() == parsed.lengths.size());
        for (std::size_t i = 0; i < pieces.size(); ++i)
            check(pieces[i].size() <= static_cast<std::size_t>(parsed.lengths[i]));
    }
    return 0;
}
