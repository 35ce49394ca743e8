// SPDX-License-Identifier: MIT
// The readings the library must give with the dictionaries the build compiles.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "PinyinTagger.h"
#include "ReadingsStore.h"
#include "TinyDictionaries.h"

namespace {

// A sentence of the teachers' suite (data/sentences.txt): its line, its Chinese characters as the
// add-on feeds them (only U+4E00..U+9FA5, run together), and their readings as a textbook prints
// them.
struct Sentence {
    size_t line;
    std::string text;
    std::string han;
    std::string readings;
};

std::vector<Sentence> teachersSuite() {
    std::vector<Sentence> suite;
    std::ifstream in(ZPHONETIC_SENTENCES);
    EXPECT_TRUE(in) << ZPHONETIC_SENTENCES;
    std::string line;
    for (size_t lineNo = 1; std::getline(in, line); ++lineNo) {
        if (line.empty() || line[0] == '#') continue;
        const size_t tab = line.find('\t');
        EXPECT_NE(tab, std::string::npos) << "line " << lineNo;
        if (tab == std::string::npos) continue;
        std::u16string han;
        for (char16_t c : tiny::u16(line.substr(0, tab).c_str())) {
            if (c >= 0x4E00 && c <= 0x9FA5) han.push_back(c);
        }
        suite.push_back({lineNo, line.substr(0, tab), tiny::u8(han), line.substr(tab + 1)});
    }
    return suite;
}

class BuiltDictionaries : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        // No readings of the user's, whoever runs the tests: a file of the tests' own, which
        // does not exist until a test writes it.
        home_ = std::make_unique<tiny::TempDir>();
        noOwnReadings_ = std::make_unique<tiny::ScopedVariable>(
            zphonetic::tagger::kReadingsFileVariable, readingsFile().c_str());
        noTones_ =
            std::make_unique<tiny::ScopedVariable>(zphonetic::tagger::kTonesVariable, nullptr);
        const std::u16string d = tiny::u16(ZPHONETIC_DICT_DIR "/");
        ASSERT_EQ(OpenDictionary((d + u"Pinyin.dic").c_str(), (d + u"firrule.dic").c_str(),
                                 (d + u"secrule.dic").c_str()),
                  0);
        ASSERT_EQ(GetPinyinObject(&tagger_), 0);
    }
    static void TearDownTestSuite() {
        ReleasePinyinObject(tagger_);
        CloseDictionary();
        noTones_.reset();
        noOwnReadings_.reset();
        home_.reset();
    }
    static std::string readingsFile() { return home_->path() + "/readings.txt"; }

    static std::string readings(const char* utf8) { return readingsBy(tagger_, utf8); }
    // The readings of `text` joined by spaces, as the add-on reads them from the answer.
    static std::string readingsBy(void* tagger, const char* utf8) {
        const std::u16string text = tiny::u16(utf8);
        char16_t* answer = nullptr;
        int32_t length = 0;
        if (PinyinTagSen(tagger, text.c_str(), &answer, &length) != 0) return "<failed>";
        const std::u16string a(answer, static_cast<size_t>(length));
        delete[] answer;
        std::u16string out;
        size_t p = 0;
        for (size_t i = 0; i < text.size(); ++i) {
            if (p + 1 >= a.size() || a[p] != text[i] || a[p + 1] != u'/') return "<malformed>";
            size_t end = a.find(u'/', p + 2);
            end = end == std::u16string::npos ? a.size() : end - 1;
            if (i > 0) out += u' ';
            out += a.substr(p + 2, end - p - 2);
            p = end;
        }
        return tiny::u8(out);
    }

    static void* tagger_;
    static std::unique_ptr<tiny::TempDir> home_;
    static std::unique_ptr<tiny::ScopedVariable> noOwnReadings_;
    static std::unique_ptr<tiny::ScopedVariable> noTones_;
};

void* BuiltDictionaries::tagger_ = nullptr;
std::unique_ptr<tiny::TempDir> BuiltDictionaries::home_;
std::unique_ptr<tiny::ScopedVariable> BuiltDictionaries::noOwnReadings_;
std::unique_ptr<tiny::ScopedVariable> BuiltDictionaries::noTones_;

TEST_F(BuiltDictionaries, SentencesReadInContext) {
    const char* expected[][2] = {
        {"一个", "yí gè"},
        {"一样", "yí yàng"},
        {"一天", "yì tiān"},
        {"一年", "yì nián"},
        {"第一", "dì yī"},
        {"一二三", "yī èr sān"},
        {"不是", "bú shì"},
        {"不对", "bú duì"},
        {"不好", "bù hǎo"},
        {"看一看", "kàn yi kàn"},
        {"银行行长", "yín háng háng zhǎng"},
        {"还钱", "huán qián"},
        {"还是", "hái shì"},
        {"觉得", "jué de"},
        {"我得走了", "wǒ děi zǒu le"},
        {"音乐", "yīn yuè"},
        {"快乐", "kuài lè"},
        {"重新", "chóng xīn"},
        {"重要", "zhòng yào"},
        {"便宜", "pián yi"},
        {"方便", "fāng biàn"},
    };
    for (const auto& [text, reading] : expected) EXPECT_EQ(readings(text), reading) << text;
}

// The teachers' suite (data/sentences.txt): ordinary sentences, each with the reading of every
// Chinese character as a textbook prints it, fed as the add-on feeds them (only U+4E00..U+9FA5,
// run together). Every sentence must come out right; the figures are printed for the record.
TEST_F(BuiltDictionaries, TeachersSentencesReadAsTextbooksPrintThem) {
    size_t sentences = 0, rightSentences = 0, characters = 0, rightCharacters = 0;
    for (const Sentence& sentence : teachersSuite()) {
        const std::string& want = sentence.readings;
        const std::string got = readings(sentence.han.c_str());
        std::istringstream w(want), g(got);
        std::string ws, gs;
        size_t count = 0, right = 0;
        while (w >> ws) {
            ++count;
            right += (g >> gs) && gs == ws;
        }
        ASSERT_EQ(count, tiny::u16(sentence.han.c_str()).size())
            << "line " << sentence.line << ": one reading per character";
        ++sentences;
        characters += count;
        rightCharacters += right;
        rightSentences += got == want;
        EXPECT_EQ(got, want) << "line " << sentence.line << ": " << sentence.text;
    }
    EXPECT_GE(sentences, 1300u);
    std::printf(
        "teachers' suite: %zu of %zu sentences right (%.2f%%), %zu of %zu characters "
        "(%.2f%%)\n",
        rightSentences, sentences, 100.0 * rightSentences / sentences, rightCharacters, characters,
        100.0 * rightCharacters / characters);
}

TEST_F(BuiltDictionaries, LoneCharactersListModernReadingsDefaultFirst) {
    EXPECT_EQ(readings("行").rfind("xíng háng ", 0), 0u) << readings("行");
    EXPECT_EQ(readings("还"), "hái huán");  // no archaic fú
    EXPECT_EQ(readings("都"), "dōu dū");
    EXPECT_EQ(readings("得"), "dé de děi");
}

TEST_F(BuiltDictionaries, EveryTaggableUnitGetsAWellFormedAnswer) {
    // The add-on passes units of these ranges only; each must come back as unit, "/", reading.
    const std::pair<char16_t, char16_t> ranges[] = {
        {0x3040, 0x30FF}, {0x3300, 0x33FF}, {0x4E00, 0x9FFF}, {0xF900, 0xFAFF}, {0xFF00, 0xFFEF}};
    std::u16string text;
    for (const auto& [first, last] : ranges) {
        for (char32_t c = first; c <= last; ++c) text.push_back(static_cast<char16_t>(c));
    }
    char16_t* answer = nullptr;
    int32_t length = 0;
    ASSERT_EQ(PinyinTagSen(tagger_, text.c_str(), &answer, &length), 0);
    const std::u16string a(answer, static_cast<size_t>(length));
    delete[] answer;
    size_t p = 0;
    for (char16_t c : text) {
        ASSERT_TRUE(p + 1 < a.size() && a[p] == c && a[p + 1] == u'/') << std::hex << int(c);
        p += 2;
        while (p < a.size() && a[p] != u'/') ++p;  // the reading, then the next unit
        if (p < a.size()) --p;
    }
    EXPECT_EQ(p, a.size());
    EXPECT_EQ(a.find(u' '), std::u16string::npos);  // one reading each in a sentence
}

// With the tones as dictionaries write them, every sentence of the teachers' suite reads as the
// textbook prints it but for the changed tones of 一 and 不, which go back to yī and bù (their
// light tones stay): nothing else changes.
TEST_F(BuiltDictionaries, OriginalTonesChangeOnlyTheChangedTonesOf一And不) {
    const tiny::ScopedVariable original(zphonetic::tagger::kTonesVariable, "original");
    void* tagger = nullptr;
    ASSERT_EQ(GetPinyinObject(&tagger), 0);
    size_t changed = 0;
    for (const Sentence& sentence : teachersSuite()) {
        const std::u16string han = tiny::u16(sentence.han.c_str());
        std::istringstream taught(sentence.readings);
        std::string want, reading;
        for (size_t i = 0; taught >> reading; ++i) {
            const bool yi =
                i < han.size() && han[i] == u'一' && (reading == "yí" || reading == "yì");
            const bool bu = i < han.size() && han[i] == u'不' && reading == "bú";
            changed += yi || bu;
            want += (i > 0 ? " " : "") + (yi   ? std::string("yī")
                                          : bu ? std::string("bù")
                                               : reading);
        }
        EXPECT_EQ(readingsBy(tagger, sentence.han.c_str()), want)
            << "line " << sentence.line << ": " << sentence.text;
    }
    EXPECT_GE(changed, 50u);
    EXPECT_EQ(readingsBy(tagger, "一个"), "yī gè");
    EXPECT_EQ(readingsBy(tagger, "不是"), "bù shì");
    EXPECT_EQ(readingsBy(tagger, "看一看"), "kàn yi kàn");
    ReleasePinyinObject(tagger);
    std::printf("original tones: %zu syllables of 一 and 不 in the suite written otherwise\n",
                changed);
}

TEST_F(BuiltDictionaries, AWordOfTheUsersOwnWinsWhereverItOccurs) {
    // The colloquial readings, which the engine leaves to the teacher, and 一个 as dictionaries
    // write it while the tones are as taught.
    std::ofstream(readingsFile()) << "谁 shéi\n流血 liú xiě\n一个 yī gè\n";
    EXPECT_EQ(readings("谁流血了"), "shuí liú xuè le");
    void* tagger = nullptr;
    ASSERT_EQ(GetPinyinObject(&tagger), 0);
    EXPECT_EQ(readingsBy(tagger, "谁流血了"), "shéi liú xiě le");
    EXPECT_EQ(readingsBy(tagger, "你找谁"), "nǐ zhǎo shéi");
    EXPECT_EQ(readingsBy(tagger, "一个不是"), "yī gè bú shì");
    EXPECT_EQ(readingsBy(tagger, "血液"), "xuè yè");
    EXPECT_EQ(readingsBy(tagger, "谁"), "shéi shuí");
    ReleasePinyinObject(tagger);
    std::remove(readingsFile().c_str());
}

}  // namespace
