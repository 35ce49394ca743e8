// SPDX-License-Identifier: MIT
#pragma once

// Tiny dictionaries for the tests, written in the text forms and compiled by the real compiler
// functions, so every test exercises the same path as the build.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Dictionaries.h"

namespace tiny {

extern const char kChars[];
extern const char kWords[];
extern const char kRules[];

std::vector<uint8_t> charBytes();
std::vector<uint8_t> wordBytes();
std::vector<uint8_t> ruleBytes();
std::shared_ptr<const zphonetic::tagger::Dictionaries> dictionaries();

// Where section `id` of a dictionary file's bytes starts (0 when it has none), as its section
// table says: for tests that damage a section on purpose (the character index is section 3).
size_t sectionOffset(const std::vector<uint8_t>& bytes, uint32_t id);

// A fresh directory under the system's temporary directory, removed when destroyed.
class TempDir {
public:
    TempDir();
    ~TempDir();
    const std::string& path() const { return path_; }
    // Writes `bytes` to path()/name and returns the full path.
    std::string write(const std::string& name, const std::vector<uint8_t>& bytes) const;
    // Writes the three tiny dictionaries as Pinyin.dic, firrule.dic, secrule.dic.
    void writeTinyDictionaries() const;

private:
    std::string path_;
};

// An environment variable set (value non-null) or unset for as long as this object lives.
class ScopedVariable {
public:
    ScopedVariable(const char* name, const char* value);
    ~ScopedVariable();
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    const char* name_;
    bool had_ = false;
    std::string old_;
};

std::u16string u16(const char* utf8);
std::string u8(const std::u16string& utf16);

}  // namespace tiny
