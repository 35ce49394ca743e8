// SPDX-License-Identifier: MIT
// The thumbnails panel: one picture of each slide; a click makes that slide the deck's current
// one, which the slide view then shows; an edit draws its slide's picture again, and no other.
#include <gtest/gtest.h>

#include <QListWidget>
#include <QSignalSpy>
#include <QTest>

#include "hostiledecks.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/liveobjects.h"
#include "slidethumbnails.h"
#include "slideview.h"

using minihost::Deck;

namespace {

TEST(SlideThumbnails, OnePerSlideAClickMakesItCurrent) {
    QString error;
    auto deck = Deck::loadFile(QStringLiteral(EXAMPLE_DECK), &error);
    ASSERT_TRUE(deck) << error.toStdString();
    SlideThumbnails thumbnails;
    SlideView view;
    thumbnails.resize(240, 600);
    thumbnails.setDeck(deck.get());
    EXPECT_EQ(thumbnails.pending(), 3);  // drawn from the event loop
    view.setDeck(deck.get());
    thumbnails.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&thumbnails));

    QListWidget* list = thumbnails.list();
    ASSERT_EQ(list->count(), 3);
    EXPECT_EQ(list->currentRow(), 0);
    for (int turns = 0; thumbnails.pending() > 0 && turns < 100; ++turns) QTest::qWait(1);
    ASSERT_EQ(thumbnails.pending(), 0);
    // Each is a picture of its slide: not blank, and not all the same.
    const QImage first = list->item(0)->icon().pixmap(list->iconSize()).toImage();
    const QImage second = list->item(1)->icon().pixmap(list->iconSize()).toImage();
    EXPECT_EQ(first.width(), 160);
    EXPECT_EQ(first.height(), 90);
    EXPECT_NE(first, second);

    QSignalSpy activated(deck.get(), &Deck::currentSlideChanged);
    ASSERT_TRUE(deck->selectShapes({2}));
    const QRect item = list->visualItemRect(list->item(1));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, item.center());
    ASSERT_EQ(activated.count(), 1);
    EXPECT_EQ(activated.at(0).at(0).toInt(), 2);
    EXPECT_EQ(deck->currentSlide(), 2);
    EXPECT_TRUE(deck->selectedShapes().isEmpty());
    // The keys move through them too.
    QTest::keyClick(list, Qt::Key_Down);
    EXPECT_EQ(deck->currentSlide(), 3);
    // An edit draws the picture of its slide again, and only that one; the current one is kept.
    const int drawn = thumbnails.drawnCount();
    const QImage third = list->item(2)->icon().pixmap(list->iconSize()).toImage();
    ASSERT_EQ(deck->replaceText(3, 3, 0, 0, QStringLiteral("新的一行\r"), QStringLiteral("typing")),
              5);
    EXPECT_EQ(thumbnails.pending(), 1);
    for (int turns = 0; thumbnails.pending() > 0 && turns < 100; ++turns) QTest::qWait(1);
    EXPECT_EQ(thumbnails.drawnCount(), drawn + 1);
    EXPECT_NE(list->item(2)->icon().pixmap(list->iconSize()).toImage(), third);
    EXPECT_EQ(list->currentRow(), 2);
    // So does its undo.
    ASSERT_TRUE(deck->undo());
    for (int turns = 0; thumbnails.pending() > 0 && turns < 100; ++turns) QTest::qWait(1);
    EXPECT_EQ(thumbnails.drawnCount(), drawn + 2);
    EXPECT_EQ(list->item(2)->icon().pixmap(list->iconSize()).toImage(), third);
    // The current slide chosen elsewhere is marked.
    ASSERT_TRUE(deck->setCurrentSlide(1));
    EXPECT_EQ(list->currentRow(), 0);

    thumbnails.setDeck(nullptr);
    view.setDeck(nullptr);
    EXPECT_EQ(list->count(), 0);
    deck.reset();
    EXPECT_EQ(minihost::liveObjectCount(), 0);
}

// A picture is decoded once, at the size the slide view draws it, and the thumbnail draws the
// same decoded picture smaller: a picture of 6000 x 6000 pixels takes the memory of what is seen.
TEST(SlideThumbnails, ShareTheSlideViewsDecodedPictures) {
    const QString part = QStringLiteral("ppt/media/image1.png");
    QString error;
    auto deck = Deck::load(hostile::deck({{hostile::slideXml(hostile::picture(2, "rId2")), {part}}},
                                         {{part, hostile::greyPng(6000, 6000, 9)}}),
                           QStringLiteral("picture.pptx"), &error);
    ASSERT_TRUE(deck) << error.toStdString();
    SlideView view;
    view.resize(960, 540);
    view.setDeck(deck.get());
    view.grab();
    SlideThumbnails thumbnails;
    thumbnails.resize(240, 600);
    thumbnails.setDeck(deck.get());
    thumbnails.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&thumbnails));
    for (int turns = 0; thumbnails.pending() > 0 && turns < 1000; ++turns) QTest::qWait(1);
    ASSERT_EQ(thumbnails.pending(), 0);
    const auto pictures = deck->pictures();
    EXPECT_EQ(pictures->decodes(), 1);
    // What is kept is the size the view drew it at: its 4 x 3 inches at under a pixel a point.
    const QImage kept = pictures->picture(part, QSize(1, 1));
    EXPECT_LE(kept.width(), 288);
    EXPECT_LE(kept.height(), 216);
    EXPECT_GT(kept.width(), 160);
    thumbnails.setDeck(nullptr);
    view.setDeck(nullptr);
}

}  // namespace
