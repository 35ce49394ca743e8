// SPDX-License-Identifier: MIT
#pragma once

// The teacher's own readings as the engine uses them: the words of the readings file, ready to
// be found in a text, and the tones chosen for 一 and 不; and the file they come from, read
// again whenever it changes.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "CharGroups.h"
#include "FileWatch.h"
#include "ReadingsStore.h"
#include "Syllables.h"

namespace zphonetic::tagger {

class OwnReadings {
public:
    // The words of `file` (its problems left out), and `tones`.
    OwnReadings(const ReadingsFile& file, Tones tones);

    bool hasWords() const { return !words_.empty(); }
    Tones tones() const { return tones_; }

    // The longest of the words that starts at text[at] and ends within text[0, n): its length,
    // with its syllables from *syllables on; 0 when none starts there.
    size_t match(const char16_t* text, size_t n, size_t at,
                 const Syllable* const** syllables) const {
        const char16_t c = text[at];
        if (!words_.has(c)) return 0;
        // Most places where a word's first character stands do not go on as any word does: the
        // first two characters of every word (or the one of a word of one) tell most apart
        // before the words are compared.
        const bool pair = at + 1 < n && test(pairs_, pairKey(c, text[at + 1]));
        return pair || test(singles_, c) ? find(text, n, at, syllables) : 0;
    }
    // The reading of `c` where it is a word of one character of its own, or nullptr.
    const Syllable* single(char16_t c) const;

private:
    struct Word {
        uint32_t text;       // where it starts in text_
        uint32_t syllables;  // where its syllables start in readings_
        uint32_t length;
    };
    size_t find(const char16_t* text, size_t n, size_t at, const Syllable* const** syllables) const;
    static uint16_t pairKey(char16_t first, char16_t second) {
        return static_cast<uint16_t>(first * 40503u + second);
    }
    static bool test(const std::vector<uint64_t>& bits, uint16_t k) {
        return (bits[k >> 6] >> (k & 63)) & 1;
    }
    static void set(std::vector<uint64_t>& bits, uint16_t k) {
        bits[k >> 6] |= uint64_t{1} << (k & 63);
    }

    Tones tones_;
    std::u16string text_;            // the words run together
    CharGroups<Word> words_;         // by first character, the longest first
    std::vector<uint64_t> pairs_;    // a bit for the pairKey() of each word's first two characters
    std::vector<uint64_t> singles_;  // a bit for each word of one character
    std::vector<Syllable> table_;    // each distinct syllable once
    std::vector<const Syllable*> readings_;
};

// The readings file at one path, as it is now.
class OwnReadingsSource {
public:
    // Hears, once for each version of the file read, what was skipped ("<path>: line 3 skipped:
    // ..."), or why the file was not read at all.
    using Report = std::function<void(const std::string&)>;

    explicit OwnReadingsSource(std::string path, Report report = {});

    // The readings as the file holds them now, with the tones of $ZPHONETIC_TONES where set,
    // else of the file; never null. The file is read again only when its stamp changed since the
    // last call, and its stamp is only looked at when the file may have changed (see FileWatch).
    std::shared_ptr<const OwnReadings> current();

private:
    std::string path_;
    Report report_;
    FileWatch watch_;
    bool read_ = false;
    FileStamp stamp_;
    ReadingsFile file_;
    std::shared_ptr<const OwnReadings> readings_;
};

}  // namespace zphonetic::tagger
