// SPDX-License-Identifier: MIT
// zphonetic onekey around the add-on: the host checks the tagging library and its dictionaries
// before the command, and --place moves the new boxes under (or over) their texts. The geometry
// is read back from the written decks.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QRectF>
#include <QTemporaryDir>
#include <memory>
#include <set>

#include "decktestutil.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/readingsover.h"
#include "onekeyrun.h"

namespace {

using onekeytest::errorLine;
using onekeytest::Outcome;
using onekeytest::runOneKey;

QString lessonDeck() {
    return QStringLiteral(ZPHONETIC_EXAMPLES_DIR "/lesson.pptx");
}

bool hasChinese(const QString& text) {
    for (const QChar c : text)
        if (c.unicode() >= 0x4E00 && c.unicode() <= 0x9FA5) return true;
    return false;
}

class HostChecks : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(dir.isValid()); }
    QString path(const QString& name) const { return dir.filePath(name); }

    // Runs onekey on the example deck with `environment`; expects it to fail naming `missing`.
    void expectMissing(const QProcessEnvironment& environment, const QString& missing) {
        const QString out = path(QStringLiteral("out.pptx"));
        const Outcome run = runOneKey({lessonDeck(), QStringLiteral("-o"), out}, environment);
        EXPECT_EQ(run.status, 1);
        const QString line = errorLine(run.err);
        EXPECT_TRUE(line.startsWith(QStringLiteral("zphonetic: %1: ").arg(missing)))
            << run.err.toStdString();
        EXPECT_TRUE(line.contains(QStringLiteral(" is missing"))) << line.toStdString();
        // One line, and the add-on never ran: no warning of its own, nothing written.
        EXPECT_EQ(run.err.count(QStringLiteral("zphonetic: ")), 1) << run.err.toStdString();
        EXPECT_TRUE(run.out.isEmpty());
        EXPECT_FALSE(QFile::exists(out));
    }

    QTemporaryDir dir;
};

TEST_F(HostChecks, WithoutTheTaggingLibraryTheCommandStopsNamingIt) {
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("ZPHONETIC_TAGGER_DIR"), path(QStringLiteral("no-tagger")));
    expectMissing(environment, path(QStringLiteral("no-tagger/libPinyinTagger.so")));
}

TEST_F(HostChecks, WithoutEachDictionaryTheCommandStopsNamingIt) {
    const QString built =
        QCoreApplication::applicationDirPath() + QStringLiteral("/../share/zphonetic/dict");
    const QStringList names{QStringLiteral("Pinyin.dic"), QStringLiteral("firrule.dic"),
                            QStringLiteral("secrule.dic")};
    for (const QString& gone : names) {
        SCOPED_TRACE(gone.toStdString());
        // The dictionaries but one, in a directory of their own.
        const QString copy = path(QStringLiteral("dict-without-") + gone);
        ASSERT_TRUE(QDir().mkpath(copy));
        for (const QString& name : names) {
            if (name == gone) continue;
            ASSERT_TRUE(
                QFile::copy(built + QLatin1Char('/') + name, copy + QLatin1Char('/') + name));
        }
        QProcessEnvironment environment;
        environment.insert(QStringLiteral("ZPHONETIC_DICT_DIR"), copy);
        expectMissing(environment, copy + QLatin1Char('/') + gone);
    }
}

TEST_F(HostChecks, AllThereTheCommandRuns) {
    const QString out = path(QStringLiteral("out.pptx"));
    const Outcome run = runOneKey({lessonDeck(), QStringLiteral("-o"), out});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_TRUE(QFile::exists(out));
}

// What a test needs of each new box: where it is, and where the Chinese texts it may be under are.
struct Written {
    std::unique_ptr<minihost::Deck> before, after;
};

class Placing : public HostChecks {
protected:
    Written place(const QString& in, const QString& where) {
        const QString out = path(QStringLiteral("placed-%1.pptx").arg(where));
        const Outcome run =
            runOneKey({in, QStringLiteral("-o"), out, QStringLiteral("--all-slides"),
                       QStringLiteral("--place"), where});
        EXPECT_EQ(run.status, 0) << run.err.toStdString();
        QString error;
        Written written{minihost::Deck::loadFile(in, &error),
                        minihost::Deck::loadFile(out, &error)};
        EXPECT_TRUE(written.after) << error.toStdString();
        return written;
    }

    // Every new box lies inside its slide, clear of every other new box, with a Chinese text
    // right beside it (`below`: over the box; else under it) that it shares columns with and
    // does not cover. Below, it covers no Chinese text at all. Returns the number of new boxes.
    int expectPlaced(const Written& written, bool below) {
        int count = 0;
        const QRectF page(QPointF(0, 0), written.after->slideSize());
        for (int slide = 1; slide <= written.after->slideCount(); ++slide) {
            std::set<int> old;
            QList<QRectF> sources;
            for (const minihost::ShapeInfo& shape : written.before->shapes(slide)) {
                old.insert(shape.id);
                if (shape.hasTextFrame && hasChinese(shape.text))
                    sources << written.after->placeOf(slide, shape.id);
            }
            QList<QRectF> boxes;
            for (const minihost::ShapeInfo& shape : written.after->shapes(slide))
                if (!old.count(shape.id)) boxes << shape.box;
            for (const QRectF& box : boxes) {
                SCOPED_TRACE(QStringLiteral("slide %1, box at %2, %3, %4 x %5")
                                 .arg(slide)
                                 .arg(box.left())
                                 .arg(box.top())
                                 .arg(box.width())
                                 .arg(box.height())
                                 .toStdString());
                ++count;
                EXPECT_GT(box.width(), 0);
                EXPECT_GT(box.height(), 0);
                EXPECT_TRUE(page.contains(box));
                bool beside = false;
                for (const QRectF& source : sources) {
                    EXPECT_FALSE(below && source.intersects(box));
                    const bool sharesColumns =
                        source.left() < box.right() && box.left() < source.right();
                    if (sharesColumns &&
                        (below ? box.top() >= source.bottom() : box.bottom() <= source.top()) &&
                        !source.intersects(box))
                        beside = true;
                }
                EXPECT_TRUE(beside) << (below ? "under" : "over") << " no Chinese text";
                for (const QRectF& other : boxes) {
                    if (&other == &box) continue;
                    EXPECT_FALSE(other.intersects(box));
                }
            }
        }
        return count;
    }
};

TEST_F(Placing, BelowPutsEachBoxOfTheExampleRightUnderItsTextAsWideAsItsShape) {
    const Written written = place(lessonDeck(), QStringLiteral("below"));
    ASSERT_TRUE(written.after);
    EXPECT_EQ(expectPlaced(written, true), 6);
    for (int slide = 1; slide <= 3; ++slide) {
        const QList<minihost::ShapeInfo> shapes = written.after->shapes(slide);
        ASSERT_EQ(shapes.size(), 4);
        // The title's readings under the title, the text's under the text: same left, same width.
        for (int i : {0, 1}) {
            EXPECT_EQ(shapes[i + 2].box.left(), shapes[i].box.left());
            EXPECT_EQ(shapes[i + 2].box.width(), shapes[i].box.width());
            EXPECT_EQ(shapes[i + 2].box.top(), shapes[i].box.bottom());
        }
    }
}

TEST_F(Placing, AbovePutsEachBoxOfTheExampleOverItsText) {
    const Written written = place(lessonDeck(), QStringLiteral("above"));
    ASSERT_TRUE(written.after);
    EXPECT_EQ(expectPlaced(written, false), 6);
}

TEST_F(Placing, TheDefaultIsTheAddonsOwnPlace) {
    const Written written = place(lessonDeck(), QStringLiteral("addon"));
    ASSERT_TRUE(written.after);
    for (int slide = 1; slide <= 3; ++slide)
        for (const minihost::ShapeInfo& shape : written.after->shapes(slide).mid(2))
            EXPECT_EQ(shape.box.topLeft(), QPointF(400, 250));
}

TEST_F(Placing, BelowOnThePublicDecksWithChinese) {
    // Among them a placeholder that takes its place from its layout, and a shape 0 pt high.
    for (const char* name :
         {"poi-bug64693.pptx", "poi-with_japanese.pptx", "pypptx-txt-font-typeface.pptx"}) {
        SCOPED_TRACE(name);
        const QString in = decktest::testDeckDir() + QLatin1Char('/') + QLatin1String(name);
        if (!QFile::exists(in)) GTEST_SKIP() << "no " << in.toStdString();
        const Written written = place(in, QStringLiteral("below"));
        ASSERT_TRUE(written.after);
        EXPECT_EQ(expectPlaced(written, true), 1);
    }
}

TEST_F(Placing, ThePublicDecksWithoutChineseAreNotWrittenAndSaySo) {
    for (const char* name :
         {"pypptx-test_slides.pptx", "pypptx-txt-font-props.pptx", "pypptx-txt-text.pptx"}) {
        SCOPED_TRACE(name);
        const QString in = decktest::testDeckDir() + QLatin1Char('/') + QLatin1String(name);
        if (!QFile::exists(in)) GTEST_SKIP() << "no " << in.toStdString();
        const QString out = path(QStringLiteral("out.pptx"));
        const Outcome run =
            runOneKey({in, QStringLiteral("-o"), out, QStringLiteral("--all-slides"),
                       QStringLiteral("--place"), QStringLiteral("below")});
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(
            errorLine(run.err),
            QStringLiteral("zphonetic: %1: the selection has no Chinese text: nothing written")
                .arg(in));
        EXPECT_FALSE(QFile::exists(out));
    }
}

TEST_F(Placing, OverPutsTheReadingsOfEveryTextOfTheExampleOverItsCharacters) {
    const QString out = path(QStringLiteral("over.pptx"));
    const Outcome run =
        runOneKey({lessonDeck(), QStringLiteral("-o"), out, QStringLiteral("--slide"),
                   QStringLiteral("2"), QStringLiteral("--place"), QStringLiteral("over")});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(run.out,
              QStringLiteral("slide 2: readings over shape 2: \"duō yīn zì\"\n"
                             "slide 2: readings over shape 3: \"yín hánɡ hánɡ zhǎnɡ hái shì jué "
                             "de yīn yuè hěn kuài lè tā chónɡ xīn shuō le yí biàn zhè hěn zhònɡ "
                             "yào \"\n"
                             "wrote %1: readings over 2 texts on 1 slide\n")
                  .arg(out));
    QString error;
    auto deck = minihost::Deck::loadFile(out, &error);
    ASSERT_TRUE(deck) << error.toStdString();
    // The two texts and a group of readings over each: the add-on's boxes are gone.
    EXPECT_EQ(deck->shapes(2).size(), 2 + 1 + 3 + 1 + 24);
    EXPECT_EQ(deck->readingsOver(2, 2).size(), 3);
    EXPECT_EQ(deck->readingsOver(2, 3).size(), 24);
    EXPECT_EQ(deck->readingsOver(2, 3).at(2).syllable, QStringLiteral("hánɡ"));

    // Again over the result: the readings are replaced, not doubled.
    const QString again = path(QStringLiteral("again.pptx"));
    const Outcome second =
        runOneKey({out, QStringLiteral("-o"), again, QStringLiteral("--slide"), QStringLiteral("2"),
                   QStringLiteral("--select"), QStringLiteral("3"), QStringLiteral("--place"),
                   QStringLiteral("over")});
    ASSERT_EQ(second.status, 0) << second.err.toStdString();
    auto twice = minihost::Deck::loadFile(again, &error);
    ASSERT_TRUE(twice) << error.toStdString();
    EXPECT_EQ(twice->shapes(2).size(), deck->shapes(2).size());
    EXPECT_EQ(twice->readingsOver(2, 3), deck->readingsOver(2, 3));
}

TEST_F(Placing, OverASelectedRunPutsReadingsOverItsCharactersOnly) {
    const QString out = path(QStringLiteral("over.pptx"));
    const Outcome run =
        runOneKey({lessonDeck(), QStringLiteral("-o"), out, QStringLiteral("--select"),
                   QStringLiteral("3:13+6"), QStringLiteral("--place"), QStringLiteral("over")});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    QString error;
    auto deck = minihost::Deck::loadFile(out, &error);
    ASSERT_TRUE(deck) << error.toStdString();
    // 举头望明月， : five characters from 13.
    const QList<minihost::Reading> readings = deck->readingsOver(1, 3);
    ASSERT_EQ(readings.size(), 5);
    EXPECT_EQ(readings.first().position, 13);
    EXPECT_EQ(readings.last().position, 17);
}

TEST_F(Placing, AnUnknownPlaceIsAnError) {
    const Outcome run =
        runOneKey({lessonDeck(), QStringLiteral("-o"), path(QStringLiteral("out.pptx")),
                   QStringLiteral("--place"), QStringLiteral("left")});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(errorLine(run.err),
              QStringLiteral("zphonetic: --place: \"left\" is not addon, below, above or over"));
}

}  // namespace
