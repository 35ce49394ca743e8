// SPDX-License-Identifier: MIT
// Corrupt and hostile decks, made by hand: each is refused with a message naming the file and
// the problem, and the file itself is left as it was.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <random>

#include "decktestutil.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/liveobjects.h"
#include "qtprinters.h"

namespace {

using decktest::blankParts;
using decktest::replaced;
using decktest::without;
using Parts = decktest::Parts;

// Reads `bytes` from a file and returns the error; checks the file and its folder are unchanged.
QString refusal(const QByteArray& bytes) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bad.pptx"));
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(bytes);
    file.close();
    QString error;
    const std::unique_ptr<minihost::Deck> deck = minihost::Deck::loadFile(path, &error);
    EXPECT_FALSE(deck);
    EXPECT_EQ(decktest::readFile(path), bytes);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList({"bad.pptx"}));
    EXPECT_EQ(minihost::liveObjectCount(), 0);
    // The message names the file; the test compares what follows.
    EXPECT_TRUE(error.startsWith(path + QStringLiteral(": "))) << error.toStdString();
    return error.mid(path.size() + 2);
}

TEST(CorruptDeck, NotAZip) {
    EXPECT_EQ(refusal("hello, this is not a deck"), QStringLiteral("not a zip archive"));
}

TEST(CorruptDeck, EmptyFile) {
    EXPECT_EQ(refusal(QByteArray()), QStringLiteral("empty file"));
}

TEST(CorruptDeck, CutShort) {
    const QByteArray whole = decktest::makeZip(blankParts());
    EXPECT_EQ(
        refusal(whole.left(whole.size() / 2)),
        QStringLiteral("damaged zip archive (no central directory; the file may be cut short)"));
}

TEST(CorruptDeck, EntryOutsideTheArchive) {
    Parts parts = blankParts();
    parts.emplace_back(QStringLiteral("../evil.xml"), QByteArray("<x/>"));
    EXPECT_EQ(refusal(decktest::makeZip(parts)),
              QStringLiteral("entry \"../evil.xml\" points outside the archive"));
    parts.back().first = QStringLiteral("/etc/evil");
    EXPECT_EQ(refusal(decktest::makeZip(parts)),
              QStringLiteral("entry \"/etc/evil\" points outside the archive"));
    parts.back().first = QStringLiteral("ppt\\..\\..\\evil");
    EXPECT_EQ(refusal(decktest::makeZip(parts)),
              QStringLiteral("entry \"ppt\\..\\..\\evil\" points outside the archive"));
}

TEST(CorruptDeck, RelationshipTargetOutsideTheArchive) {
    const Parts parts = blankParts();
    QByteArray rels;
    for (const auto& part : parts)
        if (part.first == QLatin1String("ppt/_rels/presentation.xml.rels")) rels = part.second;
    rels.replace("Target=\"slides/slide1.xml\"", "Target=\"../../../etc/passwd\"");
    EXPECT_EQ(refusal(decktest::makeZip(
                  replaced(parts, QStringLiteral("ppt/_rels/presentation.xml.rels"), rels))),
              QStringLiteral("relationship target \"../../../etc/passwd\" of "
                             "\"ppt/presentation.xml\" points outside the archive"));
}

TEST(CorruptDeck, MissingParts) {
    EXPECT_EQ(refusal(decktest::makeZip(without(blankParts(), QStringLiteral("_rels/.rels")))),
              QStringLiteral("missing part \"_rels/.rels\""));
    EXPECT_EQ(
        refusal(decktest::makeZip(without(blankParts(), QStringLiteral("ppt/presentation.xml")))),
        QStringLiteral("missing part \"ppt/presentation.xml\""));
    EXPECT_EQ(
        refusal(decktest::makeZip(without(blankParts(), QStringLiteral("ppt/slides/slide1.xml")))),
        QStringLiteral("missing part \"ppt/slides/slide1.xml\""));
}

TEST(CorruptDeck, NoMainDocument) {
    const QByteArray rels =
        "<?xml version=\"1.0\"?><Relationships "
        "xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\"/>";
    EXPECT_EQ(
        refusal(decktest::makeZip(replaced(blankParts(), QStringLiteral("_rels/.rels"), rels))),
        QStringLiteral("no presentation part (_rels/.rels names no main document)"));
}

TEST(CorruptDeck, StrictOpenXml) {
    const QByteArray rels =
        "<?xml version=\"1.0\"?><Relationships "
        "xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\"><Relationship "
        "Id=\"rId1\" Type=\"http://purl.oclc.org/ooxml/officeDocument/relationships/"
        "officeDocument\" Target=\"ppt/presentation.xml\"/></Relationships>";
    EXPECT_EQ(
        refusal(decktest::makeZip(replaced(blankParts(), QStringLiteral("_rels/.rels"), rels))),
        QStringLiteral("uses Strict Open XML, which is not supported"));
}

TEST(CorruptDeck, BadXml) {
    EXPECT_EQ(
        refusal(decktest::makeZip(replaced(blankParts(), QStringLiteral("ppt/slides/slide1.xml"),
                                           "<p:sld><p:cSld></p:sld>"))),
        QStringLiteral("part \"ppt/slides/slide1.xml\" is not well-formed XML "
                       "(Start-end tags mismatch at byte 17)"));
    EXPECT_EQ(refusal(decktest::makeZip(
                  replaced(blankParts(), QStringLiteral("ppt/presentation.xml"), "   "))),
              QStringLiteral("part \"ppt/presentation.xml\" is not well-formed XML (No document "
                             "element found at byte 3)"));
}

TEST(CorruptDeck, WrongKindsOfPart) {
    const Parts parts = blankParts();
    QByteArray presentation;
    for (const auto& part : parts)
        if (part.first == QLatin1String("ppt/presentation.xml")) presentation = part.second;
    EXPECT_EQ(refusal(decktest::makeZip(replaced(parts, QStringLiteral("ppt/slides/slide1.xml"),
                                                 "<a:theme xmlns:a=\"urn:x\"/>"))),
              QStringLiteral("part \"ppt/slides/slide1.xml\" is not a slide"));
    EXPECT_EQ(refusal(decktest::makeZip(
                  replaced(parts, QStringLiteral("ppt/presentation.xml"), "<html/>"))),
              QStringLiteral("part \"ppt/presentation.xml\" is not a presentation"));
    presentation.replace("r:id=\"rId3\"", "r:id=\"rId99\"");
    EXPECT_EQ(refusal(decktest::makeZip(
                  replaced(parts, QStringLiteral("ppt/presentation.xml"), presentation))),
              QStringLiteral("slide 1 refers to a missing relationship \"rId99\""));
}

TEST(CorruptDeck, EntryClaimingAHugeSize) {
    const QByteArray zip = decktest::withClaimedSize(
        decktest::makeZip(blankParts()), QStringLiteral("ppt/slides/slide1.xml"), 3000000000u);
    EXPECT_EQ(refusal(zip), QStringLiteral("part \"ppt/slides/slide1.xml\" claims 3000000000 "
                                           "bytes (the limit is 67108864)"));
}

TEST(CorruptDeck, ZipBombExpandingPastItsClaimedSize) {
    // Valid XML that inflates to 50 MB from a few kilobytes, while the headers claim 400 bytes.
    QByteArray slide = "<?xml version=\"1.0\"?><p:sld xmlns:p=\"urn:p\"><!--";
    slide += QByteArray(50 << 20, ' ');
    slide += "--></p:sld>";
    const QByteArray zip = decktest::withClaimedSize(
        decktest::makeZip(replaced(blankParts(), QStringLiteral("ppt/slides/slide1.xml"), slide)),
        QStringLiteral("ppt/slides/slide1.xml"), 400);
    EXPECT_EQ(
        refusal(zip),
        QStringLiteral("part \"ppt/slides/slide1.xml\" holds more data than its header says"));
}

TEST(CorruptDeck, DamagedData) {
    Parts parts = blankParts();
    QByteArray zip = decktest::makeZip(parts, true);  // stored, so bytes can be spoilt in place
    const int at = zip.indexOf("<p:sld ");
    ASSERT_GT(at, 0);
    zip[at + 1] = 'q';
    EXPECT_EQ(refusal(zip),
              QStringLiteral("part \"ppt/slides/slide1.xml\" is damaged (checksum mismatch)"));
}

// Random damage, to the archive's bytes and to the XML inside a sound archive: every outcome is
// a deck that works or an error naming the deck, never a crash (the sanitizer build watches).
TEST(CorruptDeck, RandomDamageIsRefusedOrRead) {
    std::mt19937 random(20261121);
    const Parts parts = blankParts();
    auto spoil = [&](QByteArray bytes, int flips) {
        for (int i = 0; i < flips && !bytes.isEmpty(); ++i)
            bytes[static_cast<int>(random() % bytes.size())] = static_cast<char>(random() & 0xFF);
        return bytes;
    };
    auto check = [&](const QByteArray& bytes) {
        QString error;
        auto deck = minihost::Deck::load(bytes, QStringLiteral("random.pptx"), &error);
        if (!deck) {
            EXPECT_TRUE(error.startsWith(QStringLiteral("random.pptx: "))) << error.toStdString();
            return;
        }
        for (int slide = 1; slide <= deck->slideCount(); ++slide) deck->shapes(slide);
        deck->addTextBox(1, QStringLiteral("汉字"), QRectF(0, 0, 10, 10));
        const QByteArray written = deck->toBytes(&error);
        if (!written.isEmpty()) {
            EXPECT_TRUE(minihost::Deck::load(written, QStringLiteral("again"), &error));
        }
    };
    const QByteArray zip = decktest::makeZip(parts, true);
    for (int i = 0; i < 150; ++i) check(spoil(zip, 1 + i % 4));
    for (const QString& name :
         {QStringLiteral("ppt/slides/slide1.xml"), QStringLiteral("ppt/presentation.xml"),
          QStringLiteral("ppt/_rels/presentation.xml.rels"), QStringLiteral("_rels/.rels"),
          QStringLiteral("ppt/theme/theme1.xml")})
        for (int i = 0; i < 60; ++i)
            check(decktest::makeZip(
                replaced(parts, name, spoil(decktest::partOf(parts, name), 1 + i % 3))));
    EXPECT_EQ(minihost::liveObjectCount(), 0);
}

TEST(CorruptDeck, MissingFile) {
    QString error;
    EXPECT_FALSE(minihost::Deck::loadFile(QStringLiteral("/nonexistent/deck.pptx"), &error));
    EXPECT_EQ(error, QStringLiteral(
                         "/nonexistent/deck.pptx: cannot be opened (No such file or directory)"));
}

TEST(CorruptDeck, BuffersAreReadWithoutFiles) {
    QString error;
    EXPECT_FALSE(minihost::Deck::load("PK\x03\x04", QStringLiteral("memory"), &error));
    EXPECT_EQ(error, QStringLiteral("memory: damaged zip archive (no central directory; the file "
                                    "may be cut short)"));
}

}  // namespace
