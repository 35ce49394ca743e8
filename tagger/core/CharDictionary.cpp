// SPDX-License-Identifier: MIT
#include "CharDictionary.h"

#include "TextLines.h"
#include "Utf16.h"

namespace zphonetic::tagger {
namespace {

constexpr uint32_t kIndexSection = 3;
constexpr uint32_t kReadingSection = 4;
constexpr size_t kUnits = 0x10000;

}  // namespace

CharReadings parseCharText(const std::string& text) {
    CharReadings out;
    forEachLine(text, [&](size_t lineNo, const std::vector<std::string>& fields) {
        if (fields.size() != 2) throw lineError(lineNo, "expected a character and its readings");
        const std::u16string c = toUtf16(fields[0]);
        if (c.size() != 1)
            throw lineError(lineNo, "\"" + fields[0] + "\" is not one BMP character");
        std::vector<std::u16string> readings = splitSyllables(lineNo, fields[1]);
        if (!out.emplace(c[0], std::move(readings)).second) {
            throw lineError(lineNo, "\"" + fields[0] + "\" is listed twice");
        }
    });
    return out;
}

std::string formatCharText(const CharReadings& readings) {
    std::string out;
    for (const auto& [c, list] : readings) {
        out += toUtf8(std::u16string(1, c));
        out += '\t';
        out += joinSyllables(list);
        out += '\n';
    }
    return out;
}

std::vector<uint8_t> compileChars(const CharReadings& readings) {
    SyllableTableBuilder syllables;
    std::vector<uint8_t> index;
    std::vector<uint8_t> ids;
    uint32_t at = 0;
    auto next = readings.begin();
    for (size_t unit = 0; unit <= kUnits; ++unit) {
        appendLe<uint32_t>(index, at);
        if (unit == kUnits || next == readings.end() || next->first != unit) continue;
        for (const std::u16string& r : next->second) {
            appendLe<uint16_t>(ids, syllables.add(r));
            ++at;
        }
        ++next;
    }
    ContainerWriter writer(std::string_view(kCharMagic, 8));
    syllables.writeTo(writer);
    writer.addSection(kIndexSection, 4, std::move(index));
    writer.addSection(kReadingSection, 2, std::move(ids));
    return writer.finish();
}

CharDictionary::CharDictionary(const uint8_t* data, size_t size)
    : file_(data, size, std::string_view(kCharMagic, 8)),
      syllables_(file_),
      index_(file_.array<uint32_t>(kIndexSection)),
      ids_(file_.array<uint16_t>(kReadingSection)) {
    if (index_.size() != kUnits + 1) throw FormatError("character index has the wrong size");
}

uint32_t CharDictionary::start(uint32_t unit) const {
    // A start past the readings, or before the previous one, reads as "no readings" (clamped).
    const uint32_t s = index_.at(unit, 0);
    return s <= ids_.size() ? s : static_cast<uint32_t>(ids_.size());
}

CharReadings CharDictionary::toReadings() const {
    CharReadings out;
    for (uint32_t unit = 0; unit < kUnits; ++unit) {
        const auto c = static_cast<char16_t>(unit);
        for (size_t k = 0; k < count(c); ++k) {
            if (const Syllable* s = reading(c, k)) out[c].emplace_back(s->text());
        }
    }
    return out;
}

}  // namespace zphonetic::tagger
