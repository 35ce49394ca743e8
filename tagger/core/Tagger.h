// SPDX-License-Identifier: MIT
#pragma once

// The engine: readings of a text in context.
//   1. Segmentation: the path through the word graph (every dictionary word found in the text,
//      plus every character as a fallback) with the lowest total cost, i.e. the most probable.
//   2. Characters inside a word of two or more characters take the word's readings, neutral
//      tones and tone changes included.
//   3. A character left as a word of its own takes the first matching context rule, else its
//      reading as a word of its own, else its default reading. The rules see the characters
//      around it and which of them the path put inside longer words; a few rules override a
//      character inside a word where the context decides the word's reading.
//   4. The teacher's own readings: a word of theirs wherever it occurs takes their readings,
//      over everything above and below.
//   5. 一 and 不 on their own change tone by the next syllable, as taught in schools; with the
//      original tones chosen, every changed tone of theirs goes back to yī and bù (light tones
//      stay).

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Dictionaries.h"
#include "OwnReadings.h"

namespace zphonetic::tagger {

class Tagger {
public:
    // Without `own`, no words of the teacher's and the tones as taught.
    explicit Tagger(std::shared_ptr<const Dictionaries> dictionaries,
                    std::shared_ptr<const OwnReadings> own = nullptr);
    // The teacher's readings for the texts tagged from now on (null: none).
    void setOwnReadings(std::shared_ptr<const OwnReadings> own) { own_ = std::move(own); }

    // One reading per UTF-16 unit of text[0, length); nullptr where there is none (kana, Latin,
    // a surrogate). The result stays valid until the next call. Throws FormatError naming the
    // file and its bytes when a dictionary was found damaged (now or before): see Dictionaries.
    const std::vector<const Syllable*>& readings(const char16_t* text, size_t length);

    // After readings(): true when character i was left a word of its own and no context rule
    // decided it (its reading is the character's default, or a tone change).
    bool isOpen(size_t i) const { return i < alone_.size() && alone_[i] == 1; }

    // The answer of the tagging library: every unit, "/" and its reading; a text of exactly one
    // unit gets all that character's readings, default first (the teacher's, when that character
    // is a word of theirs), separated by single spaces.
    // Returns a NUL-terminated buffer from new[] that the caller frees with delete[], and its
    // length without the NUL in `answerLength`. Throws std::bad_alloc, and FormatError as
    // readings() does.
    char16_t* answer(const char16_t* text, size_t length, size_t& answerLength);

private:
    void refuseDamage() const;
    void segment(const char16_t* text, size_t n);
    // Characters k and after of the path's word [word, word + len) take the reading of the
    // first "=" rule that matches, where one does.
    void overrideInWord(const char16_t* text, size_t n, size_t word, size_t len, size_t k,
                        PathWords& path);
    void takeOwnReadings(const char16_t* text, size_t n);
    void changeTones(const char16_t* text, size_t n);
    void writeOriginalTones(const char16_t* text, size_t n);

    std::shared_ptr<const Dictionaries> dicts_;
    std::shared_ptr<const OwnReadings> own_;
    std::vector<uint32_t> cost_;       // cost of the best path from position i to the end
    std::vector<uint32_t> node_;       // word starting at i on that path (0 = a lone fallback)
    std::vector<uint8_t> length_;      // its length
    std::vector<uint8_t> inWord_;      // room for the marks of PathWords, written as the rules ask
    std::vector<uint8_t> alone_;       // 1: a word of its own; 2: that, settled by a rule;
                                       // 3: in a word of the teacher's (kOwn in the .cpp)
    std::vector<size_t> toneChanges_;  // where 一 or 不 may change tone
    std::vector<const Syllable*> readings_;
};

}  // namespace zphonetic::tagger
