// SPDX-License-Identifier: MIT
#include "Dictionaries.h"

namespace zphonetic::tagger {
namespace {

// Builds a view, prefixing any format error with the dictionary's name.
template <class View, class Storage>
View open(const Storage& storage) {
    try {
        return View(storage.data(), storage.size());
    } catch (const FormatError& e) {
        throw FormatError(storage.name + ": " + e.what());
    }
}

}  // namespace

Dictionaries::Storage Dictionaries::map(const std::string& path) {
    return Storage{path, std::make_unique<MappedFile>(path), {}};
}

Dictionaries::Dictionaries(const std::string& charPath, const std::string& wordPath,
                           const std::string& rulePath)
    : charStorage_(map(charPath)),
      wordStorage_(map(wordPath)),
      ruleStorage_(map(rulePath)),
      chars_(open<CharDictionary>(charStorage_)),
      words_(open<WordDictionary>(wordStorage_)),
      rules_(open<RuleDictionary>(ruleStorage_)) {}

Dictionaries::Dictionaries(std::vector<uint8_t> chars, std::vector<uint8_t> words,
                           std::vector<uint8_t> rules)
    : charStorage_{"Pinyin.dic", nullptr, std::move(chars)},
      wordStorage_{"firrule.dic", nullptr, std::move(words)},
      ruleStorage_{"secrule.dic", nullptr, std::move(rules)},
      chars_(open<CharDictionary>(charStorage_)),
      words_(open<WordDictionary>(wordStorage_)),
      rules_(open<RuleDictionary>(ruleStorage_)) {}

bool Dictionaries::damaged() const {
    return chars_.file().damaged() || words_.file().damaged() || rules_.file().damaged();
}

std::string Dictionaries::damage() const {
    for (const auto& [storage, file] :
         {std::pair<const Storage*, const ContainerView*>{&charStorage_, &chars_.file()},
          {&wordStorage_, &words_.file()},
          {&ruleStorage_, &rules_.file()}})
        if (file->damaged()) return storage->name + ": " + file->damage();
    return std::string();
}

}  // namespace zphonetic::tagger
