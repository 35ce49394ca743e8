// SPDX-License-Identifier: MIT
#pragma once

// Readers of the packaged sources the dictionaries are compiled from.

#include <string>
#include <vector>

#include "CharDictionary.h"
#include "WordDictionary.h"

namespace zphonetic::tagger {

// The whole file; throws FormatError("<path>: <reason>") when it cannot be read.
std::string readFile(const std::string& path);
// The whole bzip2-compressed file, decompressed.
std::string readBzip2File(const std::string& path);

// Character readings from the Go map of pinyin-data (entries `0x884C: "xíng,háng",`), keeping
// only BMP characters and readings spelt with precomposed letters. `dropped` counts the others.
CharReadings parsePinyinData(const std::string& goSource, size_t& dropped);

// Keeps the readings that the Unihan readings file (kXHC1983, kTGHZ2013, kMandarin,
// kHanyuPinlu) knows as modern, in their order. A character Unihan has no modern reading for keeps
// its list; one whose readings are all unknown there keeps its first. Returns how many went.
size_t keepModernReadings(CharReadings& readings, const std::string& unihanReadings);

// Words of a pinyin-pro-data JSON file ({"word": ["reading reading", frequency], …}); the cost
// of a word is -64 ln(frequency / sum of all frequencies), clamped to 0..kMaxWordCost. Entries
// whose readings do not match their characters are counted in `dropped`.
std::vector<WordEntry> parsePinyinProJson(const std::string& json, size_t& dropped);

}  // namespace zphonetic::tagger
