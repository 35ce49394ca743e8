// SPDX-License-Identifier: MIT
#pragma once

// The teacher's own readings file as text: what each line says, what is wrong with the lines
// that say nothing usable, and edits that keep every other line as it was written.
//
// The file is UTF-8 text, one entry a line; empty lines and lines starting with "#" are
// comments. Fields are separated by spaces or tabs (ideographic and no-break spaces too):
//
//     # readings of my own
//     曾老师 zēng lǎo shī     a word of Chinese characters, then the reading of each of them,
//     还 huán                 as spellSyllable() takes them ("zeng1 lao3 shi1" as well)
//     tones original          how 一 and 不 are written: "taught" (the default: the changed
//                             tones first-grade books print, 一个 yí gè, 不是 bú shì) or
//                             "original" (as dictionaries write them, 一个 yī gè, 不是 bù shì)
//
// A line that is neither is a problem: it is skipped and the other lines still count. A word
// given again, or the tones set again, is such a problem too: the first line counts.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zphonetic::tagger {

enum class Tones : uint8_t { Taught, Original };

// "taught" and "original"; nothing for any other name.
std::optional<Tones> parseTones(std::string_view name);
const char* tonesName(Tones tones);

// The longest word the file may give.
constexpr size_t kMaxOwnWordLength = 32;

struct OwnWord {
    std::u16string word;
    std::vector<std::u16string> readings;  // one per character, spelt as the dictionaries spell
    size_t line = 0;                       // from 1
};

struct ReadingsProblem {
    enum class Kind : uint8_t {
        Utf16,          // the whole file is UTF-16 (line 0): nothing in it is read
        NotUtf8,        // the line is not UTF-8 text
        NotChinese,     // subject: the first field, which is no word of Chinese characters
        TooLong,        // subject: the word, longer than kMaxOwnWordLength characters
        NoReadings,     // subject: the word, with nothing after it
        WrongCount,     // subject: the word; count: its readings; expected: its characters
        NotPinyin,      // subject: the reading that is no pinyin syllable
        Repeated,       // subject: the word; expected: the line that gives it first
        BadTones,       // subject: what follows "tones" ("" when nothing does)
        RepeatedTones,  // expected: the line that sets the tones first
    };
    Kind kind = Kind::NotUtf8;
    size_t line = 0;  // from 1; 0 for the whole file
    std::string subject;
    size_t count = 0;
    size_t expected = 0;

    // What is wrong: "曾老师 has 3 characters but 2 readings".
    std::string what() const;
    // The same after its line: "line 4: 曾老师 has 3 characters but 2 readings".
    std::string message() const;
};

class ReadingsFile {
public:
    // An empty file (as a missing one reads).
    ReadingsFile() = default;
    // The file with these bytes. Never throws for what the bytes hold: every line that says
    // nothing usable is a problem().
    explicit ReadingsFile(std::string_view bytes);

    // The words, in the order of the file (a word given again only once).
    const std::vector<OwnWord>& words() const { return words_; }
    const std::vector<ReadingsProblem>& problems() const { return problems_; }
    Tones tones() const { return tones_; }
    // True for a UTF-16 file: nothing in it is read, and it cannot be edited.
    bool isUtf16() const { return utf16_; }

    // The entry for `word`, or nullptr.
    const OwnWord* find(std::u16string_view word) const;
    // Line `line` (from 1) as written, without its end; "" for a line the file does not have.
    std::string line(size_t line) const;
    // The file's bytes, with the edits made. An unedited file gives back its bytes.
    std::string text() const;

    // `word` with the readings `typed` (one per character, as spellSyllable() takes them), as a
    // line of the file would be checked: nothing, with the entry spelt in *entry (line 0), or the
    // problem (line 0).
    static std::optional<ReadingsProblem> check(std::u16string_view word,
                                                const std::vector<std::u16string>& typed,
                                                OwnWord* entry);

    // Edits. Each is checked as check() checks it and changes nothing when that finds a
    // problem, which it returns; a UTF-16 file is never edited (its problem is returned). Lines
    // written anew are spelt as the dictionaries spell ("zeng1" is written "zēng"), end as the
    // file's first line ends, and come after a short comment saying what the file holds when
    // the file had no lines.
    //
    // The entry for `word`: on the first line that starts with `word` (a line with a problem
    // included), or on a new line at the end; other lines starting with `word` are removed.
    std::optional<ReadingsProblem> set(std::u16string_view word,
                                       const std::vector<std::u16string>& typed);
    // Line `line` (from 1) made the entry for `word`; other lines starting with `word` are
    // removed. For a line the file does not have, as set().
    std::optional<ReadingsProblem> replaceLine(size_t line, std::u16string_view word,
                                               const std::vector<std::u16string>& typed);
    // Removes every line that starts with `word`; false when there is none (or the file is
    // UTF-16).
    bool remove(std::u16string_view word);
    // Removes line `line` (from 1); false when the file has no such line (or is UTF-16).
    bool removeLine(size_t line);
    // The tones line set to `tones`, where the first tones line is, or after the comments at the
    // top; other tones lines are removed. False for a UTF-16 file.
    bool setTones(Tones tones);

private:
    void parse();
    // The index of the first line whose first field is `key`, or npos.
    size_t findKey(std::u16string_view key) const;
    // Removes every line whose first field is `key` but the line at index `keep`.
    void removeKey(std::u16string_view key, size_t keep);
    // Puts an empty line first when the first line starts with what would mark the whole file.
    void keepFirstLineAsRead();
    // Adds the comment a new file starts with, when there are no lines.
    void startNewFile();
    // `line` with the end the file's first line has ("\r" kept in lines_).
    std::string ended(std::string line) const;

    std::vector<std::string> lines_;  // as written, each without its "\n" (with a "\r")
    bool lastEnded_ = true;           // whether the last line has its "\n"
    bool bom_ = false;                // whether the file starts with a byte order mark
    bool utf16_ = false;
    std::vector<std::u16string> keys_;  // the first field of each line; "" for none
    std::vector<OwnWord> words_;
    std::vector<ReadingsProblem> problems_;
    Tones tones_ = Tones::Taught;
};

}  // namespace zphonetic::tagger
