// SPDX-License-Identifier: MIT
#include "engine/answerparser.h"

#include <algorithm>

void applyReadingTypography(std::u16string& answer) {
    for (char16_t& unit : answer) {
        if (unit == u'a')
            unit = u'\u0251';
        else if (unit == u'g')
            unit = u'\u0261';
    }
}

ParsedAnswer parseAnswer(std::u16string_view answer, std::u16string_view reference) {
    ParsedAnswer parsed;
    if (answer.size() <= 2 || reference.empty()) return parsed;
    std::size_t position = 0;
    for (char16_t character : reference) {
        // position + 2 < answer.size() holds here, so both units exist.
        if (answer[position] != character || answer[position + 1] != u'/') {
            parsed.status = AnswerStatus::Mismatch;
            parsed.joined.clear();
            parsed.lengths.clear();
            return parsed;
        }
        const std::size_t start = position + 2;
        const std::size_t slash = answer.find(u'/', start);
        // The unit before the next "/" is the next character, not part of this reading.
        std::size_t end = slash == std::u16string_view::npos ? answer.size() : slash - 1;
        if (end < start) end = start;
        parsed.joined.append(answer.substr(start, end - start));
        parsed.lengths.push_back(static_cast<std::int32_t>(end - start));
        position = end;
        if (position + 2 >= answer.size()) break;
    }
    parsed.status = AnswerStatus::Parsed;
    return parsed;
}

std::vector<std::u16string> splitReadings(const ParsedAnswer& parsed, std::size_t referenceLength) {
    std::vector<std::u16string> pieces;
    const std::u16string& joined = parsed.joined;
    if (referenceLength < 2) {
        std::size_t start = 0;
        for (;;) {
            const std::size_t space = joined.find(u' ', start);
            if (space == std::u16string::npos) break;
            pieces.push_back(joined.substr(start, space - start));
            start = space + 1;
        }
        pieces.push_back(joined.substr(start));
        return pieces;
    }
    std::size_t start = 0;
    for (std::int32_t length : parsed.lengths) {
        // The first space at most `length` units on, looked for no further: a search to the end
        // of the answer for every character would take time quadratic in the text's length.
        const std::size_t rest = joined.size() - std::min(start, joined.size());
        const std::size_t reach = static_cast<std::size_t>(length);
        const std::size_t window = reach < rest ? reach + 1 : rest;
        const std::size_t space = std::u16string_view(joined).substr(start, window).find(u' ');
        const std::size_t reading = space != std::u16string_view::npos ? space : reach;
        pieces.push_back(joined.substr(start, reading));
        start += static_cast<std::size_t>(length);
    }
    return pieces;
}
