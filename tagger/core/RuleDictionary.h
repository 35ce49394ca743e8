// SPDX-License-Identifier: MIT
#pragma once

// The context rules ("secrule.dic"): readings of polyphones that the word dictionary leaves open
// (a character that ends up as a word of its own), chosen by the characters around it.
//
// Text form, tab-separated:
//   class<TAB>NUM<TAB>〇一二三四五六七八九十百千万亿零两     a named set of characters
//   rule<TAB>还<TAB>huán<TAB>_钱                           target, reading, pattern
// A pattern is the context around the target "_": characters, {CLASS} for any character of a
// class, "^" for the start and "$" for the end of the text. The first rule of a character whose
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

#include "Container.h"
#include "Syllables.h"

namespace zphonetic::tagger {

inline constexpr char kRuleMagic[] = "ZPYRULES";

struct RuleElement {
    enum Kind : uint16_t { kChar = 0, kClass = 1, kStart = 2, kEnd = 3, kTarget = 4 };
    Kind kind = kChar;
    uint16_t value = 0;  // the character, or the class index
};

struct RuleSet {
    struct Class {
        std::string name;
        std::u16string chars;  // sorted, unique
    };
    struct Rule {
        char16_t target = 0;
        std::u16string reading;
        std::vector<RuleElement> pattern;  // holds exactly one kTarget
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

// A checked view of a rule dictionary in memory (does not own the bytes).
class RuleDictionary {
public:
    // Throws FormatError when the bytes are not an intact rule dictionary.
    RuleDictionary(const uint8_t* data, size_t size);

    // True when some rule has `c` as its target.
    bool hasRules(char16_t c) const { return (targets_[c >> 6] >> (c & 63)) & 1; }
    // The reading that the first matching rule gives text[at], or nullptr when none matches.
    const Syllable* match(const char16_t* text, size_t length, size_t at) const;

    RuleSet toRuleSet() const;

private:
    bool matches(size_t rule, const char16_t* text, size_t length, size_t at) const;
    bool inClass(uint16_t cls, char16_t c) const;

    ContainerView file_;
    SyllableTable syllables_;
    LeArray<uint32_t> classIndex_;
    LeArray<uint16_t> classChars_;
    LeArray<uint32_t> nameIndex_;
    LeArray<uint16_t> names_;
    LeArray<uint32_t> rules_;
    LeArray<uint32_t> elements_;
    uint64_t targets_[0x10000 / 64] = {};
};

}  // namespace zphonetic::tagger
