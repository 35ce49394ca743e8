// SPDX-License-Identifier: MIT
// A tagging library for tests: libPinyinTagger.so with the six entry points of the real one,
// answering from a script the test writes and recording every call in a journal.
//
// Tests reach the control functions below with dlsym on the same library the engine loads
// (dlopen of the same path gives the same instance, which also keeps the script and journal
// alive across the engine's unload).
//
// Answers. PinyinTagSen answers, for a text with a scripted answer, exactly that answer (a
// null answer gives a null buffer and length 0); for any other text the well-formed answer:
// each character, "/", and its scripted reading (empty when it has none), candidates included.
//
// Journal lines, in call order:
//   "LoadPinYinLibrary host"   the interface answered IZReadingHost ("null": none was given,
//                              "other": one that did not answer it)
//   "OpenDictionary <Pinyin.dic path>|<firrule.dic path>|<secrule.dic path>"
//   "GetPinyinObject"          ("GetPinyinObject null" when scripted to give no object)
//   "PinyinTagSen <text>"
//   "ReleasePinyinObject"
//   "CloseDictionary"
#pragma once

#include <cstdint>

extern "C" {

// Forgets the script and the journal.
using TaggerDoubleResetFn = void (*)();
// The reading (candidates separated by single spaces) of `character` in well-formed answers.
using TaggerDoubleSetReadingFn = void (*)(char16_t character, const char16_t* reading);
// The exact answer to `text`: `length` units of `answer` (null `answer`: a null buffer).
using TaggerDoubleSetAnswerFn = void (*)(const char16_t* text, const char16_t* answer,
                                         std::int32_t length);
// Non-zero: GetPinyinObject gives no object.
using TaggerDoubleSetNullObjectFn = void (*)(int nullObject);
// The journal, lines separated by '\n'; valid until the next call into the library.
using TaggerDoubleJournalFn = const char16_t* (*)();
// Tagger objects handed out and not released.
using TaggerDoubleLiveObjectsFn = int (*)();

}  // extern "C"
