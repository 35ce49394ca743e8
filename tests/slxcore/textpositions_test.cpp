// SPDX-License-Identifier: MIT
// Text positions: UTF-16 units, one unit per paragraph or line break, surrogate pairs never split,
// fields indivisible, and the format new text takes.
#include <gtest/gtest.h>

#include <QFile>

#include "decktestutil.h"
#include "minihost/slxcore/liveobjects.h"
#include "omhelpers.h"
#include "qtprinters.h"

using namespace omtest;
using minihost::Deck;

namespace {

// "a𐌲b" bold, a line break, the field "12", "c"; a paragraph " " at 24 pt; an empty paragraph
// whose end properties say 30 pt.
const char kShape[] =
    "<p:sp><p:nvSpPr><p:cNvPr id=\"5\" name=\"T\"/><p:cNvSpPr txBox=\"1\"/><p:nvPr/></p:nvSpPr>"
    "<p:spPr><a:xfrm><a:off x=\"0\" y=\"0\"/><a:ext cx=\"1270000\" cy=\"508000\"/></a:xfrm>"
    "</p:spPr><p:txBody><a:bodyPr/><a:lstStyle/>"
    "<a:p><a:r><a:rPr lang=\"en-US\" b=\"1\" err=\"1\"/><a:t>a\xF0\x90\x8C\xB2"
    "b</a:t></a:r>"
    "<a:br><a:rPr lang=\"en-US\"/></a:br>"
    "<a:fld id=\"{4ACDC551-8A53-AE47-95A7-4A2F0C1FFF1B}\" type=\"slidenum\"><a:rPr lang=\"en-US\"/>"
    "<a:t>12</a:t></a:fld><a:r><a:rPr lang=\"en-US\"/><a:t>c</a:t></a:r></a:p>"
    "<a:p><a:r><a:rPr lang=\"en-US\" sz=\"2400\"/><a:t> </a:t></a:r></a:p>"
    "<a:p><a:endParaRPr lang=\"zh-CN\" sz=\"3000\"/></a:p></p:txBody></p:sp>";

const QString kGothic = QString::fromUtf8("\xF0\x90\x8C\xB2");  // U+10332, two units

class TextPositions : public ::testing::Test {
protected:
    void SetUp() override {
        QString error;
        deck =
            Deck::load(decktest::deckWithShapes(kShape), QStringLiteral("positions.pptx"), &error);
        ASSERT_TRUE(deck) << error.toStdString();
        all = wholeText(*deck, 5);
    }
    void TearDown() override {
        all.reset();
        EXPECT_EQ(minihost::liveObjectCount(), 0);
    }
    QString current() { return deck->text(1, 5); }

    std::unique_ptr<Deck> deck;
    ComPtr<TextRange> all;
};

TEST_F(TextPositions, BreaksCountOneAndPairsTwo) {
    EXPECT_EQ(length(all.get()), 11);
    EXPECT_EQ(text(all.get()), QStringLiteral("a") + kGothic + QStringLiteral("b\v12c\r \r"));
    EXPECT_EQ(text(characters(all.get(), 4, 1).get()), QStringLiteral("\v"));
    EXPECT_EQ(text(characters(all.get(), 8, 1).get()), QStringLiteral("\r"));
    EXPECT_EQ(text(characters(all.get(), 1, 2).get()), kGothic);
}

TEST_F(TextPositions, InsertionNeverSplitsASurrogatePair) {
    ComPtr<TextRange> half = characters(all.get(), 0, 2);  // "a" and the pair's first half
    ComPtr<TextRange> x = insertAfter(half.get(), QStringLiteral("X"));
    EXPECT_EQ(text(x.get()), QStringLiteral("X"));
    EXPECT_EQ(current(), QStringLiteral("a") + kGothic + QStringLiteral("Xb\v12c\r \r"));
}

TEST_F(TextPositions, InsertionInsideAFieldGoesAfterIt) {
    ComPtr<TextRange> toMiddle = characters(all.get(), 0, 6);  // ends between "1" and "2"
    insertAfter(toMiddle.get(), QStringLiteral("Y"));
    EXPECT_EQ(current(), QStringLiteral("a") + kGothic + QStringLiteral("b\v12Yc\r \r"));
}

TEST_F(TextPositions, ReplacingPartOfAFieldReplacesAllOfIt) {
    ComPtr<TextRange> twoC = characters(all.get(), 6, 2);  // "2c"
    EXPECT_EQ(putText(twoC.get(), QStringLiteral("Z")), S_OK);
    EXPECT_EQ(current(), QStringLiteral("a") + kGothic + QStringLiteral("b\vZ\r \r"));
    EXPECT_EQ(text(twoC.get()), QStringLiteral("Z"));
}

TEST_F(TextPositions, RemovingAParagraphBreakJoinsTheParagraphs) {
    ComPtr<TextRange> end = characters(all.get(), 8, 1);
    putText(end.get(), QString());
    EXPECT_EQ(current(), QStringLiteral("a") + kGothic + QStringLiteral("b\v12c \r"));
    QString error;
    auto reread = Deck::load(deck->toBytes(&error), QStringLiteral("re.pptx"), &error);
    EXPECT_EQ(reread->text(1, 5), current());
}

TEST_F(TextPositions, ParagraphBreakInInsertedTextSplitsTheParagraph) {
    insertAfter(characters(all.get(), 0, 1).get(), QStringLiteral("\r"));
    EXPECT_EQ(current(), QStringLiteral("a\r") + kGothic + QStringLiteral("b\v12c\r \r"));
    QString error;
    auto reread = Deck::load(deck->toBytes(&error), QStringLiteral("re.pptx"), &error);
    EXPECT_EQ(reread->text(1, 5), current());
    EXPECT_TRUE(reread->shapes(1).first().bold);
}

TEST_F(TextPositions, TextInAnEmptyParagraphTakesItsEndProperties) {
    ComPtr<TextRange> inserted =
        insertAfter(characters(all.get(), 10, 1).get(), QStringLiteral("hǎo"));
    EXPECT_EQ(text(inserted.get()), QStringLiteral("hǎo"));
    EXPECT_EQ(size(inserted.get()), 30.0f);
    EXPECT_EQ(size(characters(all.get(), 9, 1).get()), 24.0f);  // the whitespace-only run
}

TEST_F(TextPositions, CopiedFormatDropsTheSpellingMark) {
    insertAfter(characters(all.get(), 0, 1).get(), QStringLiteral("Q"));
    QString error;
    const QByteArray xml =
        decktest::zipPart(deck->toBytes(&error), QStringLiteral("ppt/slides/slide1.xml"));
    EXPECT_TRUE(xml.contains("<a:r><a:rPr lang=\"en-US\" b=\"1\"/><a:t>Q</a:t></a:r>"))
        << xml.toStdString();
    EXPECT_EQ(xml.count("err=\"1\""), 2);  // the two halves of the original run keep theirs
}

TEST(PublicDeckPositions, GothicLettersCountTwoUnitsEach) {
    const QString path = decktest::testDeckDir() + QStringLiteral("/poi-with_japanese.pptx");
    if (!QFile::exists(path)) GTEST_SKIP() << "public test deck not found: " << path.toStdString();
    QString error;
    auto deck = Deck::load(decktest::readFile(path), path, &error);
    ASSERT_TRUE(deck);
    const QString gothic = QString::fromUtf8("𐌲𐌿𐍄𐌹𐍃𐌺");
    ASSERT_EQ(gothic.size(), 12);
    const int id = 2051;
    const int at = deck->text(1, id).indexOf(gothic);
    ASSERT_GT(at, 0);
    {
        ComPtr<TextRange> all = wholeText(*deck, id);
        EXPECT_EQ(text(characters(all.get(), at, 12).get()), gothic);
        EXPECT_EQ(text(characters(all.get(), at + 2, 2).get()), QString::fromUtf8("𐌿"));
    }
    EXPECT_EQ(minihost::liveObjectCount(), 0);
}

TEST(PublicDeckPositions, RunsLineBreaksAndAFieldInOneFrame) {
    const QString path = decktest::testDeckDir() + QStringLiteral("/pypptx-txt-text.pptx");
    if (!QFile::exists(path)) GTEST_SKIP() << "public test deck not found: " << path.toStdString();
    QString error;
    auto deck = Deck::load(decktest::readFile(path), path, &error);
    ASSERT_TRUE(deck);
    {
        ComPtr<TextRange> all = wholeText(*deck, 2);
        EXPECT_EQ(length(all.get()), 31);
        EXPECT_EQ(text(all.get()), QStringLiteral(" Foo Bar \v Baz Zoo \v1\ryahoo.com"));
        EXPECT_EQ(text(characters(all.get(), 20, 1).get()), QStringLiteral("1"));  // the field
    }
    EXPECT_EQ(minihost::liveObjectCount(), 0);
}

}  // namespace
