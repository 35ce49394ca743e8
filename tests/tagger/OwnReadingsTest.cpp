// SPDX-License-Identifier: MIT
// The teacher's own readings in the engine (tiny dictionaries), the tones as dictionaries write
// them, and the file they come from: found, read again when it changes, written whole.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "OwnReadings.h"
#include "Tagger.h"
#include "TinyDictionaries.h"

using namespace zphonetic::tagger;

namespace {

std::string tagWith(const std::shared_ptr<const OwnReadings>& own, const char* utf8) {
    Tagger tagger(tiny::dictionaries(), own);
    const std::u16string text = tiny::u16(utf8);
    size_t length = 0;
    char16_t* answer = tagger.answer(text.data(), text.size(), length);
    std::string out = tiny::u8(std::u16string(answer, length));
    delete[] answer;
    return out;
}

std::shared_ptr<const OwnReadings> own(const char* file, Tones tones = Tones::Taught) {
    return std::make_shared<const OwnReadings>(ReadingsFile(file), tones);
}

TEST(OwnReadings, AWordWinsOverTheWordDictionaryAndTheRules) {
    const auto mine = own("银行 yín xíng\n还钱 hái qián\n");
    EXPECT_EQ(tagWith(mine, "银行行长"), "银/yín行/xíng行/háng长/zhǎng");
    EXPECT_EQ(tagWith(mine, "还钱"), "还/hái钱/qián");  // the rule says huán
    EXPECT_EQ(tagWith(nullptr, "还钱"), "还/huán钱/qián");
}

TEST(OwnReadings, AWordWinsOverTheToneChange) {
    // 一个 and 不是 as dictionaries write them, while the tones are as taught.
    const auto mine = own("一个 yī gè\n不 bù\n");
    EXPECT_EQ(tagWith(mine, "一个"), "一/yī个/gè");
    EXPECT_EQ(tagWith(mine, "不是"), "不/bù是/shì");
    // Not even the light tone between a word said twice.
    EXPECT_EQ(tagWith(nullptr, "好不好"), "好/hǎo不/bu好/hǎo");
    EXPECT_EQ(tagWith(mine, "好不好"), "好/hǎo不/bù好/hǎo");
    // The tone change around a word of the teacher's reads the teacher's reading: 一 before
    // 天 (tiān, first tone) is yì; given 天 as tiàn, 一 changes to yí.
    EXPECT_EQ(tagWith(nullptr, "一天"), "一/yì天/tiān");
    EXPECT_EQ(tagWith(own("天 tiàn\n"), "一天"), "一/yí天/tiàn");
}

TEST(OwnReadings, AWordWinsWhereverItOccurs) {
    const auto mine = own("长江 zhǎng jiāng\n");
    EXPECT_EQ(tagWith(mine, "长江长江"), "长/zhǎng江/jiāng长/zhǎng江/jiāng");
    // Across the segmentation's words: 市长+江 would be the path without it.
    EXPECT_EQ(tagWith(own("长江大 cháng jiāng dài\n"), "市长江大桥"),
              "市/shì长/cháng江/jiāng大/dài桥/qiáo");
}

TEST(OwnReadings, TheLongestWordStartingFirstWins) {
    const auto mine = own("银行 yín xíng\n银行行长 yín háng xíng zhǎng\n行长 háng cháng\n");
    EXPECT_EQ(tagWith(mine, "银行行长"), "银/yín行/háng行/xíng长/zhǎng");
    // 行长 starts inside 银行, which is taken first.
    EXPECT_EQ(tagWith(mine, "银行长"), "银/yín行/xíng长/cháng");
    EXPECT_EQ(tagWith(mine, "行长江"), "行/háng长/cháng江/jiāng");
}

TEST(OwnReadings, AOneCharacterWordComesFirstAmongItsReadings) {
    EXPECT_EQ(tagWith(own("还 huán\n"), "还"), "还/huán hái");
    EXPECT_EQ(tagWith(own("还 huán\n"), "还是"), "还/huán是/shì");
    // A reading the character dictionary does not have is added in front.
    EXPECT_EQ(tagWith(own("好 hāo\n"), "好"), "好/hāo hǎo hào");
    // A longer word leaves the lone character alone.
    EXPECT_EQ(tagWith(own("好好 hǎo hāo\n"), "好"), "好/hǎo hào");
}

TEST(OwnReadings, OriginalTonesTakeBackOnlyTheChangedTonesOf一And不) {
    const auto original = own("", Tones::Original);
    const char* cases[][3] = {
        // text, as taught, as dictionaries write it
        {"一个", "一/yí个/gè", "一/yī个/gè"},
        {"不是", "不/bú是/shì", "不/bù是/shì"},
        {"一天", "一/yì天/tiān", "一/yī天/tiān"},
        {"看一看", "看/kàn一/yi看/kàn", "看/kàn一/yi看/kàn"},
        {"好不好", "好/hǎo不/bu好/hǎo", "好/hǎo不/bu好/hǎo"},
        {"一二三", "一/yī二/三/", "一/yī二/三/"},
        {"银行行长", "银/yín行/háng行/háng长/zhǎng", "银/yín行/háng行/háng长/zhǎng"},
    };
    for (const auto& [text, taught, dictionaries] : cases) {
        EXPECT_EQ(tagWith(nullptr, text), taught) << text;
        EXPECT_EQ(tagWith(own(""), text), taught) << text;
        EXPECT_EQ(tagWith(original, text), dictionaries) << text;
    }
    // The teacher's words still win.
    EXPECT_EQ(tagWith(own("一个 yí gè\n", Tones::Original), "一个"), "一/yí个/gè");
}

// The readings file in a directory of the test's own, and no tones from the environment.
class Environment : public ::testing::Test {
protected:
    std::string file() const { return dir_.path() + "/config/zphonetic/readings.txt"; }
    void write(const std::string& bytes) const {
        std::filesystem::create_directories(dir_.path() + "/config/zphonetic");
        std::ofstream(file(), std::ios::binary | std::ios::trunc) << bytes;
    }
    tiny::TempDir dir_;
    tiny::ScopedVariable readingsFile_{kReadingsFileVariable, file().c_str()};
    tiny::ScopedVariable tones_{kTonesVariable, nullptr};
};

TEST_F(Environment, TheFileIsFoundByTheOverrideThenXdgConfigHomeThenHome) {
    EXPECT_EQ(ownReadingsPath(), file());
    ::unsetenv(kReadingsFileVariable);
    tiny::ScopedVariable config("XDG_CONFIG_HOME", "/somewhere/config");
    tiny::ScopedVariable home("HOME", "/home/teacher");
    EXPECT_EQ(ownReadingsPath(), "/somewhere/config/zphonetic/readings.txt");
    ::setenv("XDG_CONFIG_HOME", "relative/config", 1);  // not absolute: not used
    EXPECT_EQ(ownReadingsPath(), "/home/teacher/.config/zphonetic/readings.txt");
    ::unsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(ownReadingsPath(), "/home/teacher/.config/zphonetic/readings.txt");
    ::unsetenv("HOME");
    EXPECT_EQ(ownReadingsPath(), "");
}

TEST_F(Environment, TheSourceReadsTheFileAgainOnlyWhenItChanges) {
    std::vector<std::string> notes;
    OwnReadingsSource source(file(), [&notes](const std::string& n) { notes.push_back(n); });
    // Missing: no words, nothing to say.
    auto readings = source.current();
    EXPECT_FALSE(readings->hasWords());
    EXPECT_EQ(readings->tones(), Tones::Taught);
    EXPECT_TRUE(notes.empty());
    EXPECT_EQ(source.current(), readings);  // unchanged: the same object

    write("还 huán\n还钱\n");
    readings = source.current();
    EXPECT_NE(readings->single(u'还'), nullptr);
    EXPECT_EQ(notes, (std::vector<std::string>{file() + ": line 2 skipped: 还钱 has no readings"}));
    EXPECT_EQ(source.current(), readings);
    EXPECT_EQ(notes.size(), 1u);  // said once for each version of the file

    // Written anew through saveReadingsFile, as the tools write it.
    ReadingsFile edited = loadReadingsFile(file()).file;
    ASSERT_TRUE(edited.remove(u"还钱"));  // a line with a problem goes by its word too
    ASSERT_TRUE(edited.setTones(Tones::Original));
    ASSERT_EQ(saveReadingsFile(file(), edited), "");
    readings = source.current();
    EXPECT_EQ(readings->tones(), Tones::Original);

    // The environment's tones over the file's, without reading the file again.
    ::setenv(kTonesVariable, "taught", 1);
    EXPECT_EQ(source.current()->tones(), Tones::Taught);
    ::setenv(kTonesVariable, "neither", 1);  // names no tones: the file's
    EXPECT_EQ(source.current()->tones(), Tones::Original);

    std::filesystem::remove(file());
    EXPECT_FALSE(source.current()->hasWords());
}

TEST_F(Environment, AFileThatCannotBeReadIsNotUsedAndSaysWhy) {
    std::vector<std::string> notes;
    const auto note = [&notes](const std::string& n) { notes.push_back(n); };
    std::filesystem::create_directories(file());  // a directory where the file should be
    OwnReadingsSource directory(file(), note);
    EXPECT_FALSE(directory.current()->hasWords());
    EXPECT_FALSE(directory.current()->hasWords());
    EXPECT_EQ(notes,
              (std::vector<std::string>{file() + ": not a regular file: none of it is read"}));
    std::filesystem::remove(file());

    notes.clear();
    write(std::string(kMaxReadingsFileSize + 1, '#'));
    OwnReadingsSource large(file(), note);
    EXPECT_FALSE(large.current()->hasWords());
    EXPECT_EQ(notes, (std::vector<std::string>{file() + ": larger than 4 MB: none of it is read"}));

    notes.clear();
    write("\xFF\xFE\xD8\x8F");
    OwnReadingsSource wide(file(), note);
    EXPECT_FALSE(wide.current()->hasWords());
    EXPECT_EQ(notes, (std::vector<std::string>{
                         file() + ": the file is UTF-16 text, not UTF-8 (save it as UTF-8): none "
                                  "of it is read"}));

    // A pipe is refused without waiting for a writer.
    std::filesystem::remove(file());
    ASSERT_EQ(::mkfifo(file().c_str(), 0600), 0);
    notes.clear();
    OwnReadingsSource pipe(file(), note);
    EXPECT_FALSE(pipe.current()->hasWords());
    EXPECT_EQ(notes,
              (std::vector<std::string>{file() + ": not a regular file: none of it is read"}));
}

TEST_F(Environment, SavingMakesTheDirectoryAndKeepsTheFilesPermissionsAndLinks) {
    ReadingsFile file;
    ASSERT_FALSE(file.set(u"还", {u"huán"}));
    ASSERT_EQ(saveReadingsFile(this->file(), file), "");  // config/zphonetic/ made
    EXPECT_EQ(loadReadingsFile(this->file()).file.text(), file.text());
    ::chmod(this->file().c_str(), 0600);
    ASSERT_EQ(saveReadingsFile(this->file(), file), "");
    struct stat st {};
    ASSERT_EQ(::stat(this->file().c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0600u);
    // Through a link: the link stays, the file it points to changes.
    const std::string link = dir_.path() + "/link.txt";
    std::filesystem::create_symlink(this->file(), link);
    ASSERT_FALSE(file.set(u"行", {u"xíng"}));
    ASSERT_EQ(saveReadingsFile(link, file), "");
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(loadReadingsFile(this->file()).file.text(), file.text());
    // Nothing is left beside it.
    size_t entries = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(dir_.path() + "/config/zphonetic")) {
        (void)entry;
        ++entries;
    }
    EXPECT_EQ(entries, 1u);
}

TEST_F(Environment, AFileThatCannotBeWrittenIsLeftAsItWas) {
    ReadingsFile file;
    ASSERT_FALSE(file.set(u"行", {u"xíng"}));
    // Its directory cannot be made: a file is in the way.
    const std::string plain = dir_.path() + "/plain";
    std::ofstream(plain) << "not a directory";
    EXPECT_EQ(saveReadingsFile(plain + "/readings.txt", file),
              "cannot make its directory (Not a directory)");
    // It cannot be replaced: a directory with something in it is where the file should be.
    std::filesystem::create_directories(this->file() + "/inside");
    EXPECT_EQ(saveReadingsFile(this->file(), file), "cannot be written (Is a directory)");
    EXPECT_TRUE(std::filesystem::is_directory(this->file() + "/inside"));
    size_t entries = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(dir_.path() + "/config/zphonetic")) {
        (void)entry;
        ++entries;
    }
    EXPECT_EQ(entries, 1u);  // no temporary file left beside it
}

}  // namespace
