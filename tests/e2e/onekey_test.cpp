// SPDX-License-Identifier: MIT
// "PhoneticOneKey" through the built module, loaded as a host loads it, over a deck of the
// stand-in object model: the boxes it makes, the calls it sends (read off the deck's journal),
// the undo step, the usage event and the warning, and no object left alive after a command.
#include <gtest/gtest.h>

#include <QRectF>
#include <memory>

#include "minihost/nvo/addonmodule.h"
#include "minihost/nvo/hostcontrol.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/hosttransaction.h"
#include "minihost/slxcore/liveobjects.h"
#include "nvo/transaction.h"
#include "qtprinters.h"
#include "ribbonfixture.h"
#include "slxcore/slxoldapi.h"

namespace {

// The two texts as the add-on shows them: through its translation, which the host installs while
// an entry object lives (the user's language decides which one).
QString warning() {
    return QCoreApplication::translate("ZPhoneticSymbolModel",
                                       "please select one character at least");
}
QString stepName() {
    return QCoreApplication::translate("ZPhoneticSymbolModel", "set phonetic symbol");
}

class OneKey : public RibbonFixture {
protected:
    void SetUp() override {
        ASSERT_TRUE(module.load(minihost::addonModulePath(QStringLiteral("zphoneticsymbol"))))
            << module.errorString().toStdString();
        showTab(QStringLiteral("CT_Home"));
        entry.reset(module.createEntryObject());
        ASSERT_NE(entry, nullptr);
        deck = minihost::Deck::create(1);
        minihost::setActiveView(deck->view());
        minihost::clearUsageEvents();
        minihost::clearMessagesShown();
        overReleases = minihost::overReleaseCount();
    }
    void TearDown() override {
        if (ZFormatStaticTransGuard::instance()->isActive()) minihost::rollbackHostTransaction();
        minihost::setActiveView(nullptr);
        entry.reset();
        deck.reset();
        RibbonFixture::TearDown();
    }

    static QList<UsageEvent> events() { return minihost::usageEvents(); }
    static QList<RecordedMessage> messages() { return minihost::messagesShown(); }

    int addText(const QString& text, qreal top = 40) {
        return deck->addTextBox(1, text, QRectF(40, top, 500, 60));
    }

    // Runs the command as the ribbon does, from a clean journal, and checks that it left no
    // object alive and released none twice.
    void oneKey() {
        deck->clearJournal();
        ASSERT_TRUE(minihost::triggerCommand(entry.get(), QStringLiteral("PhoneticOneKey")));
        EXPECT_EQ(minihost::liveObjectCount(), 0)
            << minihost::liveObjectKinds().join(u' ').toStdString();
        EXPECT_EQ(minihost::overReleaseCount(), overReleases);
    }

    // The shapes the command added: those after the first `before` shapes of slide 1.
    QList<minihost::ShapeInfo> newShapes(int before) const { return deck->shapes(1).mid(before); }
    // The journal lines that name one of `calls` ("Shapes.AddTextbox", "Shape.Select", ...).
    QStringList callsOf(const QStringList& calls) const {
        QStringList out;
        for (const QString& line : deck->journal())
            for (const QString& call : calls)
                if (line.startsWith(call)) out << line;
        return out;
    }

    minihost::AddonModule module;
    std::unique_ptr<QObject> entry;
    std::unique_ptr<minihost::Deck> deck;
    int overReleases = 0;
};

// What the command writes, without what it reads.
const QStringList kWritingCalls = {
    QStringLiteral("Transaction."), QStringLiteral("Shapes.AddTextbox"),
    QStringLiteral("TextFrame.put_AutoSize"), QStringLiteral("TextRange.put_Text"),
    QStringLiteral("Shape.Select")};

// The deck's view, except that get_Shapes fails from its `failFrom`-th call on (counting from
// 1): the slide's shapes become unreachable part way through a command. Everything else,
// transactions included, reaches the deck's own view.
class RefusingView final : public slxoldapi::DocumentView {
public:
    RefusingView(slxoldapi::DocumentView* view, int failFrom)
        : m_view(view), m_failFrom(failFrom) {}
    HRESULT QueryInterface(REFIID iid, void** out) override {
        return m_view->QueryInterface(iid, out);
    }
    std::uint32_t AddRef() override { return 1; }  // lives as long as the test
    std::uint32_t Release() override { return 1; }
    IUnknown* selectionObject() override { return m_view->selectionObject(); }
    HRESULT get_Shapes(slxoldapi::Shapes** shapes) override {
        if (++m_calls >= m_failFrom) {
            *shapes = nullptr;
            return E_FAIL;
        }
        return m_view->get_Shapes(shapes);
    }

private:
    slxoldapi::DocumentView* m_view;
    int m_failFrom;
    int m_calls = 0;
};

}  // namespace

TEST_F(OneKey, TextSelectedInOneBoxGivesOneBoxOfTheRunsReadingsSelectedAfterwards) {
    const int id = addText(QStringLiteral("我们学习汉语"));
    ASSERT_TRUE(deck->selectText(id, 2, 2));  // 学习
    oneKey();

    const QList<minihost::ShapeInfo> made = newShapes(1);
    ASSERT_EQ(made.size(), 1);
    EXPECT_EQ(made[0].text, QStringLiteral("xué xí"));
    EXPECT_EQ(made[0].kind, QStringLiteral("text box"));
    EXPECT_TRUE(made[0].followsText);
    EXPECT_EQ(deck->selectedShapes(), QList<int>{made[0].id});
    EXPECT_FALSE(deck->hasTextSelection());
    EXPECT_EQ(deck->text(1, id), QStringLiteral("我们学习汉语"));  // never changed
    // The text path reads no frame, so every frame call here is the command's own.
    EXPECT_EQ(callsOf(kWritingCalls + QStringList{QStringLiteral("Shape.get_TextFrame"),
                                                  QStringLiteral("TextFrame.get_TextRange")}),
              QStringList(
                  {QStringLiteral("Transaction.start(\"%1\")").arg(stepName()),
                   QStringLiteral("Shapes.AddTextbox(1, 400, 250, 84, 700)"),
                   QStringLiteral("Shape.get_TextFrame"), QStringLiteral("TextFrame.get_TextRange"),
                   QStringLiteral("TextRange.put_Text(\"xué xí\")"),
                   QStringLiteral("Shape.get_TextFrame"), QStringLiteral("TextFrame.get_TextRange"),
                   QStringLiteral("TextFrame.put_AutoSize(1)"), QStringLiteral("Shape.Select(-1)"),
                   QStringLiteral("Transaction.commit(\"%1\")").arg(stepName())}));
    EXPECT_EQ(deck->undoSteps(), QStringList{stepName()});
    EXPECT_TRUE(messages().isEmpty());
    ASSERT_EQ(events().size(), 1);
    EXPECT_EQ(events()[0].name, QStringLiteral("nvo_phoneticsymbol_home"));
    EXPECT_EQ(events()[0].parameters, (QHash<QString, QString>{{"action", "onekey"}}));
}

TEST_F(OneKey, ThreeShapesGiveThreeStackedBoxesAllSelectedAndOneUndoRemovesThem) {
    const int first = addText(QStringLiteral("中国"), 40);
    const int second = addText(QStringLiteral("你好"), 120);
    const int third = addText(QStringLiteral("学生"), 200);
    ASSERT_TRUE(deck->selectShapes({first, second, third}));
    oneKey();

    const QList<minihost::ShapeInfo> made = newShapes(3);
    ASSERT_EQ(made.size(), 3);
    EXPECT_EQ(made[0].text, QStringLiteral("zhōnɡ ɡuó"));  // the single-storey a and g
    EXPECT_EQ(made[1].text, QStringLiteral("nǐ hǎo"));
    EXPECT_EQ(made[2].text, QStringLiteral("xué shēnɡ"));
    for (const minihost::ShapeInfo& shape : made) {
        EXPECT_EQ(shape.box.topLeft(), QPointF(400, 250));
        EXPECT_TRUE(shape.followsText);
    }
    EXPECT_EQ(callsOf({QStringLiteral("Shapes.AddTextbox"), QStringLiteral("Shape.Select")}),
              QStringList({QStringLiteral("Shapes.AddTextbox(1, 400, 250, 120, 700)"),
                           QStringLiteral("Shapes.AddTextbox(1, 400, 250, 84, 700)"),
                           QStringLiteral("Shapes.AddTextbox(1, 400, 250, 120, 700)"),
                           QStringLiteral("Shape.Select(-1)"), QStringLiteral("Shape.Select(0)"),
                           QStringLiteral("Shape.Select(0)")}));
    EXPECT_EQ(deck->selectedShapes(), (QList<int>{made[0].id, made[1].id, made[2].id}));
    EXPECT_EQ(deck->undoSteps(), QStringList{stepName()});

    ASSERT_TRUE(deck->undo());
    EXPECT_EQ(deck->shapes(1).size(), 3);
    EXPECT_TRUE(deck->undoSteps().isEmpty());
    ASSERT_TRUE(deck->redo());
    EXPECT_EQ(deck->shapes(1).size(), 6);
}

TEST_F(OneKey, AnOpenHostTransactionIsRenamedAndNeitherStartedNorCommitted) {
    const int id = addText(QStringLiteral("你好"));
    ASSERT_TRUE(deck->selectShapes({id}));
    ASSERT_TRUE(minihost::openHostTransaction(app()->coreApplication(), QStringLiteral("script")));
    oneKey();

    EXPECT_TRUE(callsOf({QStringLiteral("Transaction.")}).isEmpty())
        << deck->journal().join(u'\n').toStdString();
    ASSERT_TRUE(ZFormatStaticTransGuard::instance()->isActive());
    EXPECT_EQ(ZFormatStaticTransGuard::instance()->name(), stepName());
    EXPECT_EQ(newShapes(1).size(), 1);
    EXPECT_TRUE(deck->undoSteps().isEmpty());  // still open: the host closes it

    ASSERT_TRUE(minihost::commitHostTransaction());
    EXPECT_EQ(deck->undoSteps(), QStringList{stepName()});
    ASSERT_TRUE(deck->undo());
    EXPECT_EQ(deck->shapes(1).size(), 1);
}

TEST_F(OneKey, NonChineseTextWarnsAfterAnEmptyCommit) {
    const int id = addText(QStringLiteral("Hello, world 123"));
    ASSERT_TRUE(deck->selectShapes({id}));
    oneKey();

    EXPECT_EQ(newShapes(1).size(), 0);
    EXPECT_EQ(callsOf(kWritingCalls),
              QStringList({QStringLiteral("Transaction.start(\"%1\")").arg(stepName()),
                           QStringLiteral("Transaction.commit(\"%1\")").arg(stepName())}));
    EXPECT_TRUE(deck->undoSteps().isEmpty());  // nothing changed, nothing to undo
    ASSERT_EQ(messages().size(), 1);
    EXPECT_EQ(messages()[0].text, warning());
    EXPECT_EQ(messages()[0].flags, 48u);
    EXPECT_EQ(events().size(), 1);
}

TEST_F(OneKey, WhenTheLastBoxFailsTheWarningFollowsTheCommitAndEarlierBoxesStay) {
    const int first = addText(QStringLiteral("你好"), 40);
    const int second = addText(QStringLiteral("中国"), 120);
    ASSERT_TRUE(deck->selectShapes({first, second}));
    RefusingView view(deck->view(), 2);  // the second box cannot be made
    minihost::setActiveView(&view);
    oneKey();

    ASSERT_EQ(newShapes(2).size(), 1);
    EXPECT_EQ(newShapes(2)[0].text, QStringLiteral("nǐ hǎo"));
    EXPECT_EQ(callsOf(kWritingCalls),
              QStringList({QStringLiteral("Transaction.start(\"%1\")").arg(stepName()),
                           QStringLiteral("Shapes.AddTextbox(1, 400, 250, 84, 700)"),
                           QStringLiteral("TextRange.put_Text(\"nǐ hǎo\")"),
                           QStringLiteral("TextFrame.put_AutoSize(1)"),
                           QStringLiteral("Shape.Select(-1)"),
                           QStringLiteral("Transaction.commit(\"%1\")").arg(stepName())}));
    EXPECT_EQ(deck->undoSteps(), QStringList{stepName()});  // committed, not rolled back
    EXPECT_EQ(deck->selectedShapes(), QList<int>{newShapes(2)[0].id});
    ASSERT_EQ(messages().size(), 1);
    EXPECT_EQ(messages()[0].text, warning());
    EXPECT_EQ(messages()[0].flags, 48u);
    minihost::setActiveView(deck->view());
}

TEST_F(OneKey, ATextWithoutReadingsAfterABoxLeavesTheLastResultAndNoWarning) {
    // "hello" gives no readings at all, so it never reaches the box: the last attempt was 你好's.
    const int chinese = addText(QStringLiteral("你好"), 40);
    const int latin = addText(QStringLiteral("hello"), 120);
    ASSERT_TRUE(deck->selectShapes({chinese, latin}));
    oneKey();

    ASSERT_EQ(newShapes(2).size(), 1);
    EXPECT_EQ(newShapes(2)[0].text, QStringLiteral("nǐ hǎo"));
    EXPECT_TRUE(messages().isEmpty());
}

TEST_F(OneKey, OnlyTheLastTextDecidesTheWarning) {
    const int latin = addText(QStringLiteral("hello"), 40);
    const int chinese = addText(QStringLiteral("你好"), 120);
    ASSERT_TRUE(deck->selectShapes({latin, chinese}));
    oneKey();

    EXPECT_EQ(newShapes(2).size(), 1);
    EXPECT_TRUE(messages().isEmpty());
}

TEST_F(OneKey, NothingSelectedWarnsWithoutOpeningATransaction) {
    addText(QStringLiteral("你好"));
    deck->clearSelection();
    oneKey();

    ASSERT_EQ(messages().size(), 1);
    EXPECT_EQ(messages()[0].text, warning());
    EXPECT_EQ(messages()[0].flags, 0x30u);
    EXPECT_TRUE(callsOf({QStringLiteral("Transaction.")}).isEmpty());
    EXPECT_EQ(deck->shapes(1).size(), 1);
    // Counted all the same: the event comes first.
    ASSERT_EQ(events().size(), 1);
    EXPECT_EQ(events()[0].parameters.value(QStringLiteral("action")), QStringLiteral("onekey"));
}

TEST_F(OneKey, SeventyJoinedCharactersGiveAWidthOf850) {
    // 21 × nǐ and 2 × hǎo with their 22 spaces: 42 + 6 + 22 = 70 units.
    const int id = addText(QString(21, QChar(0x4F60)) + QStringLiteral("好好"));
    ASSERT_TRUE(deck->selectShapes({id}));
    oneKey();

    ASSERT_EQ(newShapes(1).size(), 1);
    EXPECT_EQ(newShapes(1)[0].text.size(), 70) << newShapes(1)[0].text.toStdString();
    EXPECT_EQ(callsOf({QStringLiteral("Shapes.AddTextbox")}),
              QStringList{QStringLiteral("Shapes.AddTextbox(1, 400, 250, 850, 700)")});
}

TEST_F(OneKey, SixtyNineJoinedCharactersKeepTheirWidth) {
    const int id = addText(QString(22, QChar(0x4F60)) + QStringLiteral("好"));  // 44 + 3 + 22
    ASSERT_TRUE(deck->selectShapes({id}));
    oneKey();

    ASSERT_EQ(newShapes(1).size(), 1);
    EXPECT_EQ(newShapes(1)[0].text.size(), 69);
    EXPECT_EQ(callsOf({QStringLiteral("Shapes.AddTextbox")}),
              QStringList{QStringLiteral("Shapes.AddTextbox(1, 400, 250, 840, 700)")});
}

TEST_F(OneKey, EmptyReadingsInsideAreSkippedWithTheirSpace) {
    const int id = addText(QStringLiteral("你a好"));
    ASSERT_TRUE(deck->selectShapes({id}));
    oneKey();
    ASSERT_EQ(newShapes(1).size(), 1);
    EXPECT_EQ(newShapes(1)[0].text, QStringLiteral("nǐ hǎo"));
}

TEST_F(OneKey, AnEmptyLastReadingLeavesATrailingSpace) {
    const int id = addText(QStringLiteral("你好!"));
    ASSERT_TRUE(deck->selectShapes({id}));
    oneKey();
    ASSERT_EQ(newShapes(1).size(), 1);
    EXPECT_EQ(newShapes(1)[0].text, QStringLiteral("nǐ hǎo "));
}

TEST_F(OneKey, NeitherHomeNorTextToolPostsNothingButWorks) {
    ASSERT_TRUE(minihost::setCurrentTabById(window.get(), QStringLiteral("CT_Insert")));
    const int id = addText(QStringLiteral("你好"));
    ASSERT_TRUE(deck->selectShapes({id}));
    oneKey();

    EXPECT_TRUE(events().isEmpty());
    ASSERT_EQ(newShapes(1).size(), 1);
    EXPECT_EQ(newShapes(1)[0].text, QStringLiteral("nǐ hǎo"));
    EXPECT_TRUE(messages().isEmpty());
}

TEST_F(OneKey, TextToolTabPostsTheTextToolEvent) {
    ASSERT_TRUE(minihost::setCurrentTabById(window.get(), QStringLiteral("CT_TextTool")));
    const int id = addText(QStringLiteral("你好"));
    ASSERT_TRUE(deck->selectText(id, 0, 1));
    oneKey();

    ASSERT_EQ(events().size(), 1);
    EXPECT_EQ(events()[0].name, QStringLiteral("nvo_phoneticsymbol_texttool"));
    ASSERT_EQ(newShapes(1).size(), 1);
    EXPECT_EQ(newShapes(1)[0].text, QStringLiteral("nǐ"));
}

TEST_F(OneKey, ABareCursorAnnotatesTheWholeTextOfItsShape) {
    const int id = addText(QStringLiteral("你好"));
    ASSERT_TRUE(deck->selectText(id, 1, 0));
    oneKey();
    ASSERT_EQ(newShapes(1).size(), 1);
    EXPECT_EQ(newShapes(1)[0].text, QStringLiteral("nǐ hǎo"));
}

TEST_F(OneKey, AnotherCaseOfTheActionDoesNothing) {
    const int id = addText(QStringLiteral("你好"));
    ASSERT_TRUE(deck->selectShapes({id}));
    deck->clearJournal();
    ASSERT_TRUE(minihost::triggerCommand(entry.get(), QStringLiteral("phoneticonekey")));
    EXPECT_TRUE(deck->journal().isEmpty());
    EXPECT_TRUE(events().isEmpty());
    EXPECT_TRUE(messages().isEmpty());
}

TEST_F(OneKey, ReadingsOfOneCommandUseTheCandidatesOfEveryTextSoFar) {
    // The candidates map is kept across the texts of one command; each text still gets the
    // readings of its own context.
    const int first = addText(QStringLiteral("银行"), 40);
    const int second = addText(QStringLiteral("行走"), 120);
    ASSERT_TRUE(deck->selectShapes({first, second}));
    oneKey();
    const QList<minihost::ShapeInfo> made = newShapes(2);
    ASSERT_EQ(made.size(), 2);
    EXPECT_EQ(made[0].text, QStringLiteral("yín hánɡ"));
    EXPECT_EQ(made[1].text, QStringLiteral("xínɡ zǒu"));
}
