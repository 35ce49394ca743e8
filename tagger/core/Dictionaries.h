// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "CharDictionary.h"
#include "MappedFile.h"
#include "RuleDictionary.h"
#include "WordDictionary.h"

namespace zphonetic::tagger {

// The three dictionary files, mapped and checked, for as long as this object lives. Immutable
// once built, so any number of threads may read it.
class Dictionaries {
public:
    // Throws FormatError naming the file and what is wrong with it.
    Dictionaries(const std::string& charPath, const std::string& wordPath,
                 const std::string& rulePath);

    const CharDictionary& chars() const { return chars_; }
    const WordDictionary& words() const { return words_; }
    const RuleDictionary& rules() const { return rules_; }

private:
    MappedFile charFile_;
    MappedFile wordFile_;
    MappedFile ruleFile_;
    CharDictionary chars_;
    WordDictionary words_;
    RuleDictionary rules_;
};

}  // namespace zphonetic::tagger
