// SPDX-License-Identifier: MIT
#pragma once

// The context rules ("secrule.dic"): readings of polyphones that the word dictionary leaves open
// (a character that ends up as a word of its own), chosen by the characters around it and by the
// words the segmentation found; and the few readings of a word's character that its context
// overrides (东西 "east and west" before 走向, against 东西 "thing").
//
// Text form, tab-separated:
//   class<TAB>NUM<TAB>〇一二三四五六七八九十百千万亿零两     a named set of characters
//   rule<TAB>还<TAB>huán<TAB>_钱                           target, reading, pattern
//   rule<TAB>曾单<TAB>zēng shàn<TAB>_老师                   one rule per target, each its reading
// A pattern is the context around the target: characters, {CLASS} for any character of a class,
// "." for any character, "~" for a character equal to the one before it (慢慢, 高高兴兴), "@" for
// a character inside a word of two or more characters on the best path, "!" before a character
// for that character standing as a word of its own, "^" for the start and "$" for the end of the
// text. The target is "_" when the rule decides a character left a word of its own, "=" when it
// overrides the reading of a character inside a word. The first rule of a character whose
// pattern matches wins, so specific rules go before general ones.
//
// Sections besides the syllable table:
//   3  u32[k + 1]  start of each class's characters in section 4;   4  u16[] sorted characters
//   5  u32[k + 1]  start of each class's name in section 6;         6  u16[] names
//   7  u32[4 * r]  rules sorted by target, file order kept among equal targets: target << 16 |
//                  syllable, pattern start in section 8, pattern length, position of "_"
//   8  u32[]       pattern elements: kind << 16 | value (kinds below)

#include <cstdint>
#include <string>
#include <vector>

#include "CharGroups.h"
#include "Container.h"
#include "Syllables.h"

namespace zphonetic::tagger {

inline constexpr char kRuleMagic[] = "ZPYRULES";

struct RuleElement {
    enum Kind : uint16_t {
        kChar = 0,
        kClass = 1,
        kStart = 2,
        kEnd = 3,
        kTarget = 4,      // "_": a character left a word of its own
        kAny = 5,         // "."
        kRepeat = 6,      // "~": the same character as the one before it
        kInWord = 7,      // "@": a character inside a word of two or more characters
        kWordTarget = 8,  // "=": a character inside a word, whose reading the rule overrides
        kAloneChar = 9,   // "!" and a character: that character, standing as a word of its own
    };
    Kind kind = kChar;
    uint16_t value = 0;  // the character (kChar, kAloneChar), or the class index
};

struct RuleSet {
    struct Class {
        std::string name;
        std::u16string chars;  // sorted, unique
    };
    struct Rule {
        char16_t target = 0;
        std::u16string reading;
        std::vector<RuleElement> pattern;  // holds exactly one kTarget or kWordTarget
    };
    std::vector<Class> classes;
    std::vector<Rule> rules;
};

// Parses the text form; throws FormatError naming the line for a malformed line.
RuleSet parseRuleText(const std::string& text);
// Parses one more text form into `set`: its classes are known to it, its rules come after.
void appendRuleText(const std::string& text, RuleSet& set);
// Prints classes first, then rules grouped by target in their order (the compiled order).
std::string formatRuleText(const RuleSet& rules);
std::vector<uint8_t> compileRules(const RuleSet& rules);

// Which characters the best path puts inside a word of two or more, as the rules read it ("@",
// "!X"). Worked out along the path only as far as a rule asks: most rules never read it, and
// most texts have no rule that does.
class PathWords {
public:
    // `lengths[s]` is the length (at least 1) of the path's word starting at s, for every s the
    // path reaches from 0 within [0, length); `marks` has room for `length` marks, which this
    // writes. Both must outlive it.
    PathWords(const uint8_t* lengths, size_t length, uint8_t* marks)
        : lengths_(lengths), length_(length), marks_(marks) {}

    // True when character i < length lies inside a word of two or more characters.
    bool inWord(size_t i) {
        while (marked_ <= i) markNextWord();
        return marks_[i] != 0;
    }

private:
    void markNextWord();

    const uint8_t* lengths_;
    size_t length_;
    uint8_t* marks_;
    size_t marked_ = 0;  // marks_ is written for [0, marked_), a whole number of words
};

// A checked view of a rule dictionary in memory (does not own the bytes).
class RuleDictionary {
public:
    // Throws FormatError when the bytes are not an intact rule dictionary.
    RuleDictionary(const uint8_t* data, size_t size);

    // True when some rule has `c` as its target on its own ("_"), or inside a word ("=").
    // The engine asks hasWordRules() of every character inside a word, and few characters
    // have such rules: a filter of their low six bits, kept in a register, answers most.
    bool hasRules(char16_t c) const { return alone_.has(c); }
    bool hasWordRules(char16_t c) const {
        return ((wordTargetBits_ >> (c & 63)) & 1) != 0 && inWord_.has(c);
    }
    // The reading that the first matching rule gives text[at], or nullptr when none matches:
    // among the "_" rules, or with `inWord` among the "=" rules. inWord[i] is 1 where text[i]
    // lies inside a word of two or more characters on the best path, for i in [0, length).
    const Syllable* match(const char16_t* text, const uint8_t* inWord, size_t length, size_t at,
                          bool wordTarget) const;
    // The same, reading the words from the best path itself.
    const Syllable* match(const char16_t* text, PathWords& path, size_t length, size_t at,
                          bool wordTarget) const;

    RuleSet toRuleSet() const;
    // The file behind the view: whether what was read of it was intact (see ContainerView).
    const ContainerView& file() const { return file_; }
    // Every distinct syllable the file uses.
    const SyllableTable& syllables() const { return syllables_; }

private:
    // A rule made ready at opening: its pattern's elements other than the target, each placed
    // relative to the target and nearest to it first (the neighbours tell most rules apart);
    // "." only widens the span of characters the pattern needs inside the text.
    struct Check {
        int32_t offset;  // of the element's character from the target
        uint16_t kind;   // RuleElement::Kind, never "_", "=" or "."
        uint16_t value;
    };
    struct Rule {
        uint32_t firstCheck = 0;  // its checks are checks_[firstCheck, firstCheck + checkCount)
        uint32_t checkCount = 0;
        int32_t lowest = 0;  // offsets of the first and last characters it needs in the text
        int32_t highest = 0;
        uint16_t syllable = 0;
    };
    // The rules of one kind of target ("_" or "="), grouped by target in file order.
    using TargetIndex = CharGroups<Rule>;

    // Reads rule r of the file into a Rule and its checks; throws FormatError for a pattern
    // that compileRules() cannot have written.
    Rule prepare(size_t r);
    // `InWord` answers inWord(i): character i lies inside a word of two or more.
    template <class InWord>
    const Syllable* firstMatch(const char16_t* text, InWord& inWord, size_t length, size_t at,
                               bool wordTarget) const;
    bool inClass(uint16_t cls, char16_t c) const;

    ContainerView file_;
    SyllableTable syllables_;
    LeArray<uint32_t> classIndex_;
    LeArray<uint16_t> classChars_;
    LeArray<uint32_t> nameIndex_;
    LeArray<uint16_t> names_;
    LeArray<uint32_t> rules_;
    LeArray<uint32_t> elements_;
    // The classes copied out of the file: class k is classMembers_[classStarts_[k], [k + 1]).
    std::vector<uint32_t> classStarts_;
    std::vector<char16_t> classMembers_;
    std::vector<Check> checks_;
    TargetIndex alone_;
    TargetIndex inWord_;
    uint64_t wordTargetBits_ = 0;  // bit c & 63 of each target of an "=" rule
};

}  // namespace zphonetic::tagger
