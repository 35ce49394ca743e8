// SPDX-License-Identifier: MIT
#include "ReadingsFile.h"

#include <unordered_map>

#include "SyllableInput.h"
#include "TextLines.h"
#include "Utf16.h"

namespace zphonetic::tagger {
namespace {

constexpr std::u16string_view kTonesKey = u"tones";
constexpr std::string_view kBom = "\xEF\xBB\xBF";

// What a file written anew starts with: enough for a teacher who opens it in an editor.
constexpr const char* kNewFileComment[] = {
    "# Readings of your own: a word of Chinese characters, then the reading of each of them.",
    "#   曾老师 zēng lǎo shī",
    "# \"tones original\" writes 一 and 不 as dictionaries do (一个 yī gè, 不是 bù shì);",
    "# \"tones taught\" (the default) as first-grade books do (一个 yí gè, 不是 bú shì).",
};

bool isSpace(char16_t c) {
    return c == u' ' || c == u'\t' || c == u'\u3000' || c == u'\u00A0';
}

bool isChineseCharacter(char16_t c) {
    return (c >= 0x3400 && c <= 0x4DBF) || (c >= 0x4E00 && c <= 0x9FFF) ||
           (c >= 0xF900 && c <= 0xFAFF) || c == 0x3007;
}

std::vector<std::u16string> splitFields(std::u16string_view line) {
    std::vector<std::u16string> fields;
    fields.reserve(8);  // a word and its readings, most often
    size_t i = 0;
    while (i < line.size()) {
        while (i < line.size() && isSpace(line[i])) ++i;
        const size_t start = i;
        while (i < line.size() && !isSpace(line[i])) ++i;
        if (i > start) fields.emplace_back(line.substr(start, i - start));
    }
    return fields;
}

std::string plural(size_t n, const char* one, const char* many) {
    return std::to_string(n) + " " + (n == 1 ? one : many);
}

// Whether text starting with these bytes is taken for UTF-16: it starts with a UTF-16 byte order
// mark, which no UTF-8 text can start with.
bool startsAsUtf16(std::string_view bytes) {
    return bytes.size() >= 2 && ((bytes[0] == '\xFF' && bytes[1] == '\xFE') ||
                                 (bytes[0] == '\xFE' && bytes[1] == '\xFF'));
}

ReadingsProblem problem(ReadingsProblem::Kind kind, std::u16string_view subject = {}) {
    ReadingsProblem p;
    p.kind = kind;
    p.subject = toUtf8(subject);
    return p;
}

}  // namespace

std::optional<Tones> parseTones(std::string_view name) {
    if (name == "taught") return Tones::Taught;
    if (name == "original") return Tones::Original;
    return std::nullopt;
}

const char* tonesName(Tones tones) {
    return tones == Tones::Original ? "original" : "taught";
}

std::string ReadingsProblem::what() const {
    switch (kind) {
        case Kind::Utf16:
            return "the file is UTF-16 text, not UTF-8 (save it as UTF-8)";
        case Kind::NotUtf8:
            return "not UTF-8 text (save the file as UTF-8)";
        case Kind::NotChinese:
            return "\"" + subject + "\" is not a word of Chinese characters";
        case Kind::TooLong:
            return "\"" + subject + "\" is longer than " + std::to_string(kMaxOwnWordLength) +
                   " characters";
        case Kind::NoReadings:
            return subject + " has no readings";
        case Kind::WrongCount:
            return subject + " has " + plural(expected, "character", "characters") + " but " +
                   plural(count, "reading", "readings");
        case Kind::NotPinyin:
            return "\"" + subject + "\" is not a pinyin syllable";
        case Kind::Repeated:
            return subject + " is already on line " + std::to_string(expected);
        case Kind::BadTones:
            return std::string("tones must be \"taught\" or \"original\"") +
                   (subject.empty() ? "" : ", not \"" + subject + "\"");
        case Kind::RepeatedTones:
            return "the tones are already set on line " + std::to_string(expected);
    }
    return {};
}

std::string ReadingsProblem::message() const {
    return line == 0 ? what() : "line " + std::to_string(line) + ": " + what();
}

ReadingsFile::ReadingsFile(std::string_view bytes) {
    // A file saved as "Unicode" by some editors: its lines cannot even be told apart as UTF-8.
    utf16_ = startsAsUtf16(bytes);
    // The mark some editors put first belongs to the file, not to its first line: it stays first
    // whatever happens to that line.
    bom_ = bytes.substr(0, kBom.size()) == kBom;
    if (bom_) bytes.remove_prefix(kBom.size());
    size_t start = 0;
    while (start < bytes.size()) {
        size_t end = bytes.find('\n', start);
        if (end == std::string_view::npos) end = bytes.size();
        lines_.emplace_back(bytes.substr(start, end - start));
        start = end + 1;
    }
    lastEnded_ = bytes.empty() || bytes.back() == '\n';
    parse();
}

std::optional<ReadingsProblem> ReadingsFile::check(std::u16string_view word,
                                                   const std::vector<std::u16string>& typed,
                                                   OwnWord* entry) {
    using Kind = ReadingsProblem::Kind;
    for (char16_t c : word) {
        if (!isChineseCharacter(c)) return problem(Kind::NotChinese, word);
    }
    if (word.empty()) return problem(Kind::NotChinese, word);
    if (word.size() > kMaxOwnWordLength) return problem(Kind::TooLong, word);
    if (typed.empty()) return problem(Kind::NoReadings, word);
    if (typed.size() != word.size()) {
        ReadingsProblem p = problem(Kind::WrongCount, word);
        p.count = typed.size();
        p.expected = word.size();
        return p;
    }
    std::vector<std::u16string> readings;
    readings.reserve(typed.size());
    for (const std::u16string& t : typed) {
        std::optional<std::u16string> spelt = spellSyllable(t);
        if (!spelt) return problem(Kind::NotPinyin, t);
        readings.push_back(std::move(*spelt));
    }
    if (entry != nullptr) *entry = OwnWord{std::u16string(word), std::move(readings), 0};
    return std::nullopt;
}

void ReadingsFile::parse() {
    using Kind = ReadingsProblem::Kind;
    keys_.assign(lines_.size(), std::u16string());
    words_.clear();
    problems_.clear();
    tones_ = Tones::Taught;
    if (utf16_) {
        problems_.push_back(problem(Kind::Utf16));
        return;
    }
    words_.reserve(lines_.size());
    std::unordered_map<std::u16string, size_t> seen;  // word -> its first line
    seen.reserve(lines_.size());
    size_t tonesLine = 0;
    for (size_t k = 0; k < lines_.size(); ++k) {
        const size_t lineNo = k + 1;
        std::string_view raw = lines_[k];
        if (!raw.empty() && raw.back() == '\r') raw.remove_suffix(1);
        const auto report = [&](ReadingsProblem p) {
            p.line = lineNo;
            problems_.push_back(std::move(p));
        };
        if (raw.find('\0') != std::string_view::npos || !isUtf8(raw)) {
            report(problem(Kind::NotUtf8));
            continue;
        }
        std::vector<std::u16string> fields = splitFields(toUtf16(raw));
        if (fields.empty() || fields[0][0] == u'#') continue;
        keys_[k] = fields[0];
        if (fields[0] == kTonesKey) {
            std::string value;
            for (size_t f = 1; f < fields.size(); ++f)
                value += (f > 1 ? " " : "") + toUtf8(fields[f]);
            const std::optional<Tones> tones =
                fields.size() == 2 ? parseTones(value) : std::nullopt;
            if (!tones) {
                ReadingsProblem p = problem(Kind::BadTones);
                p.subject = value;
                report(std::move(p));
            } else if (tonesLine != 0) {
                ReadingsProblem p = problem(Kind::RepeatedTones);
                p.expected = tonesLine;
                report(std::move(p));
            } else {
                tonesLine = lineNo;
                tones_ = *tones;
            }
            continue;
        }
        OwnWord entry;
        const std::vector<std::u16string> typed(fields.begin() + 1, fields.end());
        if (std::optional<ReadingsProblem> p = check(fields[0], typed, &entry)) {
            report(std::move(*p));
            continue;
        }
        if (const auto it = seen.find(entry.word); it != seen.end()) {
            ReadingsProblem p = problem(Kind::Repeated, entry.word);
            p.expected = it->second;
            report(std::move(p));
            continue;
        }
        seen.emplace(entry.word, lineNo);
        entry.line = lineNo;
        words_.push_back(std::move(entry));
    }
}

const OwnWord* ReadingsFile::find(std::u16string_view word) const {
    for (const OwnWord& w : words_) {
        if (w.word == word) return &w;
    }
    return nullptr;
}

std::string ReadingsFile::line(size_t line) const {
    if (line == 0 || line > lines_.size()) return {};
    std::string text = lines_[line - 1];
    if (!text.empty() && text.back() == '\r') text.pop_back();
    return text;
}

std::string ReadingsFile::text() const {
    std::string out(bom_ ? kBom : std::string_view());
    for (size_t k = 0; k < lines_.size(); ++k) {
        if (k > 0) out += '\n';
        out += lines_[k];
    }
    if (!lines_.empty() && lastEnded_) out += '\n';
    return out;
}

size_t ReadingsFile::findKey(std::u16string_view key) const {
    for (size_t k = 0; k < keys_.size(); ++k) {
        if (keys_[k] == key) return k;
    }
    return std::u16string_view::npos;
}

void ReadingsFile::removeKey(std::u16string_view key, size_t keep) {
    for (size_t k = lines_.size(); k-- > 0;) {
        if (k != keep && keys_[k] == key) {
            lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(k));
            keys_.erase(keys_.begin() + static_cast<std::ptrdiff_t>(k));
        }
    }
}

std::string ReadingsFile::ended(std::string line) const {
    // Lines written anew end as the file's first line does.
    if (!lines_.empty() && !lines_[0].empty() && lines_[0].back() == '\r') line += '\r';
    return line;
}

void ReadingsFile::keepFirstLineAsRead() {
    // A line after the first may start with what marks the whole file when it starts it: a
    // UTF-16 mark (no UTF-8 line can start so: the line is a problem) or the UTF-8 byte order
    // mark (then its first field is no word). Once the lines before it are removed, the file
    // would read otherwise: as UTF-16 without a word, or with that line's word. An empty line,
    // which says nothing, stays before it instead.
    if (!bom_ && !lines_.empty() &&
        (startsAsUtf16(lines_[0]) || std::string_view(lines_[0]).substr(0, kBom.size()) == kBom)) {
        lines_.insert(lines_.begin(), ended(std::string()));
        keys_.insert(keys_.begin(), std::u16string());
    }
}

void ReadingsFile::startNewFile() {
    if (!lines_.empty()) return;
    for (const char* comment : kNewFileComment) {
        lines_.emplace_back(comment);
        keys_.emplace_back();
    }
    lastEnded_ = true;
}

std::optional<ReadingsProblem> ReadingsFile::set(std::u16string_view word,
                                                 const std::vector<std::u16string>& typed) {
    const size_t at = findKey(word);
    if (at != std::u16string_view::npos) return replaceLine(at + 1, word, typed);
    if (utf16_) return problems_.front();
    OwnWord entry;
    if (std::optional<ReadingsProblem> p = check(word, typed, &entry)) return p;
    startNewFile();
    // A last line without its end gets one, so the new line is a line of its own.
    lastEnded_ = true;
    lines_.push_back(ended(toUtf8(entry.word) + " " + joinSyllables(entry.readings)));
    parse();
    return std::nullopt;
}

std::optional<ReadingsProblem> ReadingsFile::replaceLine(size_t line, std::u16string_view word,
                                                         const std::vector<std::u16string>& typed) {
    if (line == 0 || line > lines_.size()) return set(word, typed);
    if (utf16_) return problems_.front();
    OwnWord entry;
    if (std::optional<ReadingsProblem> p = check(word, typed, &entry)) return p;
    lines_[line - 1] = ended(toUtf8(entry.word) + " " + joinSyllables(entry.readings));
    keys_[line - 1] = entry.word;
    removeKey(entry.word, line - 1);
    keepFirstLineAsRead();
    parse();
    return std::nullopt;
}

bool ReadingsFile::remove(std::u16string_view word) {
    if (utf16_ || findKey(word) == std::u16string_view::npos) return false;
    removeKey(word, std::u16string_view::npos);
    keepFirstLineAsRead();
    parse();
    return true;
}

bool ReadingsFile::removeLine(size_t line) {
    if (utf16_ || line == 0 || line > lines_.size()) return false;
    lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(line - 1));
    keepFirstLineAsRead();
    parse();
    return true;
}

bool ReadingsFile::setTones(Tones tones) {
    if (utf16_) return false;
    const std::string text = ended(std::string("tones ") + tonesName(tones));
    if (const size_t found = findKey(kTonesKey); found != std::u16string_view::npos) {
        lines_[found] = text;
        removeKey(kTonesKey, found);
        keepFirstLineAsRead();
    } else {
        startNewFile();
        // After the comments at the top, where a reader looks for a setting.
        size_t at = 0;
        while (at < lines_.size() && keys_[at].empty()) ++at;
        lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(at), text);
        if (at == lines_.size() - 1) lastEnded_ = true;
    }
    parse();
    return true;
}

}  // namespace zphonetic::tagger
