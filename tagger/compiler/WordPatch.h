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

// Applies the patch to `words` and returns how many entries it changed or added. Throws
// FormatError naming the line for a malformed line, a word given twice, a word the source lacks
// given without a cost, and an entry that changes nothing (so the patch never carries dead lines).
size_t applyWordPatch(std::vector<WordEntry>& words, const std::string& patchText);

}  // namespace zphonetic::tagger
