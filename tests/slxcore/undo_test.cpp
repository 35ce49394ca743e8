// SPDX-License-Identifier: MIT
// Undo steps: the transaction guards over the deck of the application's active view.
#include <gtest/gtest.h>

#include "decktestutil.h"
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

// Edited and then undone is unedited: the slide is written back as it was stored.
class UndoneEdits : public UndoSteps {
protected:
    void SetUp() override {
        // A deck as a file holds it: two slides with text, read from its bytes.
        auto made = Deck::create(2);
        made->addTextBox(1, QStringLiteral("你好"), QRectF(0, 0, 200, 40));
        made->addTextBox(2, QStringLiteral("再见"), QRectF(0, 0, 200, 40));
        QString error;
        // Stored by another writer (and uncompressed), so that a part we rewrite cannot come out
        // the same by chance.
        decktest::Parts parts;
        for (const decktest::ZipEntry& entry : decktest::zipEntries(made->toBytes(&error)))
            parts.emplace_back(entry.name, entry.data);
        original = decktest::makeZip(parts, true);
        deck = Deck::load(original, QStringLiteral("lesson.pptx"), &error);
        ASSERT_TRUE(deck) << error.toStdString();
        app.setDeck(deck.get());
    }
    QByteArray written() const {
        QString error;
        const QByteArray bytes = deck->toBytes(&error);
        EXPECT_FALSE(bytes.isEmpty()) << error.toStdString();
        return bytes;
    }
    // The entry `name` of `bytes` as stored: its compressed bytes and checksum.
    static std::pair<QByteArray, std::uint32_t> stored(const QByteArray& bytes,
                                                       const QString& name) {
        for (const decktest::ZipEntry& entry : decktest::zipEntries(bytes))
            if (entry.name == name) return {entry.raw, entry.crc};
        return {};
    }

    QByteArray original;
};

TEST_F(UndoneEdits, AnUndoneStepLeavesTheDeckAsItsBytesWere) {
    {
        ZFormatTransGuard guard(&app, QStringLiteral("set phonetic symbol"), true);
        ASSERT_EQ(guard.start(), S_OK);
        addBox(QStringLiteral("nǐ hǎo"));
        ASSERT_EQ(guard.commit(), S_OK);
    }
    EXPECT_EQ(deck->editedParts(), QStringList({"ppt/slides/slide1.xml"}));
    ASSERT_TRUE(deck->undo());
    EXPECT_TRUE(deck->editedParts().isEmpty());
    EXPECT_EQ(written(), original);
    ASSERT_TRUE(deck->redo());  // and redone is edited again
    EXPECT_EQ(deck->editedParts(), QStringList({"ppt/slides/slide1.xml"}));
    EXPECT_NE(written(), original);
}

TEST_F(UndoneEdits, EditsOutsideAStepUndoneOneByOne) {
    addBox(QStringLiteral("nǐ"));  // two steps of its own
    insertAfter(wholeText(*deck, deck->shapes(1).first().id).get(), QStringLiteral("（nǐ hǎo）"));
    ASSERT_EQ(deck->undoSteps().size(), 3);
    while (deck->undo()) {
    }
    EXPECT_EQ(written(), original);
}

TEST_F(UndoneEdits, OnlyTheSlideWhoseEditsRemainIsRewritten) {
    addBox(QStringLiteral("nǐ"));
    ASSERT_TRUE(deck->setCurrentSlide(2));
    addBox(QStringLiteral("zài jiàn"));
    ASSERT_TRUE(deck->undo());
    ASSERT_TRUE(deck->undo());  // slide 2's box and its text are gone; slide 1's stay
    EXPECT_EQ(deck->editedParts(), QStringList({"ppt/slides/slide1.xml"}));
    const QByteArray bytes = written();
    EXPECT_EQ(stored(bytes, QStringLiteral("ppt/slides/slide2.xml")),
              stored(original, QStringLiteral("ppt/slides/slide2.xml")));
    EXPECT_NE(stored(bytes, QStringLiteral("ppt/slides/slide1.xml")),
              stored(original, QStringLiteral("ppt/slides/slide1.xml")));
}

TEST_F(UndoneEdits, RolledBackStepsLeaveTheDeckAsItsBytesWere) {
    {
        ZFormatTransGuard guard(&app, QStringLiteral("set phonetic symbol"), true);
        guard.start();
        addBox(QStringLiteral("nǐ"));
    }  // destroyed without commit
    EXPECT_EQ(written(), original);
    ASSERT_TRUE(minihost::openHostTransaction(&app, QStringLiteral("script")));
    addBox(QStringLiteral("nǐ"));
    ASSERT_TRUE(minihost::rollbackHostTransaction());
    EXPECT_TRUE(deck->editedParts().isEmpty());
    EXPECT_EQ(written(), original);
}

}  // namespace
