// SPDX-License-Identifier: MIT
// The binary format: hand-made truncated and corrupt files are refused with a message that says
// where, a damaged block of data is found when it is first read; nothing reads outside the bytes
// it was given.
#include <gtest/gtest.h>

#include "CharDictionary.h"
#include "Container.h"
#include "RuleDictionary.h"
#include "Tagger.h"
#include "TinyDictionaries.h"
#include "WordDictionary.h"

using namespace zphonetic::tagger;

namespace {

std::string errorOf(const std::vector<uint8_t>& bytes) {
    try {
        CharDictionary dict(bytes.data(), bytes.size());
    } catch (const FormatError& e) {
        return e.what();
    }
    return "";
}

void putU32(std::vector<uint8_t>& bytes, size_t at, uint32_t v) {
    for (int i = 0; i < 4; ++i) bytes[at + i] = static_cast<uint8_t>(v >> (8 * i));
}

uint64_t u64(const std::vector<uint8_t>& bytes, size_t at) {
    uint64_t v = 0;
    for (int i = 0; i < 8; ++i) v |= uint64_t{bytes[at + i]} << (8 * i);
    return v;
}

// Where the data starts (header offset 32).
size_t dataStart(const std::vector<uint8_t>& bytes) {
    return static_cast<size_t>(u64(bytes, 32));
}

TEST(Format, AnIntactFileOpens) {
    const auto bytes = tiny::charBytes();
    EXPECT_EQ(errorOf(bytes), "");
    EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 8), "ZPYCHARS");
}

TEST(Format, EmptyAndShortFilesAreRefused) {
    EXPECT_EQ(errorOf({}), "file of 0 bytes is shorter than the 40-byte header");
    auto bytes = tiny::charBytes();
    bytes.resize(39);
    EXPECT_EQ(errorOf(bytes), "file of 39 bytes is shorter than the 40-byte header");
}

TEST(Format, ATruncatedFileIsRefused) {
    auto bytes = tiny::charBytes();
    for (size_t keep : {size_t{40}, size_t{64}, bytes.size() / 2, bytes.size() - 1}) {
        std::vector<uint8_t> cut(bytes.begin(), bytes.begin() + keep);
        EXPECT_EQ(errorOf(cut), "payload size " + std::to_string(bytes.size() - 40) +
                                    " at offset 16 does not match the file (" +
                                    std::to_string(keep - 40) + " bytes after the header)");
    }
}

TEST(Format, WrongMagicAndVersionAreRefused) {
    auto bytes = tiny::charBytes();
    bytes[0] = 'X';
    EXPECT_EQ(errorOf(bytes), "bad magic at offset 0: expected \"ZPYCHARS\"");
    EXPECT_EQ(errorOf(tiny::wordBytes()), "bad magic at offset 0: expected \"ZPYCHARS\"");
    bytes = tiny::charBytes();
    bytes[8] = 2;  // the previous format, whose checksum covered the whole file
    EXPECT_EQ(errorOf(bytes), "format version 2 at offset 8, expected 3");
}

TEST(Format, AnyFlippedIndexByteFailsTheChecksum) {
    const auto bytes = tiny::charBytes();
    ASSERT_GT(dataStart(bytes), kHeaderSize + 5 * kSectionEntrySize);
    for (size_t at = kHeaderSize; at < dataStart(bytes); at += 7) {
        auto corrupt = bytes;
        corrupt[at] ^= 0x10;
        EXPECT_EQ(errorOf(corrupt), "checksum at offset 24 does not match the index") << at;
    }
}

TEST(Format, AFlippedDataByteIsFoundWhenItsBlockIsRead) {
    // Opening reads the index only; the block holding 行's entry is checked when 行 is looked up,
    // reads as nothing, and the file stays damaged.
    auto bytes = tiny::charBytes();
    const size_t entry = tiny::sectionOffset(bytes, 3) + 4 * size_t{u'行'};
    bytes[entry] ^= 0x01;
    CharDictionary dict(bytes.data(), bytes.size());
    EXPECT_FALSE(dict.file().damaged());
    EXPECT_EQ(dict.count(u'好'), 2u);  // its entry lies in another block
    EXPECT_FALSE(dict.file().damaged());
    EXPECT_EQ(dict.count(u'行'), 0u);
    EXPECT_EQ(dict.reading(u'行', 0), nullptr);
    ASSERT_TRUE(dict.file().damaged());
    const size_t block = (entry - dataStart(bytes)) / kBlockSize;
    const size_t first = dataStart(bytes) + block * kBlockSize;
    EXPECT_EQ(dict.file().damage(), "bytes " + std::to_string(first) + ".." +
                                        std::to_string(first + kBlockSize - 1) + " (block " +
                                        std::to_string(block) + ") do not match their checksum");
    EXPECT_EQ(dict.count(u'好'), 2u);  // intact blocks still read
    EXPECT_TRUE(dict.file().damaged());
}

TEST(Format, EveryFlippedDataByteIsFoundByCheckingEveryBlock) {
    const auto bytes = tiny::charBytes();
    for (size_t at = dataStart(bytes); at < bytes.size(); at += 997) {
        auto corrupt = bytes;
        corrupt[at] ^= 0x10;
        const ContainerView view(corrupt.data(), corrupt.size(), "ZPYCHARS");
        try {
            view.checkEveryBlock();
            ADD_FAILURE() << "byte " << at << " flipped unnoticed";
        } catch (const FormatError& e) {
            EXPECT_EQ(std::string(e.what()).substr(0, 6), "bytes ") << at;
        }
    }
    EXPECT_NO_THROW(ContainerView(bytes.data(), bytes.size(), "ZPYCHARS").checkEveryBlock());
}

TEST(Format, DamageFoundWhileTaggingFailsTheText) {
    auto chars = tiny::charBytes();
    chars[tiny::sectionOffset(chars, 3) + 4 * size_t{u'行'}] ^= 0x01;
    auto dicts = std::make_shared<const Dictionaries>(std::move(chars), tiny::wordBytes(),
                                                      tiny::ruleBytes());
    Tagger tagger(dicts);
    // A text of one character is answered with all its readings, from the character index.
    size_t length = 0;
    delete[] tagger.answer(u"好", 1, length);
    try {
        delete[] tagger.answer(u"行", 1, length);
        ADD_FAILURE() << "a damaged block gave readings";
    } catch (const FormatError& e) {
        EXPECT_EQ(std::string(e.what()).substr(0, 18), "Pinyin.dic: bytes ");
    }
    // Damaged once, damaged for good: what it gave before may have been wrong too.
    EXPECT_THROW(tagger.readings(u"银行", 2), FormatError);
}

TEST(Format, BlockSumsThatDoNotCoverTheDataAreRefused) {
    auto bytes = tiny::charBytes();
    // The first entry of the table is the block sums': one sum fewer.
    ASSERT_EQ(u64(bytes, kHeaderSize) & 0xFFFFFFFFu, kBlockSumSection);
    putU32(bytes, kHeaderSize + 16, static_cast<uint32_t>(u64(bytes, kHeaderSize + 16) - 8));
    seal(bytes);
    EXPECT_EQ(errorOf(bytes),
              "the block sums are missing or do not have one sum per block of the data");
}

TEST(Format, SectionsOutsideTheFileAreRefused) {
    auto bytes = tiny::charBytes();
    putU32(bytes, kHeaderSize + kSectionEntrySize + 8, 0x7FFFFFF8);  // section 1's offset
    seal(bytes);
    EXPECT_EQ(errorOf(bytes),
              "section 1 described at offset 64 lies outside the file or is misaligned");
    bytes = tiny::charBytes();
    // A data section inside the index.
    putU32(bytes, kHeaderSize + kSectionEntrySize + 8, static_cast<uint32_t>(kHeaderSize));
    seal(bytes);
    EXPECT_EQ(errorOf(bytes),
              "section 1 described at offset 64 lies outside the file or is misaligned");
    bytes = tiny::charBytes();
    putU32(bytes, 12, 0xFFFF);  // section count
    seal(bytes);
    EXPECT_EQ(errorOf(bytes), "section count 65535 at offset 12 is too large");
}

TEST(Format, MissingSectionsAndWrongElementSizesAreRefused) {
    ContainerWriter writer("ZPYCHARS");
    const auto bytes = writer.finish();
    EXPECT_EQ(errorOf(bytes), "section 1 is missing");
    ContainerWriter odd("ZPYCHARS");
    odd.addSection(1, 2, {0, 0});
    const auto oddBytes = odd.finish();
    EXPECT_EQ(errorOf(oddBytes), "section 1 has elements of 2 bytes, expected 4");
}

TEST(Format, OffsetsInsideSectionsAreCheckedOnRead) {
    // A character index pointing far past the readings: the character reads as having none.
    auto bytes = tiny::charBytes();
    CharDictionary good(bytes.data(), bytes.size());
    ASSERT_EQ(good.count(u'行'), 5u);
    // The index is section 3: break the entry for 行, and seal the file so that the reader sees it.
    putU32(bytes, tiny::sectionOffset(bytes, 3) + 4 * size_t{u'行'}, 0xFFFFFFF0);
    seal(bytes);
    CharDictionary broken(bytes.data(), bytes.size());
    EXPECT_EQ(broken.count(u'行'), 0u);
    EXPECT_EQ(broken.reading(u'行', 0), nullptr);
    EXPECT_LE(broken.count(u'行' - 1), 40u);
}

TEST(Format, RulesOutOfTargetOrderAreRefused) {
    // The engine finds a character's rules as one run of the sorted rule section; a file whose
    // runs are interleaved would give a character another's rules.
    auto bytes = compileRules(parseRuleText("rule\t一\tyī\t第_\nrule\t还\thuán\t_钱\n"));
    RuleDictionary good(bytes.data(), bytes.size());
    ASSERT_TRUE(good.hasRules(u'还'));
    const size_t offset = tiny::sectionOffset(bytes, 7);
    std::swap_ranges(bytes.begin() + offset, bytes.begin() + offset + 16,
                     bytes.begin() + offset + 16);  // the two rules change places
    seal(bytes);
    try {
        RuleDictionary broken(bytes.data(), bytes.size());
        FAIL() << "rules out of order were accepted";
    } catch (const FormatError& e) {
        EXPECT_EQ(std::string(e.what()), "rules are not sorted by target");
    }
}

// A word dictionary of four slots whose states 2 and 3 are each other's parent, with
// `readingCount` entries in its reading section (one per state is right).
std::vector<uint8_t> loopTrie(size_t readingCount) {
    ContainerWriter writer("ZPYWORDS");
    writer.addSection(1, 4, {0, 0, 0, 0, 1, 0, 0, 0});
    writer.addSection(2, 2, {'a', 0});
    std::vector<uint8_t> codes(2 * 0x10000, 0);
    codes[2 * 0x4E00] = 1;  // 一 has code 1
    writer.addSection(3, 2, codes);
    writer.addSection(4, 2, {0, 0, 0x00, 0x4E});
    std::vector<uint8_t> states, readings;
    const uint64_t rows[4] = {5 << 11,  // root: child 一 at slot 6
                              0,        // free
                              uint64_t{4 | 0x80000000u} << 32 | 2 << 11 | 100,  // a word, parent 3
                              uint64_t{3} << 32 | 1 << 11};                     // parent 2
    for (uint64_t row : rows) appendLe<uint64_t>(states, row);
    for (size_t i = 0; i < readingCount; ++i) appendLe<uint32_t>(readings, 0);
    writer.addSection(5, 8, states);
    writer.addSection(6, 4, readings);
    writer.addSection(7, 2, {});
    return writer.finish();
}

TEST(Format, ATrieWithALoopIsRefusedByTheDecompiler) {
    // The engine's walk is bounded by the text, but a climb from either state towards the root
    // never ends.
    const auto bytes = loopTrie(4);
    WordDictionary dict(bytes.data(), bytes.size());
    EXPECT_EQ(dict.next(WordDictionary::kRoot, u'一'), 0u);  // slot 6 lies past the states
    EXPECT_EQ(dict.next(2, u'一'), 3u);
    EXPECT_EQ(dict.next(3, u'一'), 2u);
    try {
        dict.toEntries();
        FAIL() << "a loop was followed";
    } catch (const FormatError& e) {
        EXPECT_EQ(std::string(e.what()),
                  "state 2 does not lead back to the root (a loop, a free slot, or a path longer "
                  "than 64)");
    }
}

TEST(Format, AWordDictionaryWithoutAReadingPerStateIsRefused) {
    const auto bytes = loopTrie(3);
    try {
        WordDictionary dict(bytes.data(), bytes.size());
        FAIL() << "a reading section one short was accepted";
    } catch (const FormatError& e) {
        EXPECT_EQ(std::string(e.what()), "reading section does not have one entry per state");
    }
}

TEST(Format, TextErrorsNameTheLine) {
    try {
        parseCharText("行\txíng\n\n长\tch4ng\n");
        FAIL();
    } catch (const FormatError& e) {
        EXPECT_EQ(std::string(e.what()), "line 3: \"ch4ng\" is not a pinyin syllable");
    }
    try {
        parseWordText("银行\tyín\t1\n");
        FAIL();
    } catch (const FormatError& e) {
        EXPECT_EQ(std::string(e.what()), "line 1: \"银行\" needs one reading per character");
    }
    try {
        parseRuleText("rule\t还\thuán\t_{MONEY}\n");
        FAIL();
    } catch (const FormatError& e) {
        EXPECT_EQ(std::string(e.what()), "line 1: unknown class \"MONEY\"");
    }
    try {
        parseRuleText("rule\t还\thuán\t钱\n");
        FAIL();
    } catch (const FormatError& e) {
        EXPECT_EQ(std::string(e.what()), "line 1: a pattern needs exactly one \"_\" or \"=\"");
    }
    try {
        parseRuleText("rule\t还\thuán\t_=钱\n");
        FAIL();
    } catch (const FormatError& e) {
        EXPECT_EQ(std::string(e.what()), "line 1: a pattern needs exactly one \"_\" or \"=\"");
    }
    try {
        parseRuleText("rule\t还\thuán\t_钱!\n");
        FAIL();
    } catch (const FormatError& e) {
        EXPECT_EQ(std::string(e.what()), "line 1: \"!\" must come before a character");
    }
    try {
        parseRuleText("rule\t还\thuán\t_钱\nrule\t曾单\tzēng\t_老师\n");
        FAIL();
    } catch (const FormatError& e) {
        EXPECT_EQ(std::string(e.what()), "line 2: one reading per target");
    }
    try {
        parseRuleText("rule\t还\thuán hái\t_钱\n");
        FAIL();
    } catch (const FormatError& e) {
        EXPECT_EQ(std::string(e.what()), "line 1: one reading per target");
    }
}

}  // namespace
