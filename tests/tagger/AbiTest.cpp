// SPDX-License-Identifier: MIT
// The library through its C ABI: the contract of PinyinTagger.h, on tiny dictionaries written by
// the real compiler and on hand-made broken ones.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "PinyinTagger.h"
#include "ReadingsStore.h"
#include "TinyDictionaries.h"

namespace {

int open(const std::string& dir) {
    const std::u16string d = tiny::u16((dir + "/").c_str());
    return OpenDictionary((d + u"Pinyin.dic").c_str(), (d + u"firrule.dic").c_str(),
                          (d + u"secrule.dic").c_str());
}

// The answer for `text`, or "<status N>" when the call fails.
std::string tag(void* tagger, const char* utf8) {
    char16_t* answer = reinterpret_cast<char16_t*>(1);
    int32_t length = -1;
    const std::u16string text = tiny::u16(utf8);
    const int status = PinyinTagSen(tagger, text.c_str(), &answer, &length);
    if (status != 0) {
        EXPECT_EQ(answer, nullptr);
        EXPECT_EQ(length, 0);
        return "<status " + std::to_string(status) + ">";
    }
    std::string out = tiny::u8(std::u16string(answer, static_cast<size_t>(length)));
    EXPECT_EQ(answer[length], u'\0');
    delete[] answer;
    return out;
}

class Abi : public ::testing::Test {
protected:
    void SetUp() override {
        dir_.writeTinyDictionaries();
        ASSERT_EQ(LoadPinYinLibrary(nullptr), 0);
        ASSERT_EQ(open(dir_.path()), 0);
    }
    void TearDown() override { CloseDictionary(); }
    tiny::TempDir dir_;
};

TEST_F(Abi, TagsASentenceAndALoneCharacter) {
    void* tagger = nullptr;
    ASSERT_EQ(GetPinyinObject(&tagger), 0);
    ASSERT_NE(tagger, nullptr);
    EXPECT_EQ(tag(tagger, "银行行长"), "银/yín行/háng行/háng长/zhǎng");
    EXPECT_EQ(tag(tagger, "行"), "行/xíng háng héng xìng hàng");
    EXPECT_EQ(tag(tagger, "ア行"), "ア/行/xíng");
    EXPECT_EQ(tag(tagger, ""), "");
    EXPECT_EQ(ReleasePinyinObject(tagger), 0);
}

TEST_F(Abi, AnswerLengthCountsUnitsWithoutTheNul) {
    void* tagger = nullptr;
    ASSERT_EQ(GetPinyinObject(&tagger), 0);
    char16_t* answer = nullptr;
    int32_t length = 0;
    ASSERT_EQ(PinyinTagSen(tagger, u"银行行长", &answer, &length), 0);
    EXPECT_EQ(length, 24);
    EXPECT_EQ(std::u16string(answer), u"银/yín行/háng行/háng长/zhǎng");
    delete[] answer;
    ReleasePinyinObject(tagger);
}

TEST_F(Abi, NullAndUnknownPointersAreRefused) {
    EXPECT_EQ(GetPinyinObject(nullptr), PINYIN_TAGGER_E_ARGUMENT);
    void* tagger = nullptr;
    ASSERT_EQ(GetPinyinObject(&tagger), 0);
    char16_t* answer = nullptr;
    int32_t length = 0;
    EXPECT_EQ(PinyinTagSen(nullptr, u"行", &answer, &length), PINYIN_TAGGER_E_ARGUMENT);
    EXPECT_EQ(PinyinTagSen(tagger, nullptr, &answer, &length), PINYIN_TAGGER_E_ARGUMENT);
    EXPECT_EQ(PinyinTagSen(tagger, u"行", nullptr, &length), PINYIN_TAGGER_E_ARGUMENT);
    EXPECT_EQ(PinyinTagSen(tagger, u"行", &answer, nullptr), PINYIN_TAGGER_E_ARGUMENT);
    int stranger = 0;
    EXPECT_EQ(tag(&stranger, "行"), "<status -1>");
    EXPECT_EQ(ReleasePinyinObject(&stranger), PINYIN_TAGGER_E_ARGUMENT);
    EXPECT_EQ(ReleasePinyinObject(tagger), 0);
    EXPECT_EQ(ReleasePinyinObject(tagger), PINYIN_TAGGER_E_ARGUMENT);  // released twice
    EXPECT_EQ(tag(tagger, "行"), "<status -1>");                       // used after release
    EXPECT_EQ(ReleasePinyinObject(nullptr), PINYIN_TAGGER_E_ARGUMENT);
    EXPECT_EQ(OpenDictionary(nullptr, u"a", u"b"), PINYIN_TAGGER_E_ARGUMENT);
}

TEST_F(Abi, ATaggerOutlivesCloseDictionary) {
    void* tagger = nullptr;
    ASSERT_EQ(GetPinyinObject(&tagger), 0);
    EXPECT_EQ(CloseDictionary(), 0);
    EXPECT_EQ(CloseDictionary(), 0);
    void* late = reinterpret_cast<void*>(1);
    EXPECT_EQ(GetPinyinObject(&late), PINYIN_TAGGER_E_NOT_OPEN);
    EXPECT_EQ(late, nullptr);
    EXPECT_EQ(tag(tagger, "还钱"), "还/huán钱/qián");
    EXPECT_EQ(ReleasePinyinObject(tagger), 0);
}

struct Broken {
    const char* name;
    const char* file;  // which dictionary is damaged
    std::vector<uint8_t> (*make)();
};

std::vector<uint8_t> missing() {
    return {};
}
std::vector<uint8_t> empty() {
    return {};
}
std::vector<uint8_t> truncatedWords() {
    auto b = tiny::wordBytes();
    b.resize(b.size() - 8);
    return b;
}
std::vector<uint8_t> flippedChars() {
    auto b = tiny::charBytes();
    b[zphonetic::tagger::kHeaderSize + 30] ^= 0x01;  // in the section table
    return b;
}
std::vector<uint8_t> swappedRules() {
    return tiny::charBytes();
}
std::vector<uint8_t> headerOnly() {
    auto b = tiny::ruleBytes();
    b.resize(40);
    return b;
}

void PrintTo(const Broken& broken, std::ostream* out) {
    *out << broken.name;
}

class BrokenDictionary : public ::testing::TestWithParam<Broken> {};

TEST_P(BrokenDictionary, OpenFailsAndLaterCallsAnswerNothing) {
    const Broken& broken = GetParam();
    tiny::TempDir dir;
    dir.writeTinyDictionaries();
    // A good set opened first must not survive a failed open.
    ASSERT_EQ(open(dir.path()), 0);
    if (std::string(broken.name) == "missing") {
        std::remove((dir.path() + "/" + broken.file).c_str());
    } else {
        dir.write(broken.file, broken.make());
    }
    EXPECT_EQ(open(dir.path()), PINYIN_TAGGER_E_DICTIONARY);
    void* tagger = reinterpret_cast<void*>(1);
    EXPECT_EQ(GetPinyinObject(&tagger), PINYIN_TAGGER_E_NOT_OPEN);
    EXPECT_EQ(tagger, nullptr);
    EXPECT_EQ(tag(tagger, "行"), "<status -1>");
    EXPECT_EQ(CloseDictionary(), 0);
}

INSTANTIATE_TEST_SUITE_P(Files, BrokenDictionary,
                         ::testing::Values(Broken{"missing", "firrule.dic", missing},
                                           Broken{"empty", "Pinyin.dic", empty},
                                           Broken{"truncated", "firrule.dic", truncatedWords},
                                           Broken{"flipped", "Pinyin.dic", flippedChars},
                                           Broken{"swapped", "secrule.dic", swappedRules},
                                           Broken{"headerOnly", "secrule.dic", headerOnly}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(AbiDamage, ADamagedBlockFailsTheTextThatReadsItAndEveryTextAfter) {
    // Opening checks the index only: a flipped byte in the entry of 行 is found by the first
    // text that needs it.
    tiny::TempDir dir;
    dir.writeTinyDictionaries();
    auto chars = tiny::charBytes();
    chars[tiny::sectionOffset(chars, 3) + 4 * size_t{u'行'}] ^= 0x01;
    dir.write("Pinyin.dic", chars);
    ASSERT_EQ(open(dir.path()), 0);
    void* tagger = nullptr;
    ASSERT_EQ(GetPinyinObject(&tagger), 0);
    EXPECT_EQ(tag(tagger, "好"), "好/hǎo hào");
    EXPECT_EQ(tag(tagger, "行"), "<status -3>");
    EXPECT_EQ(tag(tagger, "好"), "<status -3>");
    EXPECT_EQ(ReleasePinyinObject(tagger), 0);
    EXPECT_EQ(CloseDictionary(), 0);
}

// The user's own readings through the ABI: the file named by the environment, as a host finds it.
class AbiOwnReadings : public ::testing::Test {
protected:
    void SetUp() override { dir_.writeTinyDictionaries(); }
    void TearDown() override { CloseDictionary(); }

    void writeReadings(const std::string& bytes) const {
        std::ofstream(file_, std::ios::binary | std::ios::trunc) << bytes;
    }
    // Opens the dictionaries and tags `text` with a new tagger; the library's notes in *notes.
    std::string openAndTag(const char* text, std::string* notes = nullptr) {
        ::testing::internal::CaptureStderr();
        const int opened = open(dir_.path());
        const std::string err = ::testing::internal::GetCapturedStderr();
        if (notes != nullptr) *notes = err;
        if (opened != 0) return "<open " + std::to_string(opened) + ">";
        return tagNew(text);
    }
    static std::string tagNew(const char* text) {
        void* tagger = nullptr;
        if (GetPinyinObject(&tagger) != 0) return "<no tagger>";
        std::string out = tag(tagger, text);
        ReleasePinyinObject(tagger);
        return out;
    }

    tiny::TempDir dir_;
    std::string file_ = dir_.path() + "/readings.txt";
    tiny::ScopedVariable readingsFile_{zphonetic::tagger::kReadingsFileVariable, file_.c_str()};
    tiny::ScopedVariable tones_{zphonetic::tagger::kTonesVariable, nullptr};
};

TEST_F(AbiOwnReadings, AWordOfTheFileChangesTheAnswer) {
    writeReadings("# mine\n还钱 hái qián\n行 háng\n");
    std::string notes;
    EXPECT_EQ(openAndTag("还钱", &notes), "还/hái钱/qián");
    EXPECT_EQ(notes, "");
    EXPECT_EQ(tagNew("银行行长"), "银/yín行/háng行/háng长/zhǎng");  // the longer word's reading
    EXPECT_EQ(tagNew("行"), "行/háng xíng héng xìng hàng");
}

TEST_F(AbiOwnReadings, AMissingFileOrAnEmptyOneChangesNothing) {
    EXPECT_EQ(openAndTag("还钱"), "还/huán钱/qián");
    writeReadings("");
    std::string notes;
    EXPECT_EQ(openAndTag("还钱", &notes), "还/huán钱/qián");
    EXPECT_EQ(notes, "");
}

TEST_F(AbiOwnReadings, MalformedLinesAreSkippedAndNotedAndTheRestCounts) {
    writeReadings(
        "还钱 hái\n"                      // the wrong number of readings
        "hello world\n"                   // no word
        "银行 yín xxx\n"                  // no syllable
        "\xBB\xB9\xC7\xAE huan2 qian2\n"  // not UTF-8 (GB18030)
        "行 háng\n");
    std::string notes;
    EXPECT_EQ(openAndTag("还钱行", &notes), "还/huán钱/qián行/háng");
    EXPECT_EQ(notes, "libPinyinTagger: " + file_ +
                         ": line 1 skipped: 还钱 has 2 characters but 1 reading (and 3 more "
                         "lines)\n");
}

TEST_F(AbiOwnReadings, AFileThatIsNotUtf8IsNotUsed) {
    writeReadings("\xFF\xFE\xD8\x8F \x00h\x00u\x00\xE1\x00n\x00\n\x00");
    std::string notes;
    EXPECT_EQ(openAndTag("还钱", &notes), "还/huán钱/qián");
    EXPECT_EQ(notes, "libPinyinTagger: " + file_ +
                         ": the file is UTF-16 text, not UTF-8 (save it as UTF-8): none of it is "
                         "read\n");
    std::filesystem::remove(file_);
    std::filesystem::create_directory(file_);
    EXPECT_EQ(openAndTag("还钱", &notes), "还/huán钱/qián");
    EXPECT_EQ(notes, "libPinyinTagger: " + file_ + ": not a regular file: none of it is read\n");
}

TEST_F(AbiOwnReadings, ATaggerMadeAfterTheFileChangedReadsItAsItIsNow) {
    writeReadings("还 huán\n");
    EXPECT_EQ(openAndTag("还是"), "还/huán是/shì");
    void* before = nullptr;
    ASSERT_EQ(GetPinyinObject(&before), 0);
    zphonetic::tagger::ReadingsFile edited;
    ASSERT_FALSE(edited.set(u"还是", {u"hái", u"shi"}));
    ASSERT_EQ(zphonetic::tagger::saveReadingsFile(file_, edited), "");
    EXPECT_EQ(tagNew("还是"), "还/hái是/shi");
    EXPECT_EQ(tag(before, "还是"), "还/huán是/shì");  // made before: as the file was then
    EXPECT_EQ(ReleasePinyinObject(before), 0);
    std::filesystem::remove(file_);
    EXPECT_EQ(tagNew("还是"), "还/hái是/shì");
}

TEST_F(AbiOwnReadings, TheTonesAreTheFilesUnlessTheEnvironmentChooses) {
    writeReadings("tones original\n");
    EXPECT_EQ(openAndTag("一个不是"), "一/yī个/gè不/bù是/shì");
    ::setenv(zphonetic::tagger::kTonesVariable, "taught", 1);
    EXPECT_EQ(tagNew("一个不是"), "一/yí个/gè不/bú是/shì");
    writeReadings("");
    ::setenv(zphonetic::tagger::kTonesVariable, "original", 1);
    EXPECT_EQ(tagNew("一个不是"), "一/yī个/gè不/bù是/shì");
    ::unsetenv(zphonetic::tagger::kTonesVariable);
    EXPECT_EQ(tagNew("一个不是"), "一/yí个/gè不/bú是/shì");
}

TEST(AbiDirectory, ADirectoryInsteadOfAFileIsRefused) {
    tiny::TempDir dir;
    dir.writeTinyDictionaries();
    const std::u16string d = tiny::u16((dir.path() + "/").c_str());
    EXPECT_EQ(OpenDictionary(d.c_str(), (d + u"firrule.dic").c_str(), (d + u"secrule.dic").c_str()),
              PINYIN_TAGGER_E_DICTIONARY);
}

}  // namespace
