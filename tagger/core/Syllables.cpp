// SPDX-License-Identifier: MIT
#include "Syllables.h"

namespace zphonetic::tagger {
namespace {

struct ToneMark {
    char16_t marked;
    char base;
    uint8_t tone;
};

// Precomposed vowels with tone marks, as NFC spells them.
constexpr ToneMark kToneMarks[] = {
    {u'ā', 'a', 1}, {u'á', 'a', 2}, {u'ǎ', 'a', 3}, {u'à', 'a', 4},  //
    {u'ē', 'e', 1}, {u'é', 'e', 2}, {u'ě', 'e', 3}, {u'è', 'e', 4},  //
    {u'ī', 'i', 1}, {u'í', 'i', 2}, {u'ǐ', 'i', 3}, {u'ì', 'i', 4},  //
    {u'ō', 'o', 1}, {u'ó', 'o', 2}, {u'ǒ', 'o', 3}, {u'ò', 'o', 4},  //
    {u'ū', 'u', 1}, {u'ú', 'u', 2}, {u'ǔ', 'u', 3}, {u'ù', 'u', 4},  //
    {u'ǖ', 'v', 1}, {u'ǘ', 'v', 2}, {u'ǚ', 'v', 3}, {u'ǜ', 'v', 4},  //
    {u'ḿ', 'm', 2}, {u'ń', 'n', 2}, {u'ň', 'n', 3}, {u'ǹ', 'n', 4},  //
    {u'ê', 'E', 5}, {u'ế', 'E', 2}, {u'ề', 'E', 4},
};

const ToneMark* findMark(char16_t c) {
    for (const ToneMark& m : kToneMarks) {
        if (m.marked == c) return &m;
    }
    return nullptr;
}

}  // namespace

uint8_t toneOf(std::u16string_view syllable) {
    for (char16_t c : syllable) {
        if (c < 0x80 || c == u'ü') continue;
        if (const ToneMark* m = findMark(c); m != nullptr && m->tone != 5) return m->tone;
    }
    return 5;
}

bool isSyllableText(std::u16string_view syllable) {
    if (syllable.empty()) return false;
    for (char16_t c : syllable) {
        if ((c >= u'a' && c <= u'z') || c == u'ü') continue;
        if (findMark(c) == nullptr) return false;
    }
    return true;
}

std::string numberedSyllable(std::u16string_view syllable) {
    std::string out;
    uint8_t tone = 5;
    for (char16_t c : syllable) {
        if (c < 0x80) {
            out.push_back(static_cast<char>(c));
        } else if (c == u'ü') {
            out += "u:";
        } else if (const ToneMark* m = findMark(c)) {
            if (m->base == 'v') {
                out += "u:";
            } else if (m->base == 'E') {
                out += "e^";
            } else {
                out.push_back(m->base);
            }
            if (m->tone != 5) tone = m->tone;
        } else {
            out += "?";
        }
    }
    out.push_back(static_cast<char>('0' + tone));
    return out;
}

uint16_t SyllableTableBuilder::add(const std::u16string& syllable) {
    if (auto it = index_.find(syllable); it != index_.end()) return it->second;
    if (!isSyllableText(syllable)) throw FormatError("not a pinyin syllable");
    if (syllables_.size() >= 0xFFFF) throw FormatError("more than 65535 distinct syllables");
    const auto id = static_cast<uint16_t>(syllables_.size());
    syllables_.push_back(syllable);
    index_.emplace(syllable, id);
    return id;
}

void SyllableTableBuilder::writeTo(ContainerWriter& writer) const {
    std::vector<uint8_t> index;
    std::vector<uint8_t> text;
    uint32_t at = 0;
    for (const std::u16string& s : syllables_) {
        appendLe<uint32_t>(index, at);
        for (char16_t c : s) appendLe<uint16_t>(text, c);
        at += static_cast<uint32_t>(s.size());
    }
    appendLe<uint32_t>(index, at);
    writer.addSection(kSyllableIndexSection, 4, std::move(index));
    writer.addSection(kSyllableTextSection, 2, std::move(text));
}

SyllableTable::SyllableTable(const ContainerView& file) {
    const auto index = file.array<uint32_t>(kSyllableIndexSection);
    const auto text = file.array<uint16_t>(kSyllableTextSection);
    if (index.size() == 0) throw FormatError("syllable index section is empty");
    syllables_.reserve(index.size() - 1);
    for (size_t i = 0; i + 1 < index.size(); ++i) {
        const uint32_t begin = index.at(i);
        const uint32_t end = index.at(i + 1);
        if (begin > end || end > text.size()) {
            throw FormatError("syllable " + std::to_string(i) + " lies outside the syllable text");
        }
        Syllable s;
        for (uint32_t k = begin; k < end; ++k) s.text.push_back(static_cast<char16_t>(text.at(k)));
        if (!isSyllableText(s.text)) {
            throw FormatError("syllable " + std::to_string(i) + " is not pinyin");
        }
        s.tone = toneOf(s.text);
        syllables_.push_back(std::move(s));
    }
}

}  // namespace zphonetic::tagger
