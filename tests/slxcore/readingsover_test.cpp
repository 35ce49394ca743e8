// SPDX-License-Identifier: MIT
// Readings over their text in the deck: found again from the file, replaced and never doubled,
// removed, one undo step, placed again inside the step of an edit of their text, and refused with
// a message that says where.
#include <gtest/gtest.h>

#include <QObject>
#include <QRectF>

#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/readingsover.h"

using minihost::Deck;
using minihost::Reading;

namespace {

const QList<Reading> kHello{{0, QStringLiteral("nǐ")},
                            {1, QStringLiteral("hǎo")},
                            {3, QStringLiteral("shì")},
                            {4, QStringLiteral("jiè")}};

// A deck of one slide with "你好，世界" in text box 2, and what its slide holds.
struct HelloDeck {
    std::unique_ptr<Deck> deck = Deck::create(1);
    int text = deck->addTextBox(1, QStringLiteral("你好，世界"), QRectF(100, 200, 400, 60));
    int shapeCount() const { return deck->shapes(1).size(); }
    // Through the file, as another program would find them.
    std::unique_ptr<Deck> reread() const {
        QString error;
        auto copy = Deck::load(deck->toBytes(&error), QStringLiteral("copy.pptx"), &error);
        EXPECT_TRUE(copy) << error.toStdString();
        return copy;
    }
};

TEST(ReadingsOver, AreFoundAgainInTheFile) {
    HelloDeck hello;
    ASSERT_EQ(hello.deck->placeReadingsOver(1, hello.text, kHello, QStringLiteral("Pinyin")),
              QString());
    EXPECT_EQ(hello.deck->readingsOver(1, hello.text), kHello);
    EXPECT_EQ(hello.reread()->readingsOver(1, hello.text), kHello);
    // A group and a box a syllable, the text itself unchanged.
    EXPECT_EQ(hello.shapeCount(), 1 + 1 + 4);
    EXPECT_EQ(hello.deck->text(1, hello.text), QStringLiteral("你好，世界"));
    EXPECT_TRUE(hello.deck->readingsOver(1, 99).isEmpty());
    // Their shapes: every shape of the slide but the text.
    QSet<int> others;
    for (const minihost::ShapeInfo& shape : hello.deck->shapes(1))
        if (shape.id != hello.text) others.insert(shape.id);
    EXPECT_EQ(hello.deck->readingShapesOver(1, hello.text), others);
    EXPECT_TRUE(hello.deck->readingShapesOver(1, 99).isEmpty());
}

TEST(ReadingsOver, PlacedAgainAreReplacedNotDoubled) {
    HelloDeck hello;
    ASSERT_EQ(hello.deck->placeReadingsOver(1, hello.text, kHello, QStringLiteral("Pinyin")),
              QString());
    const int placed = hello.shapeCount();
    const QList<Reading> other{{1, QStringLiteral("hào")}};
    ASSERT_EQ(hello.deck->placeReadingsOver(1, hello.text, other, QStringLiteral("Pinyin")),
              QString());
    EXPECT_EQ(hello.deck->readingsOver(1, hello.text), other);
    EXPECT_EQ(hello.shapeCount(), 1 + 1 + 1);
    ASSERT_EQ(hello.deck->placeReadingsOver(1, hello.text, kHello, QStringLiteral("Pinyin")),
              QString());
    EXPECT_EQ(hello.shapeCount(), placed);
    EXPECT_EQ(hello.reread()->readingsOver(1, hello.text), kHello);
}

TEST(ReadingsOver, TheTextsSpacingIsOpenedOnceWhateverTimesTheyArePlaced) {
    HelloDeck hello;
    ASSERT_EQ(hello.deck->placeReadingsOver(1, hello.text, kHello, QStringLiteral("Pinyin")),
              QString());
    const minihost::TextLayout first = *hello.deck->textLayout(1, hello.text);
    ASSERT_EQ(hello.deck->placeReadingsOver(1, hello.text, kHello, QStringLiteral("Pinyin")),
              QString());
    const minihost::TextLayout second = *hello.deck->textLayout(1, hello.text);
    // 18 pt text, 9 pt readings: 1.3 x 18 + 1.4 x 9 points a line.
    EXPECT_NEAR(first.lines().at(0).height, 36.0, 0.01);
    EXPECT_EQ(second.lines().at(0).height, first.lines().at(0).height);
    EXPECT_EQ(second.place(4).left, first.place(4).left);
}

TEST(ReadingsOver, AreOneUndoStepAndUndoneWhole) {
    HelloDeck hello;
    const int before = hello.shapeCount();
    ASSERT_EQ(hello.deck->placeReadingsOver(1, hello.text, kHello, QStringLiteral("Pinyin over")),
              QString());
    EXPECT_EQ(hello.deck->undoSteps(), QStringList{QStringLiteral("Pinyin over")});
    ASSERT_TRUE(hello.deck->undo());
    EXPECT_EQ(hello.shapeCount(), before);
    EXPECT_TRUE(hello.deck->readingsOver(1, hello.text).isEmpty());
    EXPECT_EQ(hello.deck->textLayout(1, hello.text)->lines().at(0).height, 18 * 1.2);
}

TEST(ReadingsOver, AreRemovedWithTheirGroup) {
    HelloDeck hello;
    const int before = hello.shapeCount();
    ASSERT_EQ(hello.deck->placeReadingsOver(1, hello.text, kHello, QStringLiteral("Pinyin")),
              QString());
    EXPECT_TRUE(hello.deck->removeReadingsOver(1, hello.text, QStringLiteral("Remove")));
    EXPECT_EQ(hello.shapeCount(), before);
    EXPECT_TRUE(hello.deck->readingsOver(1, hello.text).isEmpty());
    EXPECT_FALSE(hello.deck->removeReadingsOver(1, hello.text, QStringLiteral("Remove")));
    EXPECT_EQ(hello.deck->undoSteps(),
              (QStringList{QStringLiteral("Pinyin"), QStringLiteral("Remove")}));
}

TEST(ReadingsOver, FollowTheirTextInTheStepOfItsEdit) {
    HelloDeck hello;
    ASSERT_EQ(hello.deck->placeReadingsOver(1, hello.text, kHello, QStringLiteral("Pinyin")),
              QString());
    // A host that keeps readings over their text: after an edit of it, in the edit's own step.
    QObject::connect(hello.deck.get(), &Deck::edited, [&](const minihost::DeckChange& change) {
        if (!change.shapes.value(1).contains(hello.text)) return;
        const QList<Reading> readings{{0, QStringLiteral("nín")},
                                      {1, QStringLiteral("hǎo")},
                                      {3, QStringLiteral("shì")},
                                      {4, QStringLiteral("jiè")}};
        EXPECT_EQ(hello.deck->placeReadingsOver(1, hello.text, readings, QString()), QString());
    });
    ASSERT_EQ(hello.deck->replaceText(1, hello.text, 0, 1, QStringLiteral("您"),
                                      QStringLiteral("Typing")),
              1);
    EXPECT_EQ(hello.deck->readingsOver(1, hello.text).at(0).syllable, QStringLiteral("nín"));
    EXPECT_EQ(hello.deck->undoSteps(),
              (QStringList{QStringLiteral("Pinyin"), QStringLiteral("Typing")}));
    ASSERT_TRUE(hello.deck->undo());
    EXPECT_EQ(hello.deck->readingsOver(1, hello.text), kHello);
}

TEST(ReadingsOver, AreRefusedWhereTheyCannotGoWithNothingChanged) {
    HelloDeck hello;
    EXPECT_EQ(hello.deck->placeReadingsOver(1, hello.text, {{2, QStringLiteral("hǎo")}},
                                            QStringLiteral("Pinyin")),
              QStringLiteral("shape 2 on slide 1 has no character the add-on reads at 2 for the "
                             "reading \"hǎo\""));
    EXPECT_EQ(hello.deck->placeReadingsOver(1, hello.text,
                                            {{1, QStringLiteral("hǎo")}, {0, QStringLiteral("nǐ")}},
                                            QStringLiteral("Pinyin")),
              QStringLiteral("shape 2 on slide 1 has no character the add-on reads at 0 for the "
                             "reading \"nǐ\""));
    EXPECT_EQ(hello.deck->placeReadingsOver(1, 99, kHello, QStringLiteral("Pinyin")),
              QStringLiteral("shape 99 on slide 1 has no text"));
    EXPECT_EQ(hello.deck->placeReadingsOver(2, hello.text, kHello, QStringLiteral("Pinyin")),
              QStringLiteral("there is no slide 2"));
    EXPECT_TRUE(hello.deck->undoSteps().isEmpty());
}

TEST(ReadingsOver, SyllablesAreTheLettersOfTheAddonsText) {
    EXPECT_EQ(minihost::syllablesOf(QStringLiteral("（chuánɡ qián ）")),
              (QStringList{QStringLiteral("chuánɡ"), QStringLiteral("qián")}));
    EXPECT_EQ(minihost::syllablesOf(QStringLiteral("[nǐ] /hǎo/ {lǘ}")),
              (QStringList{QStringLiteral("nǐ"), QStringLiteral("hǎo"), QStringLiteral("lǘ")}));
    EXPECT_TRUE(minihost::syllablesOf(QStringLiteral(" （）")).isEmpty());
}

TEST(ReadingsOver, SyllablesGoToTheCharactersTheAddonReads) {
    QList<Reading> readings;
    const QStringList four{QStringLiteral("nǐ"), QStringLiteral("hǎo"), QStringLiteral("shì"),
                           QStringLiteral("jiè")};
    ASSERT_TRUE(minihost::assignReadings(QStringLiteral("你好，世界"), 0, -1, four, &readings));
    EXPECT_EQ(readings, kHello);
    // A run of the text: its characters only.
    ASSERT_TRUE(minihost::assignReadings(QStringLiteral("A你好，世界"), 4, 2,
                                         {QStringLiteral("shì"), QStringLiteral("jiè")},
                                         &readings));
    EXPECT_EQ(readings, (QList<Reading>{{4, QStringLiteral("shì")}, {5, QStringLiteral("jiè")}}));
    EXPECT_FALSE(
        minihost::assignReadings(QStringLiteral("你好，世界"), 0, -1, four.mid(1), &readings));
    EXPECT_FALSE(minihost::assignReadings(QStringLiteral("你好"), 0, -1, four, &readings));
}

}  // namespace
