// SPDX-License-Identifier: MIT
#pragma once

// Readings of the word dictionary set by hand on top of the packaged source: the neutral tones
// of the policy in tagger/README.md and the few words the source spells otherwise than school
// books do. Text form, one word per line:   东西<TAB>dōng xi            (readings replaced)
//                                           天哪<TAB>tiān na<TAB>600    (a word added, with a cost)

#include <string>
#include <vector>

#include "WordDictionary.h"

namespace zphonetic::tagger {

// Prints the fused 儿 of the source's words as books that put a reading over every character
// print it: a 儿 after a word's first character that the source reads light ("er") becomes "r"
// (一会儿 yí huì r, 哪儿 nǎ r, 哥儿们 gē r men), while a 儿 read ér stays a syllable of its own
// (女儿 nǚ ér, 儿子 ér zi). Runs on the packaged source before the patch, which sets the few
// words whose light 儿 is a syllable all the same (托儿所 tuō ér suǒ). Returns how many words
// changed.
size_t fuseErhua(std::vector<WordEntry>& words);

// Applies the patch to `words` and returns how many entries it changed or added. Throws
// FormatError naming the line for a malformed line, a word given twice, a word the source lacks
// given without a cost, and an entry that changes nothing (so the patch never carries dead lines).
size_t applyWordPatch(std::vector<WordEntry>& words, const std::string& patchText);

}  // namespace zphonetic::tagger
