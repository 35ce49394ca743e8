// SPDX-License-Identifier: MIT
// The user's own readings on the command line: zphonetic words edits and checks the file in the
// user's configuration directory, and every command that writes readings takes the file's words
// and tones at once; --tones chooses the tones for one run.
#include <gtest/gtest.h>

#include <QFile>
#include <QRectF>
#include <QTemporaryDir>
#include <set>

#include "minihost/slxcore/deck.h"
#include "onekeyrun.h"
#include "qtprinters.h"

namespace {

using onekeytest::Outcome;

class WordsCommand : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        // The user's configuration directory, where the tagging library looks for the file.
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"),
                           dir.filePath(QStringLiteral("config")));
        environment.insert(QStringLiteral("ZPHONETIC_READINGS_FILE"), QString());
        environment.insert(QStringLiteral("ZPHONETIC_TONES"), QString());
    }

    QString file() const { return dir.filePath(QStringLiteral("config/zphonetic/readings.txt")); }
    Outcome zphonetic(const QStringList& arguments) const {
        return onekeytest::runZphonetic(arguments, environment);
    }
    Outcome words(const QStringList& arguments) const {
        return zphonetic(QStringList{QStringLiteral("words")} + arguments);
    }
    QByteArray fileBytes() const {
        QFile in(file());
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray("<no file>");
    }
    void writeFile(const QByteArray& bytes) const {
        ASSERT_TRUE(QDir().mkpath(dir.filePath(QStringLiteral("config/zphonetic"))));
        QFile out(file());
        ASSERT_TRUE(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
        out.write(bytes);
    }

    // A deck whose slide 1 holds each of `texts` in a text box of its own.
    QString writeDeck(const QStringList& texts) const {
        auto deck = minihost::Deck::create(1);
        for (int i = 0; i < texts.size(); ++i)
            deck->addTextBox(1, texts.at(i), QRectF(40, 40 + 70 * i, 500, 60));
        const QString path = dir.filePath(QStringLiteral("in.pptx"));
        EXPECT_TRUE(deck->save(path, nullptr));
        return path;
    }
    // The texts of the boxes `zphonetic onekey` (with `extra` arguments) writes for `deck` (a
    // text ending in punctuation leaves a space after its last reading).
    QStringList oneKey(const QString& deck, const QStringList& extra = {}) const {
        const QString out = dir.filePath(QStringLiteral("out.pptx"));
        QFile::remove(out);
        const Outcome run = zphonetic(
            QStringList{QStringLiteral("onekey"), deck, QStringLiteral("-o"), out} + extra);
        EXPECT_EQ(run.status, 0) << run.err.toStdString();
        QString error;
        const auto before = minihost::Deck::loadFile(deck, &error);
        const auto after = minihost::Deck::loadFile(out, &error);
        if (!before || !after) return {QStringLiteral("<no deck: %1>").arg(error)};
        std::set<int> old;
        for (const minihost::ShapeInfo& shape : before->shapes(1)) old.insert(shape.id);
        QStringList texts;
        for (const minihost::ShapeInfo& shape : after->shapes(1))
            if (!old.count(shape.id)) texts << shape.text;
        return texts;
    }

    QTemporaryDir dir;
    QProcessEnvironment environment;
};

TEST_F(WordsCommand, AddListRemoveAndTheTonesEditTheFileInTheConfigurationDirectory) {
    Outcome run = words({QStringLiteral("path")});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, file() + QLatin1Char('\n'));

    run = words({QStringLiteral("add"), QStringLiteral("曾老师"), QStringLiteral("zeng1"),
                 QStringLiteral("lao3"), QStringLiteral("shi1")});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(run.out, QStringLiteral("added 曾老师 zēng lǎo shī\n"));
    run = words({QStringLiteral("add"), QStringLiteral("还钱"), QStringLiteral("huán qián")});
    EXPECT_EQ(run.out, QStringLiteral("added 还钱 huán qián\n"));
    run = words({QStringLiteral("add"), QStringLiteral("还钱"), QStringLiteral("hai2 qian2")});
    EXPECT_EQ(run.out, QStringLiteral("changed 还钱: hái qián (was huán qián)\n"));
    run = words({QStringLiteral("tones"), QStringLiteral("original")});
    EXPECT_EQ(run.out, QStringLiteral("tones original\n"));
    EXPECT_EQ(
        fileBytes(),
        "# Readings of your own: a word of Chinese characters, then the reading of each of "
        "them.\n"
        "#   曾老师 zēng lǎo shī\n"
        "# \"tones original\" writes 一 and 不 as dictionaries do (一个 yī gè, 不是 bù shì);\n"
        "# \"tones taught\" (the default) as first-grade books do (一个 yí gè, 不是 bú "
        "shì).\n"
        "tones original\n"
        "曾老师 zēng lǎo shī\n"
        "还钱 hái qián\n");

    run = words({QStringLiteral("list")});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, QStringLiteral("曾老师 zēng lǎo shī\n还钱 hái qián\n"));
    EXPECT_EQ(run.err, QString());
    run = words({QStringLiteral("tones")});
    EXPECT_EQ(run.out, QStringLiteral("original\n"));
    run = words({QStringLiteral("check")});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, file() + QStringLiteral(": 2 words, tones original: every line is used\n"));

    run = words({QStringLiteral("remove"), QStringLiteral("还钱")});
    EXPECT_EQ(run.out, QStringLiteral("removed 还钱\n"));
    run = words({QStringLiteral("remove"), QStringLiteral("还钱")});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(onekeytest::errorLine(run.err),
              QStringLiteral("zphonetic: 还钱: not among your readings (%1)").arg(file()));
    run = words({QStringLiteral("list")});
    EXPECT_EQ(run.out, QStringLiteral("曾老师 zēng lǎo shī\n"));
}

TEST_F(WordsCommand, AWrongEntryIsRefusedAndTheFileLeftAsItWas) {
    writeFile("还 huán\n");
    const struct {
        QStringList arguments;
        const char* error;
    } cases[] = {
        {{QStringLiteral("曾老师"), QStringLiteral("zēng lǎo")},
         "zphonetic: words add: 曾老师 has 3 characters but 2 readings"},
        {{QStringLiteral("曾老师"), QStringLiteral("zēng"), QStringLiteral("lǎo"),
          QStringLiteral("sh")},
         "zphonetic: words add: \"sh\" is not a pinyin syllable"},
        {{QStringLiteral("Mr曾"), QStringLiteral("mister zēng")},
         "zphonetic: words add: \"Mr曾\" is not a word of Chinese characters"},
        {{QStringLiteral("曾老师")}, "zphonetic: words add: needs WORD READING..."},
    };
    for (const auto& c : cases) {
        const Outcome run = words(QStringList{QStringLiteral("add")} + c.arguments);
        EXPECT_EQ(run.status, 1) << c.error;
        EXPECT_EQ(onekeytest::errorLine(run.err), QString::fromUtf8(c.error));
        EXPECT_EQ(fileBytes(), "还 huán\n");
    }
    Outcome run = words({QStringLiteral("tones"), QStringLiteral("written")});
    EXPECT_EQ(onekeytest::errorLine(run.err),
              QStringLiteral("zphonetic: words tones: \"written\" is not taught or original"));
    run = words({QStringLiteral("frobnicate")});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(onekeytest::errorLine(run.err),
              QStringLiteral("zphonetic: words: \"frobnicate\" is not list, add, remove, check, "
                             "tones or path (see zphonetic words --help)"));
    EXPECT_EQ(fileBytes(), "还 huán\n");
}

TEST_F(WordsCommand, CheckNamesEveryLineThatIsNotUsedAndFails) {
    writeFile(
        "# mine\n"
        "曾老师 zēng lǎo\n"  // the wrong number of readings
        "曾老师 zēng lǎo shī\n"
        "\xD4\xF8\xC0\xCF\xCA\xA6 zeng1 lao3 shi1\n"  // GB18030, not UTF-8
        "Zeng laoshi\n"                               // no word
        "还 xyz\n"                                    // no syllable
        "tones always\n");
    Outcome run = words({QStringLiteral("check")});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, QString());
    const QString at = QStringLiteral("zphonetic: ") + file() + QStringLiteral(": ");
    EXPECT_EQ(run.err, at + "line 2: 曾老师 has 3 characters but 2 readings\n" + at +
                           "line 4: not UTF-8 text (save the file as UTF-8)\n" + at +
                           "line 5: \"Zeng\" is not a word of Chinese characters\n" + at +
                           "line 6: \"xyz\" is not a pinyin syllable\n" + at +
                           "line 7: tones must be \"taught\" or \"original\", not \"always\"\n");
    // The words used are listed, with a word about the others.
    run = words({QStringLiteral("list")});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, QStringLiteral("曾老师 zēng lǎo shī\n"));
    EXPECT_EQ(run.err, at + "5 lines are not used (zphonetic words check names them)\n");
}

TEST_F(WordsCommand, CheckOfAMissingAnEmptyOrAUtf16File) {
    Outcome run = words({QStringLiteral("check")});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, file() + QStringLiteral(": no such file: no readings of your own\n"));
    writeFile("");
    run = words({QStringLiteral("check")});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, file() + QStringLiteral(": 0 words, tones taught: every line is used\n"));
    writeFile(QByteArray("\xFF\xFE\xD8\x8F \x00h\x00u\x00\xE1\x00n\x00\n\x00", 16));
    run = words({QStringLiteral("check")});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(onekeytest::errorLine(run.err),
              QStringLiteral("zphonetic: %1: the file is UTF-16 text, not UTF-8 (save it as "
                             "UTF-8): none of it is read")
                  .arg(file()));
    run = words({QStringLiteral("add"), QStringLiteral("还"), QStringLiteral("huán")});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(onekeytest::errorLine(run.err),
              QStringLiteral("zphonetic: %1: the file is UTF-16 text, not UTF-8 (save it as "
                             "UTF-8): left as it is")
                  .arg(file()));
}

// The colloquial readings (谁 shéi, 血 xiě) are a teacher's to choose: the engine keeps the
// standard ones.
TEST_F(WordsCommand, AWordOfTheFileChangesTheOneKeyOutputAndTheDialogsReadings) {
    const QString deck =
        writeDeck({QStringLiteral("谁来了？"), QStringLiteral("他流血了，你找谁？")});
    EXPECT_EQ(oneKey(deck), QStringList({QStringLiteral("shuí lái le "),
                                         QStringLiteral("tā liú xuè le nǐ zhǎo shuí ")}));
    Outcome run = zphonetic({QStringLiteral("readings"), QStringLiteral("谁来了")});
    EXPECT_TRUE(run.out.startsWith(QStringLiteral("0\t谁\tshuí\tshuí shéi\n")))
        << run.out.toStdString();

    ASSERT_EQ(words({QStringLiteral("add"), QStringLiteral("谁"), QStringLiteral("shei2")}).status,
              0);
    ASSERT_EQ(words({QStringLiteral("add"), QStringLiteral("流血"), QStringLiteral("liu2"),
                     QStringLiteral("xie3")})
                  .status,
              0);
    EXPECT_EQ(oneKey(deck), QStringList({QStringLiteral("shéi lái le "),
                                         QStringLiteral("tā liú xiě le nǐ zhǎo shéi ")}));
    run = zphonetic({QStringLiteral("readings"), QStringLiteral("谁来了")});
    EXPECT_EQ(run.out,
              QStringLiteral("0\t谁\tshéi\tshéi shuí\n1\t来\tlái\tlái\n2\t了\tle\tle liǎo liào\n"));
    EXPECT_EQ(run.err, QString());

    // A line the library cannot use is skipped with a note; the command still works.
    writeFile("流血 liú\n谁 shéi\n");
    run = zphonetic({QStringLiteral("readings"), QStringLiteral("他流血了")});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.out.contains(QStringLiteral("2\t血\txuè\t"))) << run.out.toStdString();
    EXPECT_EQ(run.err, QStringLiteral("libPinyinTagger: %1: line 1 skipped: 流血 has 2 "
                                      "characters but 1 reading\n")
                           .arg(file()));
}

TEST_F(WordsCommand, OriginalTonesWriteYiAndBuAsDictionariesDoAndChangeNothingElse) {
    const QStringList texts{QStringLiteral("一个人不是学生。"), QStringLiteral("一天不会一样。"),
                            QStringLiteral("第一，看一看，好不好？"),
                            QStringLiteral("银行行长还钱。")};
    const QString deck = writeDeck(texts);
    const QStringList taught{QStringLiteral("yí ɡè rén bú shì xué shēnɡ "),
                             QStringLiteral("yì tiān bú huì yí yànɡ "),
                             QStringLiteral("dì yī kàn yi kàn hǎo bu hǎo "),
                             QStringLiteral("yín hánɡ hánɡ zhǎnɡ huán qián ")};
    const QStringList original{QStringLiteral("yī ɡè rén bù shì xué shēnɡ "),
                               QStringLiteral("yī tiān bù huì yī yànɡ "),
                               QStringLiteral("dì yī kàn yi kàn hǎo bu hǎo "),
                               QStringLiteral("yín hánɡ hánɡ zhǎnɡ huán qián ")};
    EXPECT_EQ(oneKey(deck), taught);
    EXPECT_EQ(oneKey(deck, {QStringLiteral("--tones"), QStringLiteral("original")}), original);
    // Kept with the user's readings, the choice holds for every command; --tones still wins.
    ASSERT_EQ(words({QStringLiteral("tones"), QStringLiteral("original")}).status, 0);
    EXPECT_EQ(oneKey(deck), original);
    EXPECT_EQ(oneKey(deck, {QStringLiteral("--tones"), QStringLiteral("taught")}), taught);
    const Outcome run = zphonetic({QStringLiteral("readings"), QStringLiteral("不是")});
    EXPECT_EQ(run.out, QStringLiteral("0\t不\tbù\tbù bú\n1\t是\tshì\tshì\n"));

    const Outcome wrong = zphonetic({QStringLiteral("onekey"), deck, QStringLiteral("-o"),
                                     dir.filePath(QStringLiteral("out.pptx")),
                                     QStringLiteral("--tones"), QStringLiteral("both")});
    EXPECT_EQ(wrong.status, 1);
    EXPECT_EQ(onekeytest::errorLine(wrong.err),
              QStringLiteral("zphonetic: --tones: \"both\" is not taught or original"));
}

}  // namespace
