// SPDX-License-Identifier: MIT
#pragma once

// The annotated polyphone corpus (CPP): one sentence per line in dev.sent with the labelled
// character wrapped in U+2581 ("▁了▁"), its reading in tone numbers on the same line of dev.lb.

#include <cstddef>
#include <string>
#include <vector>

struct LabelledSentence {
    std::u16string text;  // what the add-on would pass: only U+4E00..U+9FA5, run together
    size_t target = 0;    // position of the labelled character in `text`
    std::string label;    // "le5", "lu:4"
    size_t line = 0;      // 1-based line in the corpus files
};

// Reads <dir>/dev.sent and <dir>/dev.lb; returns false (and says why in `error`) when they are
// missing or do not line up. Lines whose marked character is not kept by the filter are skipped.
bool readCorpus(const std::string& dir, std::vector<LabelledSentence>& out, std::string& error);
