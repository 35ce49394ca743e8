// SPDX-License-Identifier: MIT
// Decks made as an attacker would make them (hostiledecks.h), each class past its limit and, where
// it has work to do, within it, through the three programs a teacher opens them with:
// zphonetic show, zphonetic onekey --all-slides and the studio's window (hostile_studio), each in a
// process of its own whose address space is limited to 1.5 GiB (as `ulimit -v` does) and its
// processor time to a minute (as `ulimit -t` does, so that a loaded machine does not change the
// verdict). Every run must end in a written deck or in one line that names the limit passed;
// never a crash, a time-out or an allocation failure. The studio must stay under 1 GiB resident.
#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <cstdio>

#include "hostiledecks.h"
#include "limitedrun.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/decklimits.h"
#include "qtprinters.h"

namespace {

constexpr std::uint64_t kAddressSpace = 3ull << 29;  // 1.5 GiB
constexpr int kCpuSeconds = 60;
constexpr int kWaitSeconds = 600;             // for a program that waits instead of working
constexpr long kStudioResidentKb = 1l << 20;  // 1 GiB

using hostile::Outcome;

class HostileDeck : public ::testing::Test {
protected:
    // Writes `deck` to a file of the temporary folder.
    QString write(const QByteArray& deck) {
        const QString path = dir.filePath(QStringLiteral("hostile.pptx"));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(deck);
        return path;
    }
    QString output() const { return dir.filePath(QStringLiteral("out.pptx")); }

    Outcome show(const QString& deck) {
        return ended("show", hostile::runLimited(QStringLiteral(ZPHONETIC_PROGRAM),
                                                 {QStringLiteral("show"), deck}, kAddressSpace,
                                                 kCpuSeconds, kWaitSeconds));
    }
    Outcome onekey(const QString& deck) {
        QFile::remove(output());
        return ended("onekey",
                     hostile::runLimited(QStringLiteral(ZPHONETIC_PROGRAM),
                                         {QStringLiteral("onekey"), deck, QStringLiteral("-o"),
                                          output(), QStringLiteral("--all-slides")},
                                         kAddressSpace, kCpuSeconds, kWaitSeconds));
    }
    Outcome studio(const QString& deck) {
        QFile::remove(output());
        const Outcome outcome = ended(
            "studio", hostile::runLimited(QStringLiteral(HOSTILE_STUDIO_PROGRAM), {deck, output()},
                                          kAddressSpace, kCpuSeconds, kWaitSeconds));
        EXPECT_LT(outcome.peakResidentKb, kStudioResidentKb) << hostile::describe(outcome);
        return outcome;
    }

    // Every program refuses the deck with `problem`, in one line naming the file.
    void expectRefused(const QByteArray& deck, const QString& problem) {
        expectRefusedAs(deck, QRegularExpression::escape(problem));
    }
    // The same, `pattern` a regular expression for the problem.
    void expectRefusedAs(const QByteArray& deck, const QString& pattern) {
        const QString path = write(deck);
        const QString name = QRegularExpression::escape(path);
        const QRegularExpression cli(QStringLiteral("^zphonetic: ") + name + QStringLiteral(": ") +
                                     pattern + QStringLiteral("\n$"));
        for (const Outcome& outcome : {show(path), onekey(path)}) {
            EXPECT_EQ(outcome.exitCode, 1) << hostile::describe(outcome);
            EXPECT_TRUE(cli.match(QString::fromUtf8(outcome.err)).hasMatch())
                << hostile::describe(outcome);
            EXPECT_FALSE(QFile::exists(output()));
        }
        // The studio's message box, as a headless host prints it.
        const Outcome window = studio(path);
        EXPECT_EQ(window.exitCode, 1) << hostile::describe(window);
        const QRegularExpression box(
            QStringLiteral("^zphonetic: message \\(flags 0x10\\): The deck could not be "
                           "opened\\.\\\\x0a\\\\x0a") +
            name + QStringLiteral(": ") + pattern + QStringLiteral("\n$"));
        EXPECT_TRUE(box.match(withoutPlatformNotes(window.err)).hasMatch())
            << hostile::describe(window);
        EXPECT_FALSE(QFile::exists(output()));
    }

    // show lists the deck; onekey writes `boxes` new text boxes on each of its `slides` slides, the
    // studio as many on the first.
    QString expectWritten(const QByteArray& deck, int boxes, int slides = 1) {
        const QString path = write(deck);
        const Outcome listed = show(path);
        EXPECT_EQ(listed.exitCode, 0) << hostile::describe(listed);
        EXPECT_EQ(listed.err, QByteArray());
        const Outcome made = onekey(path);
        EXPECT_EQ(made.exitCode, 0) << hostile::describe(made);
        const int all = boxes * slides;
        EXPECT_TRUE(made.out.endsWith(QStringLiteral("wrote %1: %2 new text %3 on %4 %5\n")
                                          .arg(output())
                                          .arg(all)
                                          .arg(all == 1 ? "box" : "boxes")
                                          .arg(slides)
                                          .arg(slides == 1 ? "slide" : "slides")
                                          .toUtf8()))
            << made.out.right(200).toStdString();
        EXPECT_EQ(boxesAdded(path, output()), all);
        const Outcome window = studio(path);
        EXPECT_EQ(window.exitCode, 0) << hostile::describe(window);
        EXPECT_EQ(window.out, QStringLiteral("wrote %1\n").arg(output()).toUtf8());
        EXPECT_EQ(withoutPlatformNotes(window.err), QString()) << hostile::describe(window);
        EXPECT_EQ(boxesAdded(path, output()), boxes);
        return listed.out;
    }

    QTemporaryDir dir;

private:
    // The run ended by itself: no crash, no time-out, no allocation failure reported. Its time
    // and memory are printed, for the record.
    static Outcome ended(const char* program, const Outcome& outcome) {
        std::printf("  %-6s exit %d, %.1f s (%.1f s of processor), %ld kB resident at most\n",
                    program, outcome.exitCode, outcome.seconds, outcome.cpuSeconds,
                    outcome.peakResidentKb);
        EXPECT_FALSE(outcome.timedOut) << hostile::describe(outcome);
        EXPECT_EQ(outcome.signal, 0) << hostile::describe(outcome);
        EXPECT_FALSE(outcome.err.contains("out of memory")) << hostile::describe(outcome);
        return outcome;
    }
    // What Qt's headless platform says of every window it shows.
    static QString withoutPlatformNotes(const QByteArray& err) {
        return QString::fromUtf8(err).remove(
            QStringLiteral("This plugin does not support propagateSizeHints()\n"));
    }
    static int boxesAdded(const QString& before, const QString& after) {
        QString error;
        const auto in = minihost::Deck::loadFile(before, &error);
        const auto out = minihost::Deck::loadFile(after, &error);
        if (!in || !out) return -1;
        int added = 0;
        for (int slide = 1; slide <= out->slideCount(); ++slide)
            added += out->shapes(slide).size() - in->shapes(slide).size();
        return added;
    }
};

TEST_F(HostileDeck, GroupsNestedDeeperThanTheLimit) {
    // The slide, its tree and the innermost text box's paragraph, run and text are 8 levels more.
    expectRefused(hostile::nestedGroups(100000),
                  QStringLiteral("part \"ppt/slides/slide1.xml\" nests elements 100008 deep (the "
                                 "limit is 256)"));
}

TEST_F(HostileDeck, GroupsNestedWithinTheLimit) {
    const QString listing = expectWritten(hostile::nestedGroups(240), 1);
    EXPECT_TRUE(listing.contains(QStringLiteral("slide 1: 241 shapes\n")))
        << listing.left(200).toStdString();
}

TEST_F(HostileDeck, PlainElementsNestedDeeperThanTheLimit) {
    expectRefused(hostile::nestedElements(100000),
                  QStringLiteral("part \"ppt/slides/slide1.xml\" nests elements 100004 deep (the "
                                 "limit is 256)"));
}

TEST_F(HostileDeck, OneSlidePartListedManyTimes) {
    expectRefused(
        hostile::repeatedSlide(1000),
        QStringLiteral("slide 2 is part \"ppt/slides/slide1.xml\" again, which is slide 1 "
                       "already"));
}

TEST_F(HostileDeck, MoreSlidesThanTheLimit) {
    expectRefused(hostile::manySlides(minihost::limits::kSlides + 1),
                  QStringLiteral("the presentation lists 5001 slides (the limit is 5000)"));
}

TEST_F(HostileDeck, AsManySlidesAsTheLimit) {
    // Each slide read, listed, given its readings; in the studio each drawn as a thumbnail.
    expectWritten(hostile::manySlides(minihost::limits::kSlides), 1, minihost::limits::kSlides);
}

TEST_F(HostileDeck, MoreShapesOnASlideThanTheLimit) {
    expectRefused(hostile::manyShapes(minihost::limits::kShapesPerPart + 1),
                  QStringLiteral("part \"ppt/slides/slide1.xml\" holds 20001 shapes (the limit is "
                                 "20000)"));
}

TEST_F(HostileDeck, MoreShapesInTheDeckThanTheLimit) {
    expectRefused(hostile::bareShapes(minihost::limits::kShapesPerPart, 6),
                  QStringLiteral("part \"ppt/slides/slide6.xml\" takes the shapes read to 120000 "
                                 "(the limit is 100000)"));
}

TEST_F(HostileDeck, EightThousandShapesOnASlide) {
    expectWritten(hostile::manyShapes(8000), 8000);
}

TEST_F(HostileDeck, PartsThatInflatePastTheMemoryOfTheirXml) {
    // 60 MB of whitespace per slide, compressed to 60 kB: the fifth slide passes the limit.
    expectRefusedAs(hostile::inflatingSlides(16, 60000000),
                    QStringLiteral("part \"ppt/slides/slide5\\.xml\" takes the XML held in memory "
                                   "to about \\d+ bytes \\(the limit is 268435456\\)"));
}

TEST_F(HostileDeck, ElementsThatTakeMoreMemoryThanTheirBytes) {
    // 8 million empty elements: 48 MB of XML, a gigabyte as a tree.
    expectRefusedAs(hostile::denseElements(8000000),
                    QStringLiteral("part \"ppt/slides/slide1\\.xml\" takes the XML held in memory "
                                   "to about \\d+ bytes \\(the limit is 268435456\\)"));
}

TEST_F(HostileDeck, ARunOfOneMillionCharacters) {
    expectWritten(hostile::longRun(1000000), 1);
}

TEST_F(HostileDeck, PicturesOfTwelveThousandPixelsASide) {
    // Three of them: decoded whole they would take 1.7 GB; drawn, a few megabytes.
    expectWritten(hostile::bigPictures(3, 12000, 9), 1, 3);
}

TEST_F(HostileDeck, PicturesThatTakeTheDecompressedBytesPastTheLimit) {
    // Seventeen pictures of 64 MB each, stored: the studio draws sixteen and the last as its place.
    expectWritten(hostile::bigPictures(17, 4000, 0), 1, 17);
}

TEST_F(HostileDeck, APictureClaimingAbsurdDimensions) {
    expectWritten(hostile::claimedPicture(100000, 100000), 1);
}

TEST_F(HostileDeck, ControlCharactersInTextNamesAndFonts) {
    const QString listing = expectWritten(hostile::controlCharacters(false), 1);
    EXPECT_FALSE(listing.contains(QChar(0x1b)));
    EXPECT_TRUE(listing.contains(QStringLiteral("  shape 2 \"N\\x1b[31m\" text box")))
        << listing.toStdString();
    EXPECT_TRUE(listing.contains(QStringLiteral("\"中文\\x1b[2J\\x1b]52;c;aGk=\\x07\\u202e\"")))
        << listing.toStdString();
}

TEST_F(HostileDeck, ControlCharactersInARelationshipTarget) {
    expectRefused(hostile::controlCharacters(true),
                  QStringLiteral("relationship target \"../../\\x1b]52;c;aGk=\\x07\" of "
                                 "\"ppt/presentation.xml\" points outside the archive"));
}

}  // namespace
