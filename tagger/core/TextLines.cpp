// SPDX-License-Identifier: MIT
#include "TextLines.h"

#include "Syllables.h"
#include "Utf16.h"

namespace zphonetic::tagger {

void forEachLine(const std::string& text,
                 const std::function<void(size_t, const std::vector<std::string>&)>& onLine) {
    size_t lineNo = 0;
    size_t pos = 0;
    std::vector<std::string> fields;
    while (pos < text.size()) {
        size_t end = text.find('\n', pos);
        if (end == std::string::npos) end = text.size();
        std::string line = text.substr(pos, end - pos);
        pos = end + 1;
        ++lineNo;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty() || line[0] == '#') continue;
        fields.clear();
        size_t start = 0;
        for (;;) {
            const size_t tab = line.find('\t', start);
            fields.push_back(line.substr(start, tab - start));
            if (tab == std::string::npos) break;
            start = tab + 1;
        }
        onLine(lineNo, fields);
    }
}

FormatError lineError(size_t lineNo, const std::string& message) {
    return FormatError("line " + std::to_string(lineNo) + ": " + message);
}

std::vector<std::u16string> splitSyllables(size_t lineNo, const std::string& field) {
    std::vector<std::u16string> out;
    size_t start = 0;
    for (;;) {
        const size_t space = field.find(' ', start);
        const std::string piece = field.substr(start, space - start);
        std::u16string syllable = toUtf16(piece);
        if (!isSyllableText(syllable)) {
            throw lineError(lineNo, "\"" + piece + "\" is not a pinyin syllable");
        }
        out.push_back(std::move(syllable));
        if (space == std::string::npos) break;
        start = space + 1;
    }
    return out;
}

std::string joinSyllables(const std::vector<std::u16string>& syllables) {
    std::string out;
    for (size_t i = 0; i < syllables.size(); ++i) {
        if (i > 0) out += ' ';
        out += toUtf8(syllables[i]);
    }
    return out;
}

}  // namespace zphonetic::tagger
