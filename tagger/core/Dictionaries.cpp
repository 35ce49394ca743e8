// SPDX-License-Identifier: MIT
#include "Dictionaries.h"

namespace zphonetic::tagger {
namespace {

// Builds a view, prefixing any format error with the file's path.
template <class View>
View open(const MappedFile& file, const std::string& path) {
    try {
        return View(file.data(), file.size());
    } catch (const FormatError& e) {
        throw FormatError(path + ": " + e.what());
    }
}

}  // namespace

Dictionaries::Dictionaries(const std::string& charPath, const std::string& wordPath,
                           const std::string& rulePath)
    : charFile_(charPath),
      wordFile_(wordPath),
      ruleFile_(rulePath),
      chars_(open<CharDictionary>(charFile_, charPath)),
      words_(open<WordDictionary>(wordFile_, wordPath)),
      rules_(open<RuleDictionary>(ruleFile_, rulePath)) {}

}  // namespace zphonetic::tagger
