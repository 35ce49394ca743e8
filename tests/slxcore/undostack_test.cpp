// SPDX-License-Identifier: MIT
// The deck's undo stack and what the deck tells its watchers: every change is one command on the
// stack, whose clean state is "as saved"; changed() names the slides and shapes a step, an undo
// or a redo changed; edited() lets a watcher add follow-up changes to the step being closed;
// selectionChanged() and currentSlideChanged() come once per change.
#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTemporaryDir>

#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/hosttransaction.h"
#include "minihost/slxcore/liveobjects.h"
#include "nvo/transaction.h"
#include "omhelpers.h"
#include "qtprinters.h"
#include "testapplication.h"

using namespace omtest;
using minihost::Deck;
using minihost::DeckChange;

namespace {

using Shapes = QMap<int, QSet<int>>;

// What each signal of `spy` said.
QList<Shapes> changes(const QSignalSpy& spy) {
    QList<Shapes> result;
    for (const QList<QVariant>& arguments : spy)
        result << arguments.at(0).value<DeckChange>().shapes;
    return result;
}

class DeckStack : public ::testing::Test {
protected:
    void SetUp() override {
        deck = Deck::create(2);
        first = deck->addTextBox(1, QStringLiteral("你好"), QRectF(0, 0, 200, 40));
        second = deck->addTextBox(1, QStringLiteral("再见"), QRectF(0, 100, 200, 40));
        other = deck->addTextBox(2, QStringLiteral("谢谢"), QRectF(0, 0, 200, 40));
        app.setDeck(deck.get());
    }
    void TearDown() override {
        EXPECT_FALSE(ZFormatStaticTransGuard::instance()->isActive());
        deck.reset();
        EXPECT_EQ(minihost::liveObjectCount(), 0);
    }

    // A new text box made through the object model, as the add-on makes its boxes.
    void addBox() {
        ComPtr<slxoldapi::Shapes> shapes;
        deck->view()->get_Shapes(shapes.put());
        ComPtr<IUnknown> made;
        shapes->AddTextbox(1, 400, 250, 48, 70, made.put());
        made.query<Shape>(slxoldapi::IID_Shape)->Select(-1);
    }

    std::unique_ptr<Deck> deck;
    TestApplication app;
    int first = 0, second = 0, other = 0;
};

TEST_F(DeckStack, EveryKindOfChangeIsOneCommandOnTheStack) {
    QUndoStack* stack = deck->undoStack();
    EXPECT_EQ(stack->count(), 0);  // content built before anyone edits is no step
    EXPECT_TRUE(stack->isClean());
    deck->replaceText(1, first, 2, 0, QStringLiteral("！"), QStringLiteral("typing"));
    deck->setShapeBoxes(1, {{second, QRectF(10, 100, 200, 40)}}, QStringLiteral("move"));
    const int inserted = deck->insertTextBox(2, QRectF(0, 200, 100, 30), QStringLiteral("insert"));
    EXPECT_GT(inserted, other);
    deck->deleteShapes(2, {other}, QStringLiteral("delete"));
    {
        ZFormatTransGuard guard(&app, QStringLiteral("set phonetic symbol"), true);
        ASSERT_EQ(guard.start(), S_OK);
        addBox();
        ASSERT_EQ(guard.commit(), S_OK);
    }
    ASSERT_TRUE(minihost::openHostTransaction(&app, QStringLiteral("Move")));
    deck->setShapeBoxes(1, {{first, QRectF(0, 300, 200, 40)}}, QStringLiteral("move"));
    deck->setShapeBoxes(1, {{second, QRectF(0, 400, 200, 40)}}, QStringLiteral("move"));
    ASSERT_TRUE(minihost::commitHostTransaction());
    insertAfter(wholeText(*deck, first).get(), QStringLiteral("（nǐ hǎo）"));  // no step open
    const QStringList steps = {"typing", "move",       "insert", "delete", "set phonetic symbol",
                               "Move",   "InsertAfter"};
    ASSERT_EQ(stack->count(), steps.size());
    for (int i = 0; i < steps.size(); ++i) EXPECT_EQ(stack->text(i), steps.at(i));
    EXPECT_EQ(deck->undoSteps(), steps);
    EXPECT_FALSE(stack->isClean());
    while (deck->undo()) {
    }
    EXPECT_TRUE(stack->isClean());  // back as it was read
    EXPECT_EQ(deck->text(1, first), QStringLiteral("你好"));
    EXPECT_EQ(deck->shapes(2).size(), 1);
    EXPECT_EQ(deck->redoSteps().last(), QStringLiteral("typing"));  // the next redo last
}

TEST_F(DeckStack, TheCleanStateIsTheStateSaved) {
    QTemporaryDir dir;
    QString error;
    deck->replaceText(1, first, 0, 0, QStringLiteral("a"), QStringLiteral("typing"));
    deck->replaceText(1, first, 1, 0, QStringLiteral("b"), QStringLiteral("typing"));
    QSignalSpy clean(deck->undoStack(), &QUndoStack::cleanChanged);
    ASSERT_TRUE(deck->save(dir.filePath(QStringLiteral("a.pptx")), &error)) << error.toStdString();
    EXPECT_TRUE(deck->undoStack()->isClean());
    ASSERT_TRUE(deck->undo());
    EXPECT_FALSE(deck->undoStack()->isClean());
    ASSERT_TRUE(deck->redo());
    EXPECT_TRUE(deck->undoStack()->isClean());
    EXPECT_EQ(clean.count(), 3);
    // A deck turned into bytes is not saved anywhere.
    ASSERT_TRUE(deck->undo());
    EXPECT_FALSE(deck->toBytes(&error).isEmpty());
    EXPECT_FALSE(deck->undoStack()->isClean());
}

TEST_F(DeckStack, ItKeepsTheLastStepsOnly) {
    for (int i = 0; i < Deck::kUndoLimit + 20; ++i)
        deck->replaceText(1, first, 0, 0, QStringLiteral("a"), QStringLiteral("typing"));
    EXPECT_EQ(deck->undoStack()->count(), Deck::kUndoLimit);
    int undone = 0;
    while (deck->undo()) ++undone;
    EXPECT_EQ(undone, Deck::kUndoLimit);
    EXPECT_EQ(deck->text(1, first), QString(20, QLatin1Char('a')) + QStringLiteral("你好"));
    // The state as read is out of reach: never "as saved" again.
    EXPECT_FALSE(deck->undoStack()->isClean());
}

TEST_F(DeckStack, ChangedNamesTheSlidesAndShapesOfEachStepUndoAndRedo) {
    QSignalSpy changed(deck.get(), &Deck::changed);
    deck->replaceText(1, first, 0, 0, QStringLiteral("a"), QStringLiteral("typing"));
    deck->setShapeBoxes(1, {{first, QRectF(0, 50, 200, 40)}, {second, QRectF(0, 150, 200, 40)}},
                        QStringLiteral("move"));
    const int box = deck->insertTextBox(2, QRectF(0, 200, 100, 30), QStringLiteral("insert"));
    {
        // A command's step over two slides.
        ZFormatTransGuard guard(&app, QStringLiteral("set phonetic symbol"), true);
        ASSERT_EQ(guard.start(), S_OK);
        addBox();
        ASSERT_TRUE(deck->setCurrentSlide(2));
        insertAfter(wholeText(*deck, other).get(), QStringLiteral("（xiè xie）"));
        EXPECT_EQ(changed.count(), 3);  // not while the step is open
        ASSERT_EQ(guard.commit(), S_OK);
    }
    const int added = deck->shapes(1).last().id;
    const QList<Shapes> made = {
        {{1, {first}}}, {{1, {first, second}}}, {{2, {box}}}, {{1, {added}}, {2, {other}}}};
    EXPECT_EQ(changes(changed), made);
    changed.clear();
    ASSERT_TRUE(deck->undo());
    ASSERT_TRUE(deck->undo());
    ASSERT_TRUE(deck->redo());
    EXPECT_EQ(changes(changed), (QList<Shapes>{made[3], made[2], made[2]}));
    // An object-model call outside a step, and content built: named too.
    changed.clear();
    insertAfter(wholeText(*deck, other).get(), QStringLiteral("!"));
    const int built = deck->addTextBox(1, QStringLiteral("新"), QRectF(0, 0, 10, 10));
    EXPECT_EQ(changes(changed), (QList<Shapes>{{{2, {other}}}, {{1, {built}}}}));
}

TEST_F(DeckStack, WhatAWatcherChangesWhileAStepClosesJoinsIt) {
    // A watcher that keeps shape `second` a copy of shape `first`, as readings follow their text.
    int told = 0;
    QObject::connect(deck.get(), &Deck::edited, [&](const DeckChange& change) {
        ++told;
        if (change.shapes.value(1).contains(first))
            deck->replaceText(1, second, 0, 99, deck->text(1, first), QStringLiteral("follow"));
    });
    QSignalSpy changed(deck.get(), &Deck::changed);
    deck->replaceText(1, first, 2, 0, QStringLiteral("啊"), QStringLiteral("typing"));
    EXPECT_EQ(deck->text(1, second), QStringLiteral("你好啊"));
    EXPECT_EQ(told, 1);  // the follow-up is no edit of its own
    EXPECT_EQ(deck->undoSteps(), QStringList{QStringLiteral("typing")});
    EXPECT_EQ(changes(changed), (QList<Shapes>{{{1, {first, second}}}}));
    ASSERT_TRUE(deck->undo());
    EXPECT_EQ(deck->text(1, first), QStringLiteral("你好"));
    EXPECT_EQ(deck->text(1, second), QStringLiteral("再见"));
    ASSERT_TRUE(deck->redo());
    EXPECT_EQ(deck->text(1, second), QStringLiteral("你好啊"));

    // The host's step and a command's: the follow-up joins them too.
    ASSERT_TRUE(minihost::openHostTransaction(&app, QStringLiteral("script")));
    deck->replaceText(1, first, 0, 0, QStringLiteral("说"), QStringLiteral("typing"));
    EXPECT_EQ(deck->text(1, second), QStringLiteral("你好啊"));  // not before it closes
    ASSERT_TRUE(minihost::commitHostTransaction());
    EXPECT_EQ(deck->text(1, second), QStringLiteral("说你好啊"));
    {
        ZFormatTransGuard guard(&app, QStringLiteral("set phonetic symbol"), true);
        ASSERT_EQ(guard.start(), S_OK);
        insertAfter(wholeText(*deck, first).get(), QStringLiteral("（nǐ hǎo）"));
        ASSERT_EQ(guard.commit(), S_OK);
    }
    EXPECT_EQ(deck->text(1, second), QStringLiteral("说你好啊（nǐ hǎo）"));
    EXPECT_EQ(deck->undoSteps(), (QStringList{"typing", "script", "set phonetic symbol"}));
    EXPECT_EQ(told, 3);
    ASSERT_TRUE(deck->undo());
    EXPECT_EQ(deck->text(1, second), QStringLiteral("说你好啊"));

    // A step rolled back is no edit: nobody follows it.
    {
        ZFormatTransGuard guard(&app, QStringLiteral("set phonetic symbol"), true);
        ASSERT_EQ(guard.start(), S_OK);
        insertAfter(wholeText(*deck, first).get(), QStringLiteral("x"));
    }
    EXPECT_EQ(told, 3);
    EXPECT_EQ(deck->text(1, first), QStringLiteral("说你好啊"));
}

TEST_F(DeckStack, TheSelectionIsToldOncePerChangeAndAfterTheSlides) {
    QStringList heard;
    QObject::connect(deck.get(), &Deck::changed, [&] { heard << QStringLiteral("changed"); });
    QObject::connect(deck.get(), &Deck::selectionChanged,
                     [&] { heard << QStringLiteral("selection"); });
    ASSERT_TRUE(deck->selectText(first, 0, 2));
    ASSERT_TRUE(deck->selectText(first, 0, 2));  // the same again: nothing new
    EXPECT_EQ(heard, QStringList{QStringLiteral("selection")});
    heard.clear();
    // Typing over the selection moves it: told once, after the slide.
    deck->replaceText(1, first, 0, 2, QStringLiteral("早上好"), QStringLiteral("typing"));
    EXPECT_EQ(heard, (QStringList{QStringLiteral("changed"), QStringLiteral("selection")}));
    heard.clear();
    {
        // A command that makes two boxes and selects each.
        ZFormatTransGuard guard(&app, QStringLiteral("set phonetic symbol"), true);
        ASSERT_EQ(guard.start(), S_OK);
        addBox();
        addBox();
        EXPECT_TRUE(heard.isEmpty());
        ASSERT_EQ(guard.commit(), S_OK);
    }
    EXPECT_EQ(heard, (QStringList{QStringLiteral("changed"), QStringLiteral("selection")}));
    heard.clear();
    // Its undo takes the selected box away.
    ASSERT_TRUE(deck->undo());
    EXPECT_EQ(heard, (QStringList{QStringLiteral("changed"), QStringLiteral("selection")}));
    EXPECT_TRUE(deck->selectedShapes().isEmpty());
    heard.clear();
    deck->clearSelection();
    EXPECT_TRUE(heard.isEmpty());
}

TEST_F(DeckStack, TheCurrentSlideIsToldWhenItChanges) {
    QSignalSpy current(deck.get(), &Deck::currentSlideChanged);
    QSignalSpy selection(deck.get(), &Deck::selectionChanged);
    ASSERT_TRUE(deck->selectShapes({first}));
    ASSERT_TRUE(deck->setCurrentSlide(2));
    ASSERT_TRUE(deck->setCurrentSlide(2));
    EXPECT_FALSE(deck->setCurrentSlide(3));
    ASSERT_EQ(current.count(), 1);
    EXPECT_EQ(current.at(0).at(0).toInt(), 2);
    EXPECT_EQ(selection.count(), 2);  // selected, then cleared with the slide
}

TEST_F(DeckStack, ObjectsThatOutliveTheDeckStillWorkUntold) {
    ComPtr<TextRange> text = wholeText(*deck, first);
    deck.reset();
    // The parts are the clients' now: the edit is made, nobody is told, nothing is undoable.
    EXPECT_EQ(omtest::text(insertAfter(text.get(), QStringLiteral("!")).get()),
              QStringLiteral("!"));
    EXPECT_EQ(omtest::text(text.get()), QStringLiteral("你好"));
}

}  // namespace
