// SPDX-License-Identifier: MIT
// The add-on's text access over the stand-in object model: each case reads the call journal
// where the calls matter, and ends with no object left alive.
#include <gtest/gtest.h>

#include "common/bstrholder.h"
#include "common/comptr.h"
#include "document/textaccess.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/liveobjects.h"
#include "qtprinters.h"
#include "testapplication.h"

using minihost::Deck;

namespace {

class TextAccess : public ::testing::Test {
protected:
    void SetUp() override {
        m_overReleases = minihost::overReleaseCount();
        deck = Deck::create(1);
        app.setDeck(deck.get());
    }
    void TearDown() override {
        EXPECT_EQ(minihost::liveObjectCount(), 0)
            << minihost::liveObjectKinds().join(' ').toStdString();
        EXPECT_EQ(minihost::overReleaseCount(), m_overReleases);
    }
    int box(const QString& text, double top = 10) {
        return deck->addTextBox(1, text, QRectF(10, top, 400, 40));
    }
    // The journal from now on.
    void startJournal() { deck->clearJournal(); }

    std::unique_ptr<Deck> deck;
    TestApplication app;
    int m_overReleases = 0;
};

// ---- readSelectedTexts ----------------------------------------------------------------------

TEST_F(TextAccess, BareCursorGivesTheWholeTextOfItsShapeThroughTheShapePath) {
    const int id = box(QStringLiteral("你好世界"));
    ASSERT_TRUE(deck->selectText(id, 2, 0));
    startJournal();
    QStringList out;
    readSelectedTexts(&app, out);
    EXPECT_EQ(out, QStringList({QStringLiteral("你好世界")}));
    EXPECT_EQ(
        deck->journal(),
        QStringList({"DocumentView.selectionObject", "Selection.get_TextRange",
                     "TextRange.get_Length", "Selection.get_ShapeRange", "ShapeRange.get_Count",
                     "ShapeRange.Item(1)", "Shape.get_TextFrame", "TextFrame.get_TextRange",
                     "TextRange.get_Length", "TextRange.get_Text"}));
}

TEST_F(TextAccess, TextSelectionGivesOnlyTheSelectedRun) {
    const int id = box(QStringLiteral("我们学习汉语"));
    ASSERT_TRUE(deck->selectText(id, 4, 2));
    startJournal();
    QStringList out{QStringLiteral("kept")};
    readSelectedTexts(&app, out);
    EXPECT_EQ(out, QStringList({QStringLiteral("kept"), QStringLiteral("汉语")}));
    EXPECT_EQ(deck->journal(),
              QStringList({"DocumentView.selectionObject", "Selection.get_TextRange",
                           "TextRange.get_Length", "TextRange.get_Text"}));
}

TEST_F(TextAccess, SelectedShapesGiveTheirTextsInOrderSkippingEmptyOnes) {
    const int first = box(QStringLiteral("一"));
    const int empty = box(QString(), 60);
    const int third = box(QStringLiteral("三"), 110);
    ASSERT_TRUE(deck->selectShapes({third, empty, first}));
    QStringList out;
    readSelectedTexts(&app, out);
    EXPECT_EQ(out, QStringList({QStringLiteral("三"), QStringLiteral("一")}));
}

TEST_F(TextAccess, NothingSelectedOrNoViewGivesNothing) {
    box(QStringLiteral("一"));
    QStringList out;
    readSelectedTexts(&app, out);
    EXPECT_TRUE(out.isEmpty());
    readSelectedTexts(nullptr, out);
    TestApplication noView;
    readSelectedTexts(&noView, out);
    EXPECT_TRUE(out.isEmpty());
}

// ---- findTextTarget -------------------------------------------------------------------------

TEST_F(TextAccess, TwoShapesFirstEmptyGiveTheSecondWithNoRangeAndLeakTheFirstFrameByDesign) {
    const int empty = box(QString());
    const int full = box(QStringLiteral("你好"), 60);
    ASSERT_TRUE(deck->selectShapes({empty, full}));
    startJournal();
    slxoldapi::Shape* shape = nullptr;
    slxoldapi::TextFrame* frame = nullptr;
    slxoldapi::TextRange* range = nullptr;
    findTextTarget(&app, shape, frame, range);
    ASSERT_NE(shape, nullptr);
    ASSERT_NE(frame, nullptr);
    EXPECT_EQ(range, nullptr);
    EXPECT_EQ(
        deck->journal(),
        QStringList({"DocumentView.selectionObject", "Selection.get_ShapeRange",
                     "ShapeRange.get_Count", "ShapeRange.Item(1)", "Shape.get_TextFrame",
                     "TextFrame.get_TextRange", "TextRange.get_Length", "ShapeRange.Item(2)",
                     "Shape.get_TextFrame", "TextFrame.get_TextRange", "TextRange.get_Length"}));
    {
        ComPtr<slxoldapi::TextRange> whole;
        frame->get_TextRange(whole.put());
        BstrHolder text;
        whole->get_Text(text.put());
        EXPECT_EQ(text.toQString(), QStringLiteral("你好"));  // the frame is the second shape's
    }
    // And so is the shape: selecting what was found selects the second shape alone.
    deck->clearSelection();
    ASSERT_EQ(shape->Select(-1), S_OK);
    EXPECT_EQ(deck->selectedShapes(), QList<int>{full});
    shape->Release();
    frame->Release();
    // The first shape's frame was overwritten without a release: exactly one reference is left,
    // on purpose. The test takes it over so the process ends clean.
    ASSERT_EQ(minihost::liveObjectCount(), 1);
    EXPECT_EQ(minihost::liveObjectKinds(), QStringList({"TextFrame"}));
    minihost::liveObjects().front()->Release();
}

TEST_F(TextAccess, NoShapeWithTextLeavesShapeNullAndTheLastFrame) {
    const int a = box(QString());
    const int b = box(QString(), 60);
    const int c = box(QString(), 110);
    ASSERT_TRUE(deck->selectShapes({a, b, c}));
    slxoldapi::Shape* shape = nullptr;
    slxoldapi::TextFrame* frame = nullptr;
    slxoldapi::TextRange* range = nullptr;
    findTextTarget(&app, shape, frame, range);
    EXPECT_EQ(shape, nullptr);
    EXPECT_EQ(range, nullptr);
    ASSERT_NE(frame, nullptr);
    frame->Release();
    // Two frames replaced during the search, both not released (by design).
    ASSERT_EQ(minihost::liveObjectCount(), 2);
    for (IUnknown* leaked : minihost::liveObjects()) leaked->Release();
}

TEST_F(TextAccess, CursorInOneShapeGivesAZeroLengthRangeAndNoShape) {
    const int id = box(QStringLiteral("你好"));
    ASSERT_TRUE(deck->selectText(id, 1, 0));
    startJournal();
    slxoldapi::Shape* shape = nullptr;
    slxoldapi::TextFrame* frame = nullptr;
    slxoldapi::TextRange* range = nullptr;
    findTextTarget(&app, shape, frame, range);
    EXPECT_EQ(shape, nullptr);
    EXPECT_EQ(frame, nullptr);
    ASSERT_NE(range, nullptr);
    std::int32_t length = -1;
    range->get_Length(&length);
    EXPECT_EQ(length, 0);
    range->Release();
    EXPECT_EQ(deck->journal(),
              QStringList({"DocumentView.selectionObject", "Selection.get_ShapeRange",
                           "ShapeRange.get_Count", "Selection.get_TextRange",
                           "TextRange.get_Length", "TextRange.get_Length"}));
}

TEST_F(TextAccess, TextSelectedInOneShapeGivesShapeFrameAndRange) {
    const int id = box(QStringLiteral("汉语拼音"));
    ASSERT_TRUE(deck->selectText(id, 0, 2));
    slxoldapi::Shape* shape = nullptr;
    slxoldapi::TextFrame* frame = nullptr;
    slxoldapi::TextRange* range = nullptr;
    findTextTarget(&app, shape, frame, range);
    ASSERT_TRUE(shape && frame && range);
    BstrHolder text;
    range->get_Text(text.put());
    EXPECT_EQ(text.toQString(), QStringLiteral("汉语"));
    shape->Release();
    frame->Release();
    range->Release();
}

TEST_F(TextAccess, OneShapeSelectedWithoutTextSelectionGivesNothing) {
    const int id = box(QStringLiteral("汉语"));
    ASSERT_TRUE(deck->selectShapes({id}));
    slxoldapi::Shape* shape = nullptr;
    slxoldapi::TextFrame* frame = nullptr;
    slxoldapi::TextRange* range = nullptr;
    findTextTarget(&app, shape, frame, range);
    EXPECT_TRUE(!shape && !frame && !range);
    findTextTarget(nullptr, shape, frame, range);
    EXPECT_TRUE(!shape && !frame && !range);
}

// ---- readSelectionStyle / readTextStyle -----------------------------------------------------

TEST_F(TextAccess, SelectionStyleComesFromTheSelectedRun) {
    const int id = box(QStringLiteral("红色汉字"));
    {
        // "红色" 10.5 pt red in "SimSun" (through the object model, as a user would format it).
        deck->selectText(id, 0, 2);
        slxoldapi::Shape* s = nullptr;
        slxoldapi::TextFrame* f = nullptr;
        slxoldapi::TextRange* r = nullptr;
        findTextTarget(&app, s, f, r);
        TextStyle red;
        red.fontName = QStringLiteral("SimSun");
        red.fontSize = 10;
        red.color = QColor(255, 0, 0);
        red.applyColor = true;
        applyTextStyle(r, &red);
        ComPtr<slxoldapi::Font> font;
        r->get_Font(font.put());
        font->put_Size(10.5f);
        s->Release();
        f->Release();
        r->Release();
    }
    deck->selectText(id, 0, 2);
    TextStyle style;
    slxoldapi::Shape* shape = nullptr;
    readSelectionStyle(&app, style, shape);
    ASSERT_NE(shape, nullptr);
    shape->Release();
    EXPECT_EQ(style.text, QStringLiteral("红色"));
    EXPECT_EQ(style.fontName, QStringLiteral("SimSun"));
    EXPECT_EQ(style.fontSize, 10);              // 10.5 truncated toward zero
    EXPECT_EQ(style.color, QColor(255, 0, 0));  // red reaches the page as red
}

TEST_F(TextAccess, SelectionStyleOfSeveralShapesIsThatOfTheFirstShapeWithText) {
    const int empty = box(QString());
    const int full = box(QStringLiteral("第二"), 60);
    ASSERT_TRUE(deck->selectShapes({empty, full}));
    TextStyle style;
    slxoldapi::Shape* shape = nullptr;
    readSelectionStyle(&app, style, shape);
    ASSERT_NE(shape, nullptr);
    shape->Release();
    EXPECT_EQ(style.text, QStringLiteral("第二"));
    EXPECT_EQ(style.fontSize, 18);
    EXPECT_EQ(style.fontName, QStringLiteral("Calibri"));
    ASSERT_EQ(minihost::liveObjectCount(), 1);  // the first shape's frame, leaked by design
    minihost::liveObjects().front()->Release();
}

TEST_F(TextAccess, NoTargetLeavesTheStyleUntouched) {
    const int id = box(QStringLiteral("你好"));
    deck->selectText(id, 0, 0);
    TextStyle style;
    style.text = QStringLiteral("before");
    style.fontSize = 33;
    slxoldapi::Shape* shape = reinterpret_cast<slxoldapi::Shape*>(0x1);
    readSelectionStyle(&app, style, shape);
    EXPECT_EQ(shape, nullptr);
    EXPECT_EQ(style.text, QStringLiteral("before"));
    EXPECT_EQ(style.fontSize, 33);
}

TEST_F(TextAccess, ReadTextStyleOfNullDoesNothing) {
    TextStyle style;
    style.fontName = QStringLiteral("kept");
    readTextStyle(nullptr, style);
    EXPECT_EQ(style.fontName, QStringLiteral("kept"));
}

// ---- applyTextStyle -------------------------------------------------------------------------

TEST_F(TextAccess, StyleWithNoSizeNameOrColourChangesOnlyBold) {
    const int id = box(QStringLiteral("你好"));
    deck->selectText(id, 0, 2);
    slxoldapi::Shape* s = nullptr;
    slxoldapi::TextFrame* f = nullptr;
    slxoldapi::TextRange* r = nullptr;
    findTextTarget(&app, s, f, r);
    startJournal();
    TextStyle style;  // fontSize 0, fontName empty, applyColor false
    applyTextStyle(r, &style);
    EXPECT_EQ(deck->journal(), QStringList({"TextRange.get_Font", "Font.put_Bold(0)"}));
    style.bold = true;
    startJournal();
    applyTextStyle(r, &style);
    EXPECT_EQ(deck->journal(), QStringList({"TextRange.get_Font", "Font.put_Bold(-1)"}));
    EXPECT_TRUE(deck->shapes(1).first().bold);
    startJournal();
    applyTextStyle(r, nullptr);
    applyTextStyle(nullptr, &style);
    EXPECT_TRUE(deck->journal().isEmpty());
    s->Release();
    f->Release();
    r->Release();
}

TEST_F(TextAccess, FullStyleIsWrittenInOrderWithTheColourAsTheHostTakesIt) {
    const int id = box(QStringLiteral("你好"));
    deck->selectText(id, 0, 2);
    slxoldapi::Shape* s = nullptr;
    slxoldapi::TextFrame* f = nullptr;
    slxoldapi::TextRange* r = nullptr;
    findTextTarget(&app, s, f, r);
    startJournal();
    TextStyle style;
    style.bold = true;
    style.fontSize = 20;
    style.fontName = QStringLiteral("Arial");
    style.color = QColor(0x11, 0x22, 0x33);
    style.applyColor = true;
    applyTextStyle(r, &style);
    EXPECT_EQ(deck->journal(), QStringList({"TextRange.get_Font", "Font.put_Bold(-1)",
                                            "Font.put_Size(20)", "Font.put_Name(\"Arial\")",
                                            "Font.get_Color", "ColorFormat.put_RGB(0x332211)"}));
    const minihost::ShapeInfo info = deck->shapes(1).first();
    EXPECT_EQ(info.rgb, 0x112233u);  // red 0x11, green 0x22, blue 0x33 on the slide
    EXPECT_EQ(info.fontSize, 20.0f);
    EXPECT_EQ(info.fontName, QStringLiteral("Arial"));
    s->Release();
    f->Release();
    r->Release();
}

// ---- colours --------------------------------------------------------------------------------

TEST(HostColor, WrittenAsRedInTheLowByte) {
    EXPECT_EQ(toHostColor(QColor(0x11, 0x22, 0x33)), 0x332211u);
    EXPECT_EQ(toHostColor(QColor(0x11, 0x22, 0x33, 0x80)), 0x332211u);  // alpha dropped
}

TEST(HostColor, ReadAsRedInTheThirdByteWithFullAlpha) {
    const QColor color = fromHostColor(0x332211);
    EXPECT_EQ(color.red(), 0x33);
    EXPECT_EQ(color.green(), 0x22);
    EXPECT_EQ(color.blue(), 0x11);
    EXPECT_EQ(color.alpha(), 255);
    EXPECT_EQ(fromHostColor(0x7F332211).alpha(), 255);
}

// ---- insertReadingTextBox -------------------------------------------------------------------

TEST_F(TextAccess, HundredCharactersMakeABox850Wide) {
    slxoldapi::Shape* shape = nullptr;
    startJournal();
    ASSERT_EQ(insertReadingTextBox(&app, QString(100, QChar('a')), nullptr, 400, 250, &shape, 12),
              1);
    ASSERT_NE(shape, nullptr);
    shape->Release();
    EXPECT_EQ(deck->journal().at(1), QStringLiteral("Shapes.AddTextbox(1, 400, 250, 850, 700)"));
    EXPECT_EQ(deck->shapes(1).last().box, QRectF(400, 250, 850, 700));
}

TEST_F(TextAccess, ThreeCharactersMakeABox48Wide) {
    slxoldapi::Shape* shape = nullptr;
    startJournal();
    ASSERT_EQ(insertReadingTextBox(&app, QStringLiteral("nǐ "), nullptr, 400, 250, &shape, 12), 1);
    shape->Release();
    EXPECT_EQ(deck->journal(),
              QStringList({"DocumentView.get_Shapes", "Shapes.AddTextbox(1, 400, 250, 48, 700)",
                           "Shape.get_TextFrame", "TextFrame.get_TextRange",
                           "TextRange.put_Text(\"nǐ \")"}));
    const minihost::ShapeInfo info = deck->shapes(1).last();
    EXPECT_EQ(info.text, QStringLiteral("nǐ "));
    EXPECT_EQ(info.kind, QStringLiteral("text box"));
}

TEST_F(TextAccess, WidthProductOf850StaysAnd851IsCut) {
    slxoldapi::Shape* shape = nullptr;
    startJournal();
    // (84 + 1) x 10 = 850 stays; (22 + 1) x 37 = 851 and (70 + 1) x 12 = 852 become 850.
    insertReadingTextBox(&app, QString(84, QChar('x')), nullptr, 0, 0, &shape, 10);
    shape->Release();
    insertReadingTextBox(&app, QString(22, QChar('x')), nullptr, 0, 0, &shape, 37);
    shape->Release();
    insertReadingTextBox(&app, QString(70, QChar('x')), nullptr, 0, 0, &shape, 12);
    shape->Release();
    EXPECT_EQ(
        deck->journal().filter(QStringLiteral("AddTextbox")),
        QStringList({"Shapes.AddTextbox(1, 0, 0, 850, 700)", "Shapes.AddTextbox(1, 0, 0, 850, 700)",
                     "Shapes.AddTextbox(1, 0, 0, 850, 700)"}));
    insertReadingTextBox(&app, QString(83, QChar('x')), nullptr, 0, 0, &shape, 10);
    shape->Release();
    EXPECT_EQ(deck->journal().filter(QStringLiteral("AddTextbox")).last(),
              QStringLiteral("Shapes.AddTextbox(1, 0, 0, 840, 700)"));
}

TEST_F(TextAccess, StyleIsAppliedToTheEmptyBoxBeforeTheTextGoesIn) {
    TextStyle bold;
    bold.bold = true;
    bold.fontSize = 24;
    slxoldapi::Shape* shape = nullptr;
    startJournal();
    ASSERT_EQ(insertReadingTextBox(&app, QStringLiteral("hǎo"), &bold, 400, 250, &shape, 12), 1);
    shape->Release();
    EXPECT_EQ(deck->journal().mid(4),
              QStringList({"TextRange.get_Font", "Font.put_Bold(-1)", "Font.put_Size(24)",
                           "TextRange.put_Text(\"hǎo\")"}));
    const minihost::ShapeInfo info = deck->shapes(1).last();
    EXPECT_TRUE(info.bold);  // the text took up the empty box's format
    EXPECT_EQ(info.fontSize, 24.0f);
}

TEST_F(TextAccess, EmptyTextOrMissingArgumentsMakeNoCall) {
    slxoldapi::Shape* shape = nullptr;
    startJournal();
    EXPECT_EQ(insertReadingTextBox(&app, QString(), nullptr, 400, 250, &shape, 12), 0);
    EXPECT_EQ(insertReadingTextBox(nullptr, QStringLiteral("a"), nullptr, 400, 250, &shape, 12), 0);
    EXPECT_EQ(insertReadingTextBox(&app, QStringLiteral("a"), nullptr, 400, 250, nullptr, 12), 0);
    EXPECT_TRUE(deck->journal().isEmpty());
    EXPECT_EQ(shape, nullptr);
    TestApplication noView;
    EXPECT_EQ(insertReadingTextBox(&noView, QStringLiteral("a"), nullptr, 400, 250, &shape, 12), 0);
    EXPECT_TRUE(deck->shapes(1).isEmpty());
}

TEST_F(TextAccess, TheNewBoxIsOneUndoStepOfItsOwnOutsideATransaction) {
    slxoldapi::Shape* shape = nullptr;
    insertReadingTextBox(&app, QStringLiteral("nǐ hǎo"), nullptr, 400, 250, &shape, 12);
    shape->Release();
    EXPECT_EQ(deck->undoSteps(), QStringList({"AddTextbox", "put_Text"}));
    deck->undo();
    deck->undo();
    EXPECT_TRUE(deck->shapes(1).isEmpty());
}

}  // namespace
