// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "engine/taggablerange.h"

namespace {

TEST(TaggableRange, TheFiveBlocksAreTaggableFromFirstToLastUnit) {
    for (char16_t first : {0x3040, 0x30A0, 0x3300, 0x4E00, 0xF900, 0xFF00})
        EXPECT_TRUE(isTaggable(first));
    for (char16_t last : {0x309F, 0x30FF, 0x33FF, 0x9FFF, 0xFAFF, 0xFFEF})
        EXPECT_TRUE(isTaggable(last));
    EXPECT_TRUE(isTaggable(0x9FA5));
    EXPECT_TRUE(isTaggable(0x9FA6));
}

TEST(TaggableRange, EverythingAroundThemIsNot) {
    for (char16_t unit :
         {0x0000, 0x0041, 0x0020, 0x3000, 0x3001, 0x303F, 0x3100, 0x32FF, 0x3400, 0x4DBF,
          0x4DFF, 0xA000, 0xD800, 0xDC00, 0xDFFF, 0xF8FF, 0xFB00, 0xFEFF, 0xFFF0, 0xFFFF})
        EXPECT_FALSE(isTaggable(unit)) << std::hex << unsigned(unit);
}

}  // namespace
