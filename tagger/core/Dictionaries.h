// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "CharDictionary.h"
#include "MappedFile.h"
#include "RuleDictionary.h"
#include "WordDictionary.h"

namespace zphonetic::tagger {

// The three dictionaries, checked, for as long as this object lives. Immutable once built (but
// for the record of which blocks of their data were checked), so any number of threads may read
// it.
class Dictionaries {
public:
    // Maps the three files. Throws FormatError naming the file and what is wrong with it.
    Dictionaries(const std::string& charPath, const std::string& wordPath,
                 const std::string& rulePath);
    // Takes the three files' bytes (as compile*() makes them). Throws FormatError naming the
    // dictionary ("Pinyin.dic", "firrule.dic", "secrule.dic") and what is wrong with it.
    Dictionaries(std::vector<uint8_t> chars, std::vector<uint8_t> words,
                 std::vector<uint8_t> rules);

    const CharDictionary& chars() const { return chars_; }
    const WordDictionary& words() const { return words_; }
    const RuleDictionary& rules() const { return rules_; }

    // Whether a block of data read from one of the files so far did not match its sum, and
    // which, e.g. "firrule.dic: bytes 4136..8231 (block 1) do not match their checksum" ("" when
    // none). Once damaged, a file stays so.
    bool damaged() const;
    std::string damage() const;

private:
    // The bytes of one dictionary: a mapped file or a buffer.
    struct Storage {
        std::string name;
        std::unique_ptr<MappedFile> file;
        std::vector<uint8_t> bytes;
        const uint8_t* data() const { return file ? file->data() : bytes.data(); }
        size_t size() const { return file ? file->size() : bytes.size(); }
    };
    static Storage map(const std::string& path);

    Storage charStorage_;
    Storage wordStorage_;
    Storage ruleStorage_;
    CharDictionary chars_;
    WordDictionary words_;
    RuleDictionary rules_;
};

}  // namespace zphonetic::tagger
