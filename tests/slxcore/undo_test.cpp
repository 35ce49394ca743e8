// SPDX-License-Identifier: MIT
// Undo steps: the transaction guards over the deck of the application's active view.
#include <gtest/gtest.h>

#include "minihost/slxcore/hosttransaction.h"
#include "minihost/slxcore/liveobjects.h"
#include "nvo/transaction.h"
#include "omhelpers.h"
#include "qtprinters.h"
#include "testapplication.h"

using namespace omtest;
using minihost::Deck;

namespace {

class UndoSteps : public ::testing::Test {
protected:
    void SetUp() override {
        deck = Deck::create(1);
        app.setDeck(deck.get());
        id = deck->addTextBox(1, QStringLiteral("你好"), QRectF(0, 0, 200, 40));
    }
    void TearDown() override {
        EXPECT_FALSE(ZFormatStaticTransGuard::instance()->isActive());
        EXPECT_EQ(minihost::liveObjectCount(), 0);
    }
    void addBox(const QString& text) {
        ComPtr<Shapes> shapes;
        deck->view()->get_Shapes(shapes.put());
        ComPtr<IUnknown> made;
        shapes->AddTextbox(1, 400, 250, 48, 700, made.put());
        ComPtr<Shape> box = made.query<Shape>(slxoldapi::IID_Shape);
        ComPtr<TextFrame> frame;
        ComPtr<TextRange> range;
        box->get_TextFrame(frame.put());
        frame->get_TextRange(range.put());
        putText(range.get(), text);
    }

    std::unique_ptr<Deck> deck;
    TestApplication app;
    int id = 0;
};

TEST_F(UndoSteps, OneStepUndoesAndRedoesEverythingMadeInside) {
    {
        ZFormatTransGuard guard(&app, QStringLiteral("set phonetic symbol"), true);
        ASSERT_EQ(guard.start(), S_OK);
        // A guard's own step is not the host's transaction.
        EXPECT_FALSE(ZFormatStaticTransGuard::instance()->isActive());
        EXPECT_EQ(ZFormatStaticTransGuard::instance()->name(), QString());
        addBox(QStringLiteral("nǐ"));
        addBox(QStringLiteral("hǎo"));
        insertAfter(wholeText(*deck, id).get(), QStringLiteral("（nǐ hǎo）"));
        ASSERT_EQ(guard.commit(), S_OK);
    }
    EXPECT_EQ(deck->undoSteps(), QStringList({"set phonetic symbol"}));
    EXPECT_EQ(deck->shapes(1).size(), 3);
    ASSERT_TRUE(deck->undo());
    EXPECT_EQ(deck->shapes(1).size(), 1);
    EXPECT_EQ(deck->text(1, id), QStringLiteral("你好"));
    EXPECT_EQ(deck->redoSteps(), QStringList({"set phonetic symbol"}));
    ASSERT_TRUE(deck->redo());
    EXPECT_EQ(deck->shapes(1).size(), 3);
    EXPECT_EQ(deck->text(1, id), QStringLiteral("你好（nǐ hǎo）"));
    EXPECT_FALSE(deck->redo());
}

TEST_F(UndoSteps, ASecondGuardCannotStartWhileAStepIsOpen) {
    ZFormatTransGuard outer(&app, QStringLiteral("first"), true);
    ASSERT_EQ(outer.start(), S_OK);
    EXPECT_EQ(outer.start(), E_FAIL);
    ZFormatTransGuard inner(&app, QStringLiteral("second"), true);
    EXPECT_EQ(inner.start(), E_FAIL);
    addBox(QStringLiteral("nǐ"));
    EXPECT_EQ(inner.commit(), E_FAIL);  // it opened nothing
    EXPECT_FALSE(deck->undo());         // not while a step is open
    ASSERT_EQ(outer.commit(), S_OK);
    EXPECT_EQ(outer.commit(), E_FAIL);
    EXPECT_EQ(deck->undoSteps(), QStringList({"first"}));
}

TEST_F(UndoSteps, TheHostsTransactionIsWhatTheStaticGuardReports) {
    ASSERT_TRUE(minihost::openHostTransaction(&app, QStringLiteral("script")));
    ZFormatStaticTransGuard* host = ZFormatStaticTransGuard::instance();
    EXPECT_TRUE(host->isActive());
    EXPECT_EQ(host->name(), QStringLiteral("script"));
    EXPECT_FALSE(minihost::openHostTransaction(&app, QStringLiteral("again")));
    {
        // A command joins it: its guard cannot start, it renames the host's step instead.
        ZFormatTransGuard guard(&app, QStringLiteral("set phonetic symbol"), true);
        EXPECT_EQ(guard.start(), E_FAIL);
        host->setName(QStringLiteral("set phonetic symbol"));
        addBox(QStringLiteral("nǐ"));
        addBox(QStringLiteral("hǎo"));
    }  // the idle guard rolls nothing back
    EXPECT_EQ(deck->shapes(1).size(), 3);
    EXPECT_TRUE(deck->undoSteps().isEmpty());
    ASSERT_TRUE(minihost::commitHostTransaction());
    EXPECT_FALSE(host->isActive());
    EXPECT_FALSE(minihost::commitHostTransaction());
    EXPECT_EQ(deck->undoSteps(), QStringList({"set phonetic symbol"}));
    deck->undo();
    EXPECT_EQ(deck->shapes(1).size(), 1);
}

TEST_F(UndoSteps, TheHostsTransactionCanBeRolledBack) {
    ASSERT_TRUE(minihost::openHostTransaction(&app, QStringLiteral("script")));
    addBox(QStringLiteral("nǐ"));
    ASSERT_TRUE(minihost::rollbackHostTransaction());
    EXPECT_FALSE(minihost::rollbackHostTransaction());
    EXPECT_EQ(deck->shapes(1).size(), 1);
    EXPECT_EQ(deck->journal().last(), QStringLiteral("HostTransaction.rollback"));
    ZFormatStaticTransGuard::instance()->setName(QStringLiteral("ignored"));  // none open
    EXPECT_EQ(ZFormatStaticTransGuard::instance()->name(), QString());
}

TEST_F(UndoSteps, DestroyedWithoutCommitRollsBack) {
    {
        ZFormatTransGuard guard(&app, QStringLiteral("set phonetic symbol"), true);
        guard.start();
        addBox(QStringLiteral("nǐ"));
        EXPECT_EQ(deck->shapes(1).size(), 2);
    }
    EXPECT_EQ(deck->shapes(1).size(), 1);
    EXPECT_TRUE(deck->undoSteps().isEmpty());
    EXPECT_EQ(deck->journal().last(), QStringLiteral("Transaction.rollback"));
}

TEST_F(UndoSteps, WithoutRecordingTheChangesStayButNoStepIsKept) {
    {
        ZFormatTransGuard guard(&app, QStringLiteral("quiet"), false);
        guard.start();
        addBox(QStringLiteral("nǐ"));
        guard.commit();
    }
    EXPECT_EQ(deck->shapes(1).size(), 2);
    EXPECT_TRUE(deck->undoSteps().isEmpty());
}

TEST_F(UndoSteps, AnEmptyStepIsCommittedButLeavesNothingToUndo) {
    deck->clearJournal();
    {
        ZFormatTransGuard guard(&app, QStringLiteral("set phonetic symbol"), true);
        guard.start();
        guard.commit();
    }
    EXPECT_EQ(deck->journal(), QStringList({"Transaction.start(\"set phonetic symbol\")",
                                            "Transaction.commit(\"set phonetic symbol\")"}));
    EXPECT_TRUE(deck->undoSteps().isEmpty());
}

TEST_F(UndoSteps, EditsOutsideAStepAreStepsOfTheirOwn) {
    addBox(QStringLiteral("nǐ"));
    EXPECT_EQ(deck->undoSteps(), QStringList({"AddTextbox", "put_Text"}));
    deck->undo();
    EXPECT_EQ(deck->shapes(1).last().text, QString());
    deck->undo();
    EXPECT_EQ(deck->shapes(1).size(), 1);
    addBox(QStringLiteral("new"));
    EXPECT_TRUE(deck->redoSteps().isEmpty());  // a new edit drops what could be redone
}

TEST_F(UndoSteps, RangesOverUndoneTextStayInsideTheirFrame) {
    ComPtr<TextRange> all = wholeText(*deck, id);
    ComPtr<TextRange> inserted = insertAfter(all.get(), QStringLiteral("（nǐ hǎo）"));
    ASSERT_TRUE(deck->undo());
    EXPECT_EQ(text(inserted.get()), QString());  // its text is gone; the range is empty
    EXPECT_EQ(text(all.get()), QStringLiteral("你好"));
}

TEST_F(UndoSteps, AGuardWithoutAnApplicationStillOpensAndClosesAStep) {
    ZFormatTransGuard guard(nullptr, QStringLiteral("nowhere"), true);
    EXPECT_EQ(guard.start(), S_OK);
    ZFormatTransGuard second(nullptr, QStringLiteral("elsewhere"), true);
    EXPECT_EQ(second.start(), E_FAIL);
    EXPECT_EQ(guard.commit(), S_OK);
    EXPECT_EQ(second.start(), S_OK);
    EXPECT_EQ(second.commit(), S_OK);
}

}  // namespace
