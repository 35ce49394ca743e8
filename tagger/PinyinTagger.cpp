// SPDX-License-Identifier: MIT
// The C edge of the library: every exception stops here and becomes a status.
#include "PinyinTagger.h"

#include <cstdio>
#include <limits>
#include <memory>
#include <mutex>
#include <new>
#include <unordered_set>

#include "Tagger.h"
#include "Utf16.h"

using zphonetic::tagger::Dictionaries;
using zphonetic::tagger::FormatError;
using zphonetic::tagger::OwnReadingsSource;
using zphonetic::tagger::printable;
using zphonetic::tagger::Tagger;

namespace {

struct LibraryState {
    std::mutex mutex;
    std::shared_ptr<const Dictionaries> dictionaries;
    // The teacher's readings file, found when the dictionaries open.
    std::unique_ptr<OwnReadingsSource> own;
    // Taggers handed out and not yet released, so that a stray pointer is refused, not followed.
    std::unordered_set<const void*> taggers;
};

LibraryState& state() {
    static LibraryState s;
    return s;
}

std::string pathOf(const char16_t* path) {
    std::u16string_view view(path);
    return zphonetic::tagger::toUtf8(view);
}

bool isLive(const void* tagger) {
    LibraryState& s = state();
    std::lock_guard<std::mutex> lock(s.mutex);
    return s.taggers.count(tagger) != 0;
}

}  // namespace

int LoadPinYinLibrary(void* /*hostInterface*/) {
    return PINYIN_TAGGER_OK;
}

int OpenDictionary(const char16_t* pinyinDic, const char16_t* firstRules,
                   const char16_t* secondRules) {
    LibraryState& s = state();
    {
        std::lock_guard<std::mutex> lock(s.mutex);
        s.dictionaries.reset();
        s.own.reset();
    }
    if (pinyinDic == nullptr || firstRules == nullptr || secondRules == nullptr) {
        return PINYIN_TAGGER_E_ARGUMENT;
    }
    try {
        auto opened = std::make_shared<const Dictionaries>(pathOf(pinyinDic), pathOf(firstRules),
                                                           pathOf(secondRules));
        // Read now, so that the first tagger costs no more than the others; a problem of the
        // file is only ever a note.
        auto own = std::make_unique<OwnReadingsSource>(
            zphonetic::tagger::ownReadingsPath(), [](const std::string& note) {
                std::fprintf(stderr, "libPinyinTagger: %s\n", note.c_str());
            });
        own->current();
        std::lock_guard<std::mutex> lock(s.mutex);
        s.dictionaries = std::move(opened);
        s.own = std::move(own);
        return PINYIN_TAGGER_OK;
    } catch (const FormatError& e) {
        // The status is all a caller gets; the reason goes where a person can read it.
        std::fprintf(stderr, "libPinyinTagger: %s\n", printable(e.what()).c_str());
        return PINYIN_TAGGER_E_DICTIONARY;
    } catch (const std::bad_alloc&) {
        return PINYIN_TAGGER_E_MEMORY;
    } catch (...) {
        return PINYIN_TAGGER_E_INTERNAL;
    }
}

int CloseDictionary(void) {
    LibraryState& s = state();
    std::shared_ptr<const Dictionaries> closing;
    std::unique_ptr<OwnReadingsSource> own;
    std::lock_guard<std::mutex> lock(s.mutex);
    closing.swap(s.dictionaries);
    own.swap(s.own);
    return PINYIN_TAGGER_OK;
}

int GetPinyinObject(void** tagger) {
    if (tagger == nullptr) return PINYIN_TAGGER_E_ARGUMENT;
    *tagger = nullptr;
    LibraryState& s = state();
    try {
        std::lock_guard<std::mutex> lock(s.mutex);
        if (!s.dictionaries) return PINYIN_TAGGER_E_NOT_OPEN;
        auto made = std::make_unique<Tagger>(s.dictionaries, s.own->current());
        s.taggers.insert(made.get());
        *tagger = made.release();
        return PINYIN_TAGGER_OK;
    } catch (const std::bad_alloc&) {
        return PINYIN_TAGGER_E_MEMORY;
    } catch (...) {
        return PINYIN_TAGGER_E_INTERNAL;
    }
}

int PinyinTagSen(void* tagger, const char16_t* text, char16_t** answer, int32_t* answerLength) {
    if (answer != nullptr) *answer = nullptr;
    if (answerLength != nullptr) *answerLength = 0;
    if (tagger == nullptr || text == nullptr || answer == nullptr || answerLength == nullptr) {
        return PINYIN_TAGGER_E_ARGUMENT;
    }
    try {
        if (!isLive(tagger)) return PINYIN_TAGGER_E_ARGUMENT;
        const std::u16string_view view(text);
        // Each unit gives at least two units of answer.
        if (view.size() > static_cast<size_t>(std::numeric_limits<int32_t>::max()) / 2) {
            return PINYIN_TAGGER_E_TOO_LONG;
        }
        size_t length = 0;
        char16_t* out = static_cast<Tagger*>(tagger)->answer(view.data(), view.size(), length);
        if (length > static_cast<size_t>(std::numeric_limits<int32_t>::max())) {
            delete[] out;
            return PINYIN_TAGGER_E_TOO_LONG;
        }
        *answer = out;
        *answerLength = static_cast<int32_t>(length);
        return PINYIN_TAGGER_OK;
    } catch (const FormatError& e) {
        // A damaged block of a dictionary, found as the text was tagged.
        std::fprintf(stderr, "libPinyinTagger: %s\n", e.what());
        return PINYIN_TAGGER_E_DICTIONARY;
    } catch (const std::bad_alloc&) {
        return PINYIN_TAGGER_E_MEMORY;
    } catch (...) {
        return PINYIN_TAGGER_E_INTERNAL;
    }
}

int ReleasePinyinObject(void* tagger) {
    LibraryState& s = state();
    std::unique_ptr<Tagger> released;
    {
        std::lock_guard<std::mutex> lock(s.mutex);
        if (tagger == nullptr || s.taggers.erase(tagger) == 0) return PINYIN_TAGGER_E_ARGUMENT;
        released.reset(static_cast<Tagger*>(tagger));
    }
    return PINYIN_TAGGER_OK;
}
