// SPDX-License-Identifier: MIT
// The engine's view of the tagging library (engine/taggerentrypoints.h) against the library's own
// public header: every entry point the engine looks up by name exists under that name and has
// the type the engine calls it with. Checked when this file compiles, so neither header can
// change alone.
#include <gtest/gtest.h>

#include <type_traits>

#include "PinyinTagger.h"
#include "engine/taggerentrypoints.h"

namespace {

constexpr bool sameName(const char16_t* a, const char16_t* b) {
    while (*a && *a == *b) ++a, ++b;
    return *a == *b;
}

// `function` is the library's declaration; the engine's type is taggerabi::<function>Fn and its
// UTF-16 name taggerabi::k<function>. The name is spelt once, here, for all three.
#define ZPHONETIC_SAME_ENTRY_POINT(function)                                              \
    static_assert(std::is_same_v<taggerabi::function##Fn, decltype(&::function)>,         \
                  "the engine calls " #function " with another type than the library's"); \
    static_assert(sameName(taggerabi::k##function, u"" #function),                        \
                  "the engine looks " #function " up under another name")

ZPHONETIC_SAME_ENTRY_POINT(LoadPinYinLibrary);
ZPHONETIC_SAME_ENTRY_POINT(OpenDictionary);
ZPHONETIC_SAME_ENTRY_POINT(CloseDictionary);
ZPHONETIC_SAME_ENTRY_POINT(GetPinyinObject);
ZPHONETIC_SAME_ENTRY_POINT(PinyinTagSen);
ZPHONETIC_SAME_ENTRY_POINT(ReleasePinyinObject);

#undef ZPHONETIC_SAME_ENTRY_POINT

// The checks above are static; this test only makes the file's presence visible in the report.
TEST(TaggerEntryPoints, AgreeWithTheLibrarysHeader) {
    EXPECT_TRUE(sameName(taggerabi::kPinyinTagSen, u"PinyinTagSen"));
    EXPECT_FALSE(sameName(taggerabi::kPinyinTagSen, u"PinyinTagSe"));
}

}  // namespace
