// SPDX-License-Identifier: MIT
// The teacher's own readings file as text: the lines it reads, the problems of the others with
// their exact messages, and edits that keep every other line as it was written.
#include <gtest/gtest.h>

#include "ReadingsFile.h"
#include "TinyDictionaries.h"

using zphonetic::tagger::OwnWord;
using zphonetic::tagger::ReadingsFile;
using zphonetic::tagger::ReadingsProblem;
using zphonetic::tagger::Tones;

namespace {

// "word: readings" for each word of `file`, then "line N: problem" for each problem.
std::vector<std::string> summary(const ReadingsFile& file) {
    std::vector<std::string> out;
    for (const OwnWord& w : file.words()) {
        std::string line = std::to_string(w.line) + " " + tiny::u8(w.word) + ":";
        for (const std::u16string& r : w.readings) line += " " + tiny::u8(r);
        out.push_back(line);
    }
    for (const ReadingsProblem& p : file.problems()) out.push_back(p.message());
    return out;
}

std::vector<std::u16string> typed(std::initializer_list<const char*> readings) {
    std::vector<std::u16string> out;
    for (const char* r : readings) out.push_back(tiny::u16(r));
    return out;
}

using Lines = std::vector<std::string>;

TEST(ReadingsFile, ReadsWordsCommentsAndTheTones) {
    const ReadingsFile file(
        "# my readings\n"
        "\n"
        "曾老师 zēng lǎo shī\n"
        "  还\thuán  \n"
        "朴 piao2\n"
        "tones original\n"
        "女儿\u3000nü3 er2\n");
    EXPECT_EQ(summary(file),
              (Lines{"3 曾老师: zēng lǎo shī", "4 还: huán", "5 朴: piáo", "7 女儿: nǚ ér"}));
    EXPECT_EQ(file.tones(), Tones::Original);
    ASSERT_NE(file.find(u"还"), nullptr);
    EXPECT_EQ(file.find(u"还")->line, 4u);
    EXPECT_EQ(file.find(u"还钱"), nullptr);
}

TEST(ReadingsFile, AnEmptyFileHasNothingAndTheTonesAsTaught) {
    for (const char* bytes : {"", "\n\n", "# nothing yet\n", "\xEF\xBB\xBF"}) {
        const ReadingsFile file(bytes);
        EXPECT_TRUE(file.words().empty()) << bytes;
        EXPECT_TRUE(file.problems().empty()) << bytes;
        EXPECT_EQ(file.tones(), Tones::Taught);
        EXPECT_EQ(file.text(), bytes);
    }
    EXPECT_EQ(ReadingsFile().text(), "");
}

TEST(ReadingsFile, NamesEveryLineItCannotUseAndReadsTheOthers) {
    const ReadingsFile file(
        "曾老师 zēng lǎo\n"          // 1: too few readings
        "曾老师 zēng lǎo shī shī\n"  // 2: too many
        "曾老师\n"                   // 3: none
        "ceng laoshi\n"              // 4: not a word of Chinese characters
        "曾老师 zēng lǎo shy\n"      // 5: not pinyin
        "曾老师 zēng lǎo shī\n"      // 6: right
        "曾老师 céng lǎo shī\n"      // 7: again
        "tones\n"                    // 8: no value
        "tones as-written\n"         // 9: unknown value
        "tones original\n"           // 10: right
        "tones taught\n"             // 11: again
        "老\xB2\xBB\n"               // 12: not UTF-8
        "一二三四五六七八九十一二三四五六七八九十一二三四五六七八九十一二三 "
        "yī\n"         // 13: 33 characters
        "还 huán\n");  // 14: right
    EXPECT_EQ(summary(file),
              (Lines{
                  "6 曾老师: zēng lǎo shī",
                  "14 还: huán",
                  "line 1: 曾老师 has 3 characters but 2 readings",
                  "line 2: 曾老师 has 3 characters but 4 readings",
                  "line 3: 曾老师 has no readings",
                  "line 4: \"ceng\" is not a word of Chinese characters",
                  "line 5: \"shy\" is not a pinyin syllable",
                  "line 7: 曾老师 is already on line 6",
                  "line 8: tones must be \"taught\" or \"original\"",
                  "line 9: tones must be \"taught\" or \"original\", not "
                  "\"as-written\"",
                  "line 11: the tones are already set on line 10",
                  "line 12: not UTF-8 text (save the file as UTF-8)",
                  "line 13: \"一二三四五六七八九十一二三四五六七八九十一二三四五六七八"
                  "九十一二三\" is longer than 32 characters",
              }));
    EXPECT_EQ(file.tones(), Tones::Original);
}

TEST(ReadingsFile, OneReadingAndOneCharacterAreSpeltSingular) {
    const ReadingsFile file("还 huán qián\n老师 lǎo\n");
    EXPECT_EQ(summary(file), (Lines{"line 1: 还 has 1 character but 2 readings",
                                    "line 2: 老师 has 2 characters but 1 reading"}));
}

TEST(ReadingsFile, AFileInAnotherEncodingIsNamedLineByLine) {
    // GB18030, as some editors save Chinese: 曾老师 zeng1 lao3 shi1, then 还 huan2.
    const ReadingsFile gb(
        "\xD4\xF8\xC0\xCF\xCA\xA6 zeng1 lao3 shi1\r\n\xBB\xB9 huan2\r\n"
        "tones original\r\n");
    EXPECT_EQ(summary(gb), (Lines{"line 1: not UTF-8 text (save the file as UTF-8)",
                                  "line 2: not UTF-8 text (save the file as UTF-8)"}));
    EXPECT_EQ(gb.tones(), Tones::Original);  // the lines that are UTF-8 still count
    // UTF-16 (with its mark, as "Unicode" files are saved): nothing in it is read, nor edited.
    const std::string utf16("\xFF\xFE\xD8\x8F \x00h\x00u\x00\xE1\x00n\x00\n\x00", 16);
    ReadingsFile wide(utf16);
    EXPECT_EQ(summary(wide), (Lines{"the file is UTF-16 text, not UTF-8 (save it as UTF-8)"}));
    EXPECT_TRUE(wide.isUtf16());
    const std::optional<ReadingsProblem> refused = wide.set(u"还", typed({"huán"}));
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->kind, ReadingsProblem::Kind::Utf16);
    EXPECT_FALSE(wide.setTones(Tones::Original));
    EXPECT_FALSE(wide.removeLine(1));
    EXPECT_EQ(wide.text(), utf16);
}

TEST(ReadingsFile, ANulByteIsNoText) {
    const ReadingsFile file(std::string("还 hu\0án\n行 xíng\n", 21));
    EXPECT_EQ(summary(file),
              (Lines{"2 行: xíng", "line 1: not UTF-8 text (save the file as UTF-8)"}));
}

TEST(ReadingsFile, AByteOrderMarkAndWindowsLineEndsAreRead) {
    const std::string bytes = "\xEF\xBB\xBF还 huán\r\n行 xíng\r\n";
    const ReadingsFile file(bytes);
    EXPECT_EQ(summary(file), (Lines{"1 还: huán", "2 行: xíng"}));
    EXPECT_EQ(file.line(1), "还 huán");
    EXPECT_EQ(file.text(), bytes);
}

TEST(ReadingsFile, TheByteOrderMarkStaysFirstWhateverHappensToTheFirstLine) {
    // A mark at the start of a later line is no mark of the file: that line has no word.
    ReadingsFile file("\xEF\xBB\xBF还 huán\n\xEF\xBB\xBF行 xíng\n");
    EXPECT_EQ(summary(file), (Lines{"1 还: huán",
                                    "line 2: \"\xEF\xBB\xBF行\" is not a word of "
                                    "Chinese characters"}));
    ASSERT_TRUE(file.remove(u"还"));
    EXPECT_EQ(file.text(), "\xEF\xBB\xBF\xEF\xBB\xBF行 xíng\n");
    EXPECT_TRUE(file.words().empty());
    ASSERT_TRUE(file.removeLine(1));
    EXPECT_EQ(file.text(), "\xEF\xBB\xBF");
    ASSERT_FALSE(file.set(u"还", typed({"huán"})));
    EXPECT_EQ(file.text().substr(0, 4), "\xEF\xBB\xBF#");
}

TEST(ReadingsFile, ALineStartingWithTheMarkOfAFileNeverBecomesItsMark) {
    // Garbage after the first line that starts with a UTF-16 mark: once the first line goes, an
    // empty line stays before it, so the file still reads as UTF-8 and keeps its words.
    const std::string garbage("\xFF\xFE\xFF\xFF", 4);
    ReadingsFile file("还 huá\n" + garbage + "\n行 xíng\n");
    ASSERT_TRUE(file.remove(u"还"));
    EXPECT_EQ(file.text(), "\n" + garbage + "\n行 xíng\n");
    EXPECT_FALSE(ReadingsFile(file.text()).isUtf16());
    ASSERT_FALSE(file.set(u"还", typed({"huá"})));
    EXPECT_EQ(
        summary(ReadingsFile(file.text())),
        (Lines{"3 行: xíng", "4 还: huá", "line 2: not UTF-8 text (save the file as UTF-8)"}));
    ReadingsFile byLine(garbage + "\n");
    ASSERT_TRUE(byLine.isUtf16());  // as the file was given: it is taken for UTF-16
    ReadingsFile second("行 xíng\n" + garbage + "\n");
    ASSERT_TRUE(second.removeLine(1));
    EXPECT_EQ(second.text(), "\n" + garbage + "\n");
    // The same for a byte order mark starting the second line of a file without one: it would
    // become the file's mark, and that line's word a word of the file.
    ReadingsFile marked("还 huàn\n\xEF\xBB\xBF还 huán\n");
    EXPECT_EQ(summary(marked), (Lines{"1 还: huàn",
                                      "line 2: \"\xEF\xBB\xBF还\" is not a word of "
                                      "Chinese characters"}));
    ASSERT_TRUE(marked.remove(u"还"));
    EXPECT_EQ(marked.text(), "\n\xEF\xBB\xBF还 huán\n");
    EXPECT_TRUE(ReadingsFile(marked.text()).words().empty());
}

TEST(ReadingsFile, CheckTellsWhatIsWrongWithAnEntry) {
    OwnWord entry;
    EXPECT_FALSE(ReadingsFile::check(u"曾老师", typed({"ZENG1", "lao3", "shi1"}), &entry));
    EXPECT_EQ(tiny::u8(entry.word), "曾老师");
    EXPECT_EQ(entry.readings, typed({"zēng", "lǎo", "shī"}));
    const auto what = [](std::u16string_view word, std::initializer_list<const char*> r) {
        const std::optional<ReadingsProblem> p = ReadingsFile::check(word, typed(r), nullptr);
        return p ? p->message() : std::string("none");
    };
    EXPECT_EQ(what(u"曾老师", {"zēng"}), "曾老师 has 3 characters but 1 reading");
    EXPECT_EQ(what(u"曾老师", {}), "曾老师 has no readings");
    EXPECT_EQ(what(u"", {"a"}), "\"\" is not a word of Chinese characters");
    EXPECT_EQ(what(u"A老师", {"a", "lǎo", "shī"}), "\"A老师\" is not a word of Chinese characters");
    EXPECT_EQ(what(u"还", {"huan6"}), "\"huan6\" is not a pinyin syllable");
}

TEST(ReadingsFile, SetReplacesTheWordsLineAndKeepsEveryOtherLine) {
    ReadingsFile file(
        "# mine\n"
        "曾老师 céng lǎo shī\n"
        "  # indented comment\n"
        "bad line\n"
        "曾老师 zēng\n"
        "还 huán");  // the last line without its end
    ASSERT_FALSE(file.set(u"曾老师", typed({"zeng1", "lao3", "shi1"})));
    EXPECT_EQ(file.text(),
              "# mine\n"
              "曾老师 zēng lǎo shī\n"
              "  # indented comment\n"
              "bad line\n"
              "还 huán");
    ASSERT_FALSE(file.set(u"长大", typed({"zhǎng", "dà"})));
    EXPECT_EQ(file.text(),
              "# mine\n"
              "曾老师 zēng lǎo shī\n"
              "  # indented comment\n"
              "bad line\n"
              "还 huán\n"
              "长大 zhǎng dà\n");
    EXPECT_EQ(summary(file), (Lines{"2 曾老师: zēng lǎo shī", "5 还: huán", "6 长大: zhǎng dà",
                                    "line 4: \"bad\" is not a word of Chinese characters"}));
    // A refused entry changes nothing.
    const std::string before = file.text();
    const std::optional<ReadingsProblem> p = file.set(u"还钱", typed({"huán"}));
    ASSERT_TRUE(p);
    EXPECT_EQ(p->message(), "还钱 has 2 characters but 1 reading");
    EXPECT_EQ(file.text(), before);
}

TEST(ReadingsFile, SetFixesTheLineOfAWordWithAProblem) {
    ReadingsFile file("曾老师 zēng lǎo\n还 huán\n");
    ASSERT_FALSE(file.set(u"曾老师", typed({"zēng", "lǎo", "shī"})));
    EXPECT_EQ(file.text(), "曾老师 zēng lǎo shī\n还 huán\n");
    EXPECT_TRUE(file.problems().empty());
}

TEST(ReadingsFile, ANewFileStartsWithACommentSayingWhatItHolds) {
    ReadingsFile file;
    ASSERT_FALSE(file.set(u"曾老师", typed({"zēng", "lǎo", "shī"})));
    const std::string header =
        "# Readings of your own: a word of Chinese characters, then the reading of each of them.\n"
        "#   曾老师 zēng lǎo shī\n"
        "# \"tones original\" writes 一 and 不 as dictionaries do (一个 yī gè, 不是 bù shì);\n"
        "# \"tones taught\" (the default) as first-grade books do (一个 yí gè, 不是 bú shì).\n";
    EXPECT_EQ(file.text(), header + "曾老师 zēng lǎo shī\n");
    EXPECT_EQ(summary(file), (Lines{"5 曾老师: zēng lǎo shī"}));
    ReadingsFile tones;
    ASSERT_TRUE(tones.setTones(Tones::Original));
    EXPECT_EQ(tones.text(), header + "tones original\n");
}

TEST(ReadingsFile, NewLinesEndAsTheFileEnds) {
    ReadingsFile file("还 huán\r\n");
    ASSERT_FALSE(file.set(u"行", typed({"xíng"})));
    ASSERT_TRUE(file.setTones(Tones::Original));
    EXPECT_EQ(file.text(), "tones original\r\n还 huán\r\n行 xíng\r\n");
}

TEST(ReadingsFile, RemoveTakesEveryLineOfTheWord) {
    ReadingsFile file("还 huán\n# keep\n行 xíng\n还 hái\n还 huán huán\n");
    EXPECT_TRUE(file.remove(u"还"));
    EXPECT_EQ(file.text(), "# keep\n行 xíng\n");
    EXPECT_FALSE(file.remove(u"还"));
    EXPECT_EQ(file.text(), "# keep\n行 xíng\n");
}

TEST(ReadingsFile, LinesAreChangedAndRemovedByNumber) {
    ReadingsFile file("还 huán\nnot a word\n行 xíng\n");
    EXPECT_EQ(file.line(2), "not a word");
    EXPECT_EQ(file.line(4), "");
    ASSERT_FALSE(file.replaceLine(2, u"长大", typed({"zhang3", "da4"})));
    EXPECT_EQ(file.text(), "还 huán\n长大 zhǎng dà\n行 xíng\n");
    // Made into a word another line has: that other line goes.
    ASSERT_FALSE(file.replaceLine(2, u"行", typed({"háng"})));
    EXPECT_EQ(file.text(), "还 huán\n行 háng\n");
    EXPECT_TRUE(file.removeLine(1));
    EXPECT_FALSE(file.removeLine(2));
    EXPECT_FALSE(file.removeLine(0));
    EXPECT_EQ(file.text(), "行 háng\n");
    // A line past the end: the word is set as set() sets it.
    ASSERT_FALSE(file.replaceLine(9, u"还", typed({"huán"})));
    EXPECT_EQ(file.text(), "行 háng\n还 huán\n");
}

TEST(ReadingsFile, SetTonesReplacesTheTonesLineOrAddsOneAfterTheTopComments) {
    ReadingsFile file("# mine\n\n还 huán\n");
    ASSERT_TRUE(file.setTones(Tones::Original));
    EXPECT_EQ(file.text(), "# mine\n\ntones original\n还 huán\n");
    EXPECT_EQ(file.tones(), Tones::Original);
    ReadingsFile twice("tones original\n还 huán\ntones maybe\n");
    ASSERT_TRUE(twice.setTones(Tones::Taught));
    EXPECT_EQ(twice.text(), "tones taught\n还 huán\n");
    EXPECT_EQ(twice.tones(), Tones::Taught);
    ReadingsFile unended("还 huán");
    ASSERT_TRUE(unended.setTones(Tones::Taught));
    EXPECT_EQ(unended.text(), "tones taught\n还 huán");
}

}  // namespace
