// SPDX-License-Identifier: MIT
// The yardstick for the tagging library's speed: the same C ABI, answered with one hash lookup
// per character (the character's default reading), and the answer built the same way. Whatever
// the machine's load, the library's speed is judged relative to this one's, in the same process.
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <unordered_map>

#include "CharDictionary.h"
#include "MappedFile.h"
#include "PinyinTagger.h"
#include "Utf16.h"

using namespace zphonetic::tagger;

namespace {

using Table = std::unordered_map<char16_t, std::u16string>;

std::mutex mutex;
std::shared_ptr<const Table> table;

struct Reference {
    std::shared_ptr<const Table> table;
    std::vector<const std::u16string*> found;
};

}  // namespace

int LoadPinYinLibrary(void*) {
    return 0;
}

int OpenDictionary(const char16_t* pinyinDic, const char16_t*, const char16_t*) {
    try {
        const MappedFile file(toUtf8(pinyinDic));
        const CharDictionary chars(file.data(), file.size());
        auto made = std::make_shared<Table>();
        for (uint32_t c = 0; c < 0x10000; ++c) {
            if (const Syllable* s = chars.reading(static_cast<char16_t>(c), 0)) {
                made->emplace(static_cast<char16_t>(c), s->text());
            }
        }
        std::lock_guard<std::mutex> lock(mutex);
        table = std::move(made);
        return 0;
    } catch (...) {
        return PINYIN_TAGGER_E_DICTIONARY;
    }
}

int CloseDictionary() {
    std::lock_guard<std::mutex> lock(mutex);
    table.reset();
    return 0;
}

int GetPinyinObject(void** tagger) {
    std::lock_guard<std::mutex> lock(mutex);
    if (!table) return PINYIN_TAGGER_E_NOT_OPEN;
    *tagger = new (std::nothrow) Reference{table, {}};
    return *tagger != nullptr ? 0 : PINYIN_TAGGER_E_MEMORY;
}

int PinyinTagSen(void* tagger, const char16_t* text, char16_t** answer, int32_t* answerLength) {
    auto* self = static_cast<Reference*>(tagger);
    const std::u16string_view view(text);
    self->found.resize(view.size());
    size_t total = 2 * view.size();
    for (size_t i = 0; i < view.size(); ++i) {
        const auto it = self->table->find(view[i]);
        self->found[i] = it != self->table->end() ? &it->second : nullptr;
        total += self->found[i] != nullptr ? self->found[i]->size() : 0;
    }
    char16_t* out = new char16_t[total + 1];
    char16_t* p = out;
    for (size_t i = 0; i < view.size(); ++i) {
        *p++ = view[i];
        *p++ = u'/';
        if (const std::u16string* s = self->found[i]) p = std::copy(s->begin(), s->end(), p);
    }
    *p = 0;
    *answer = out;
    *answerLength = static_cast<int32_t>(total);
    return 0;
}

int ReleasePinyinObject(void* tagger) {
    delete static_cast<Reference*>(tagger);
    return 0;
}
