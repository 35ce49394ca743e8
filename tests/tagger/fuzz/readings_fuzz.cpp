// SPDX-License-Identifier: MIT
// Fuzzes the teacher's readings file: any bytes are read without a crash and given back
// unchanged; every word read has one well-spelt reading per character and takes them in the
// engine (the tests' tiny dictionaries); a word removed and set again leaves every other word of
// the file as it was.
//
// Input: the bytes of a readings file.
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include "OwnReadings.h"
#include "SyllableInput.h"
#include "Tagger.h"
#include "TinyDictionaries.h"

namespace {

using namespace zphonetic::tagger;

void check(bool condition) {
    if (!condition) __builtin_trap();
}

std::map<std::u16string, std::vector<std::u16string>> wordsOf(const ReadingsFile& file) {
    std::map<std::u16string, std::vector<std::u16string>> out;
    for (const OwnWord& w : file.words()) out.emplace(w.word, w.readings);
    return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const auto dictionaries = tiny::dictionaries();
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    ReadingsFile file(bytes);
    check(file.text() == bytes);
    for (const OwnWord& w : file.words()) {
        check(!w.word.empty() && w.word.size() <= kMaxOwnWordLength);
        check(w.readings.size() == w.word.size());
        for (const std::u16string& r : w.readings) check(spellSyllable(r) == r);
        check(file.find(w.word) == &w);
    }
    if (file.words().empty()) return 0;

    // The first word, tagged on its own, comes out with its readings.
    const OwnWord first = file.words().front();
    Tagger tagger(dictionaries, std::make_shared<const OwnReadings>(file, file.tones()));
    const std::vector<const Syllable*>& readings =
        tagger.readings(first.word.data(), first.word.size());
    for (size_t k = 0; k < first.word.size(); ++k) check(readings[k]->text() == first.readings[k]);

    // Removed and set again: every word of the file reads as it did, from the file's new bytes.
    const auto before = wordsOf(file);
    const Tones tones = file.tones();
    check(file.remove(first.word));
    check(file.find(first.word) == nullptr);
    check(!file.set(first.word, first.readings));
    const ReadingsFile reread(file.text());
    check(wordsOf(reread) == before);
    check(reread.tones() == tones);
    return 0;
}
