// SPDX-License-Identifier: MIT
// The tagging library as the engine calls it: the host feature that selects it, its entry
// points' UTF-16 names and their types. Private to the engine.
#pragma once

#include <cstdint>

#include "nvo/runtime.h"

namespace taggerabi {

using LoadPinYinLibraryFn = int (*)(void* hostInterface);
using OpenDictionaryFn = int (*)(const char16_t* pinyinDic, const char16_t* firstRules,
                                 const char16_t* secondRules);
using CloseDictionaryFn = int (*)();
using GetPinyinObjectFn = int (*)(void** tagger);
using PinyinTagSenFn = int (*)(void* tagger, const char16_t* text, char16_t** answer,
                               std::int32_t* answerLength);
using ReleasePinyinObjectFn = int (*)(void* tagger);

// The capital Y of "LoadPinYinLibrary" is the library's own spelling.
inline constexpr char16_t kLoadPinYinLibrary[] = u"LoadPinYinLibrary";
inline constexpr char16_t kOpenDictionary[] = u"OpenDictionary";
inline constexpr char16_t kCloseDictionary[] = u"CloseDictionary";
inline constexpr char16_t kGetPinyinObject[] = u"GetPinyinObject";
inline constexpr char16_t kPinyinTagSen[] = u"PinyinTagSen";
inline constexpr char16_t kReleasePinyinObject[] = u"ReleasePinyinObject";

// The entry point `name` of `library`, looked up at each use. Null when the library lacks it;
// callers deliberately do not test for that (a library without its entry points is a broken
// installation).
template <typename Fn>
Fn entryPoint(HMODULE library, const char16_t* name) {
    void* function = nullptr;
    _Xgetprocaddr(library, name, &function);
    return reinterpret_cast<Fn>(function);
}

}  // namespace taggerabi
