// SPDX-License-Identifier: MIT
// Moving and resizing shapes as a user drags them (Deck::setShapeBoxes) and where a shape is
// (Deck::placeOf).
#include <gtest/gtest.h>

#include <QFile>

#include "decktestutil.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/hosttransaction.h"
#include "omhelpers.h"
#include "qtprinters.h"
#include "testapplication.h"

using minihost::Deck;

namespace {

QRectF boxOf(const Deck& deck, int id) {
    for (const minihost::ShapeInfo& shape : deck.shapes(1))
        if (shape.id == id) return shape.box;
    return {};
}

// A public test deck whose slide 1 holds placeholders without a box of their own (shape 3 is
// <p:ph idx="12"/> with an empty p:spPr); null when the public decks are not there.
std::unique_ptr<Deck> placeholderDeck() {
    const QString file = decktest::testDeckDir() + QStringLiteral("/poi-bug64693.pptx");
    if (!QFile::exists(file)) return nullptr;
    QString error;
    auto deck = Deck::loadFile(file, &error);
    if (!deck) ADD_FAILURE() << error.toStdString();
    return deck;
}

TEST(ShapeBox, MovingAndResizingIsOneUndoStepNamedAsTheCallerSays) {
    auto deck = Deck::create(1);
    const int id = deck->addTextBox(1, QStringLiteral("你好"), QRectF(10, 20, 300, 40));
    ASSERT_TRUE(deck->setShapeBoxes(1, {{id, QRectF(100, 200, 150, 60)}}, QStringLiteral("Move")));
    EXPECT_EQ(boxOf(*deck, id), QRectF(100, 200, 150, 60));
    EXPECT_EQ(deck->undoSteps(), QStringList{QStringLiteral("Move")});
    ASSERT_TRUE(deck->undo());
    EXPECT_EQ(boxOf(*deck, id), QRectF(10, 20, 300, 40));
}

TEST(ShapeBox, AShapeThatFollowsItsTextTakesTheHeightItsTextNeedsAtTheNewWidth) {
    auto deck = Deck::create(1);
    const int id = deck->addTextBox(1, QStringLiteral("yín hánɡ hánɡ zhǎnɡ hái shì jué de"),
                                    QRectF(0, 0, 800, 40));
    {
        ComPtr<omtest::TextFrame> frame;
        ASSERT_EQ(omtest::shape(*deck, id)->get_TextFrame(frame.put()), S_OK);
        ASSERT_EQ(frame->put_AutoSize(1), S_OK);
    }
    ASSERT_TRUE(deck->setShapeBoxes(1, {{id, QRectF(0, 0, 800, 1)}}, QStringLiteral("Move")));
    const double oneLine = boxOf(*deck, id).height();
    EXPECT_GT(oneLine, 1);  // the height given is not kept: the text's is
    ASSERT_TRUE(deck->setShapeBoxes(1, {{id, QRectF(0, 0, 100, 1)}}, QStringLiteral("Move")));
    EXPECT_GT(boxOf(*deck, id).height(), 2 * oneLine);  // narrow, the readings wrap
    EXPECT_EQ(boxOf(*deck, id).width(), 100);
}

TEST(ShapeBox, SeveralMovesInsideTheHostsStepAreOneUndoStep) {
    auto deck = Deck::create(1);
    TestApplication app(deck.get());
    const int first = deck->addTextBox(1, QStringLiteral("你"), QRectF(0, 0, 100, 40));
    const int second = deck->addTextBox(1, QStringLiteral("好"), QRectF(0, 50, 100, 40));
    ASSERT_TRUE(minihost::openHostTransaction(&app, QStringLiteral("Move")));
    EXPECT_TRUE(deck->setShapeBoxes(1, {{first, QRectF(200, 0, 100, 40)}}, QStringLiteral("Move")));
    EXPECT_TRUE(
        deck->setShapeBoxes(1, {{second, QRectF(200, 50, 100, 40)}}, QStringLiteral("Move")));
    ASSERT_TRUE(minihost::commitHostTransaction());
    EXPECT_EQ(deck->undoSteps(), QStringList{QStringLiteral("Move")});
    ASSERT_TRUE(deck->undo());
    EXPECT_EQ(boxOf(*deck, first).left(), 0);
    EXPECT_EQ(boxOf(*deck, second).left(), 0);
}

TEST(ShapeBox, UnknownShapesAndNegativeSizesChangeNothing) {
    auto deck = Deck::create(1);
    const int id = deck->addTextBox(1, QStringLiteral("你好"), QRectF(10, 20, 300, 40));
    EXPECT_FALSE(deck->setShapeBoxes(1, {{99, QRectF(0, 0, 10, 10)}}, QStringLiteral("Move")));
    EXPECT_FALSE(deck->setShapeBoxes(2, {{id, QRectF(0, 0, 10, 10)}}, QStringLiteral("Move")));
    EXPECT_FALSE(deck->setShapeBoxes(1, {{id, QRectF(0, 0, -10, 10)}}, QStringLiteral("Move")));
    EXPECT_TRUE(deck->undoSteps().isEmpty());
    EXPECT_EQ(boxOf(*deck, id), QRectF(10, 20, 300, 40));
}

TEST(ShapeBox, APlaceholderThatInheritedItsPlaceGetsTheBoxAsItsOwn) {
    const auto deck = placeholderDeck();
    if (!deck) GTEST_SKIP() << "no public test decks";
    ASSERT_TRUE(boxOf(*deck, 3).isNull());
    ASSERT_TRUE(deck->setShapeBoxes(1, {{3, QRectF(50, 60, 400, 200)}}, QStringLiteral("resize")));
    EXPECT_EQ(boxOf(*deck, 3), QRectF(50, 60, 400, 200));
    EXPECT_EQ(deck->placeOf(1, 3), QRectF(50, 60, 400, 200));
    EXPECT_EQ(deck->undoSteps(), QStringList{QStringLiteral("resize")});
    ASSERT_TRUE(deck->undo());
    EXPECT_TRUE(boxOf(*deck, 3).isNull());
}

TEST(PlaceOf, AShapesOwnBox) {
    auto deck = Deck::create(1);
    const int id = deck->addTextBox(1, QStringLiteral("你好"), QRectF(10, 20, 300, 40));
    EXPECT_EQ(deck->placeOf(1, id), QRectF(10, 20, 300, 40));
    EXPECT_TRUE(deck->placeOf(1, 99).isNull());
}

TEST(PlaceOf, APlaceholderWithoutABoxTakesItsLayoutsByIndex) {
    const auto deck = placeholderDeck();
    if (!deck) GTEST_SKIP() << "no public test decks";
    // slideLayout5's idx 12 has shape 3's box.
    EXPECT_TRUE(deck->shapes(1).at(1).box.isNull());
    const QRectF place = deck->placeOf(1, 3);
    EXPECT_NEAR(place.left(), 726021 / 12700.0, 0.01);
    EXPECT_NEAR(place.top(), 1512875 / 12700.0, 0.01);
    EXPECT_NEAR(place.width(), 10733557 / 12700.0, 0.01);
    EXPECT_NEAR(place.height(), 4690459 / 12700.0, 0.01);
    // The subtitle (type subTitle, idx 1) takes the layout's idx 1.
    EXPECT_NEAR(deck->placeOf(1, 2).top(), 456134 / 12700.0, 0.01);
}

}  // namespace
