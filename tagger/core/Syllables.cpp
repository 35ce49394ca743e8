// SPDX-License-Identifier: MIT
#include "Syllables.h"

#include <algorithm>
#include <array>

namespace zphonetic::tagger {
namespace {

struct ToneMark {
    char16_t marked;
    char16_t letter;
    uint8_t tone;
};

// Precomposed letters with tone marks, as NFC spells them.
constexpr ToneMark kToneMarks[] = {
    {u'ā', u'a', 1}, {u'á', u'a', 2}, {u'ǎ', u'a', 3}, {u'à', u'a', 4},  //
    {u'ē', u'e', 1}, {u'é', u'e', 2}, {u'ě', u'e', 3}, {u'è', u'e', 4},  //
    {u'ī', u'i', 1}, {u'í', u'i', 2}, {u'ǐ', u'i', 3}, {u'ì', u'i', 4},  //
    {u'ō', u'o', 1}, {u'ó', u'o', 2}, {u'ǒ', u'o', 3}, {u'ò', u'o', 4},  //
    {u'ū', u'u', 1}, {u'ú', u'u', 2}, {u'ǔ', u'u', 3}, {u'ù', u'u', 4},  //
    {u'ǖ', u'ü', 1}, {u'ǘ', u'ü', 2}, {u'ǚ', u'ü', 3}, {u'ǜ', u'ü', 4},  //
    {u'ḿ', u'm', 2}, {u'ń', u'n', 2}, {u'ň', u'n', 3}, {u'ǹ', u'n', 4},  //
    {u'ê', u'ê', 5}, {u'ế', u'ê', 2}, {u'ề', u'ê', 4},
};

// Most marked letters lie in Latin-1 and Latin Extended-A and -B: for those, where each stands
// in kToneMarks, plus one (0 for a letter that is not there). Syllables are read in bulk when a
// dictionary opens, so their letters are looked up this way rather than one mark after another.
constexpr char16_t kIndexedFrom = 0xE0;
constexpr char16_t kIndexedTo = 0x200;
constexpr std::array<uint8_t, kIndexedTo - kIndexedFrom> kMarkIndex = [] {
    std::array<uint8_t, kIndexedTo - kIndexedFrom> index{};
    for (size_t i = 0; i < std::size(kToneMarks); ++i) {
        const char16_t c = kToneMarks[i].marked;
        if (c >= kIndexedFrom && c < kIndexedTo) index[c - kIndexedFrom] = uint8_t(i + 1);
    }
    return index;
}();

const ToneMark* findMark(char16_t c) {
    if (c < kIndexedFrom) return nullptr;
    if (c < kIndexedTo) {
        const uint8_t at = kMarkIndex[c - kIndexedFrom];
        return at == 0 ? nullptr : &kToneMarks[at - 1];
    }
    for (const ToneMark& m : kToneMarks) {
        if (m.marked == c) return &m;
    }
    return nullptr;
}

}  // namespace

MarkedLetter unmarkLetter(char16_t c) {
    if (const ToneMark* m = findMark(c)) return {m->letter, m->tone};
    return {0, 0};
}

char16_t markLetter(char16_t letter, uint8_t tone) {
    for (const ToneMark& m : kToneMarks) {
        if (m.letter == letter && m.tone == tone) return m.marked;
    }
    return 0;
}

uint8_t toneOf(std::u16string_view syllable) {
    for (char16_t c : syllable) {
        if (c < 0x80 || c == u'ü') continue;
        if (const ToneMark* m = findMark(c); m != nullptr && m->tone != 5) return m->tone;
    }
    return 5;
}

Syllable makeSyllable(std::u16string_view text) {
    Syllable s;
    s.size = static_cast<uint8_t>(std::min(text.size(), kSyllableUnits));
    std::copy(text.begin(), text.begin() + s.size, s.units);
    s.tone = toneOf(text);
    return s;
}

bool isSyllableText(std::u16string_view syllable) {
    if (syllable.empty() || syllable.size() > kSyllableUnits) return false;
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
            if (m->letter == u'ü') {
                out += "u:";
            } else if (m->letter == u'ê') {
                out += "e^";
            } else {
                out.push_back(static_cast<char>(m->letter));
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
        // Read straight into a syllable's room; a longer one is no syllable text.
        const size_t length = end - begin;
        char16_t units[kSyllableUnits];
        if (length > kSyllableUnits || !text.copy(begin, length, units) ||
            !isSyllableText({units, length})) {
            throw FormatError("syllable " + std::to_string(i) + " is not pinyin");
        }
        syllables_.push_back(makeSyllable({units, length}));
    }
}

}  // namespace zphonetic::tagger
