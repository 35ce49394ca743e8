// SPDX-License-Identifier: MIT
#pragma once

// Reading and writing the text forms of the dictionaries: UTF-8 lines of tab-separated fields;
// empty lines and lines starting with '#' are comments.

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "Container.h"

namespace zphonetic::tagger {

// Calls `onLine` with the 1-based line number and the fields of every line that is not a comment.
void forEachLine(const std::string& text,
                 const std::function<void(size_t, const std::vector<std::string>&)>& onLine);

// "line N: message", for errors in a text source.
FormatError lineError(size_t lineNo, const std::string& message);

// Splits space-separated syllables; throws lineError when one is not pinyin or there are none.
std::vector<std::u16string> splitSyllables(size_t lineNo, const std::string& field);
std::string joinSyllables(const std::vector<std::u16string>& syllables);

}  // namespace zphonetic::tagger
