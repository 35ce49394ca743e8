// SPDX-License-Identifier: MIT
// The object model's contract, run twice: on a deck built in memory, and on the same deck
// written to a .pptx and read back.
#include <gtest/gtest.h>

#include "minihost/slxcore/liveobjects.h"
#include "omhelpers.h"
#include "qtprinters.h"

using namespace omtest;
using minihost::Deck;

namespace {

enum class Backend { InMemory, WrittenAndRead };

class ObjectModelContract : public ::testing::TestWithParam<Backend> {
protected:
    void SetUp() override {
        m_overReleases = minihost::overReleaseCount();
        deck = Deck::create(2);
        plain = deck->addTextBox(1, QStringLiteral("abcdef"), QRectF(10, 10, 300, 40));
        empty = deck->addTextBox(1, QString(), QRectF(10, 60, 300, 40));
        chinese = deck->addTextBox(1, QStringLiteral("你好世界"), QRectF(10, 110, 300, 40));
        // Mixed format, set through the object model itself: "ab" 30 pt red, "cdef" 12 pt.
        {
            ComPtr<TextRange> all = wholeText(*deck, plain);
            font(all.get())->put_Size(12.0f);
            ComPtr<TextRange> ab = characters(all.get(), 0, 2);
            font(ab.get())->put_Size(30.0f);
            ComPtr<ColorFormat> color;
            font(ab.get())->get_Color(color.put());
            color->put_RGB(0x0000FF);  // taken in as 0x00BBGGRR: red
        }
        if (GetParam() == Backend::WrittenAndRead) {
            QString error;
            const QByteArray bytes = deck->toBytes(&error);
            ASSERT_FALSE(bytes.isEmpty()) << error.toStdString();
            deck = Deck::load(bytes, QStringLiteral("written.pptx"), &error);
            ASSERT_TRUE(deck) << error.toStdString();
        }
        deck->clearJournal();
    }
    void TearDown() override {
        EXPECT_EQ(minihost::liveObjectCount(), 0)
            << minihost::liveObjectKinds().join(' ').toStdString();
        EXPECT_EQ(minihost::overReleaseCount(), m_overReleases);
    }

    std::unique_ptr<Deck> deck;
    int plain = 0, empty = 0, chinese = 0;
    int m_overReleases = 0;
};

TEST_P(ObjectModelContract, CharactersCountFromZeroAndReachPastTheRangeClampedAtTheFrame) {
    ComPtr<TextRange> all = wholeText(*deck, plain);
    ComPtr<TextRange> bc = characters(all.get(), 1, 2);
    EXPECT_EQ(text(bc.get()), QStringLiteral("bc"));
    // From the start of "bc", one on, ten long: past "bc" into what follows, cut at the frame end.
    EXPECT_EQ(text(characters(bc.get(), 1, 10).get()), QStringLiteral("cdef"));
    EXPECT_EQ(length(characters(all.get(), 6, 1).get()), 0);
    ComPtr<TextRange> none;
    EXPECT_LT(all->Characters(7, 1, none.put()), 0);
    EXPECT_FALSE(none);
    EXPECT_LT(all->Characters(-1, 1, none.put()), 0);
    EXPECT_LT(all->Characters(0, -1, none.put()), 0);
}

TEST_P(ObjectModelContract, RangesStayOnTheirCharactersWhileTextIsInsertedBeforeThem) {
    ComPtr<TextRange> all = wholeText(*deck, plain);
    ComPtr<TextRange> a = characters(all.get(), 0, 1);
    ComPtr<TextRange> ef = characters(all.get(), 4, 2);
    ComPtr<TextRange> inserted = insertAfter(a.get(), QStringLiteral("XY"));
    EXPECT_EQ(text(inserted.get()), QStringLiteral("XY"));
    EXPECT_EQ(text(a.get()), QStringLiteral("a"));  // InsertAfter does not grow its range
    EXPECT_EQ(text(ef.get()), QStringLiteral("ef"));
    EXPECT_EQ(text(all.get()), QStringLiteral("aXYbcdef"));  // the text around it grows
    EXPECT_EQ(deck->text(1, plain), QStringLiteral("aXYbcdef"));
}

TEST_P(ObjectModelContract, InsertedTextTakesTheFormatOfTheRangesLastCharacter) {
    ComPtr<TextRange> all = wholeText(*deck, plain);
    ComPtr<TextRange> b = characters(all.get(), 1, 1);  // 30 pt
    ComPtr<TextRange> after = insertAfter(b.get(), QStringLiteral("(bā)"));
    EXPECT_EQ(size(after.get()), 30.0f);
    EXPECT_EQ(rgb(after.get()), 0xFF0000u);
    ComPtr<TextRange> f = characters(all.get(), 9, 1);  // the "f" now, 12 pt
    EXPECT_EQ(text(f.get()), QStringLiteral("f"));
    EXPECT_EQ(size(insertAfter(f.get(), QStringLiteral("!")).get()), 12.0f);
}

TEST_P(ObjectModelContract, PutTextReplacesTheRangeWhichThenHoldsTheNewText) {
    ComPtr<TextRange> all = wholeText(*deck, plain);
    ComPtr<TextRange> cd = characters(all.get(), 2, 2);
    ComPtr<TextRange> ef = characters(all.get(), 4, 2);
    EXPECT_EQ(putText(cd.get(), QStringLiteral("中文字")), S_OK);
    EXPECT_EQ(text(cd.get()), QStringLiteral("中文字"));
    EXPECT_EQ(size(cd.get()), 12.0f);  // like the first character it replaced
    EXPECT_EQ(text(ef.get()), QStringLiteral("ef"));
    EXPECT_EQ(deck->text(1, plain), QStringLiteral("ab中文字ef"));
}

TEST_P(ObjectModelContract, FontOfAMixedRangeIsThatOfItsFirstCharacter) {
    ComPtr<TextRange> all = wholeText(*deck, plain);
    EXPECT_EQ(size(all.get()), 30.0f);
    EXPECT_EQ(size(characters(all.get(), 2, 4).get()), 12.0f);
    EXPECT_EQ(rgb(all.get()), 0xFF0000u);
    EXPECT_EQ(rgb(characters(all.get(), 2, 1).get()), 0x000000u);  // the theme's text colour
}

TEST_P(ObjectModelContract, ColourGoesInAsBgrAndComesOutAsRgb) {
    ComPtr<TextRange> all = wholeText(*deck, chinese);
    ComPtr<ColorFormat> color;
    ASSERT_EQ(font(all.get())->get_Color(color.put()), S_OK);
    ASSERT_EQ(color->put_RGB(0x332211), S_OK);
    std::uint32_t out = 0;
    ASSERT_EQ(color->get_RGB(&out), S_OK);
    EXPECT_EQ(out, 0x112233u);
    EXPECT_EQ(deck->shapes(1)[2].rgb, 0x112233u);
}

TEST_P(ObjectModelContract, FontWritesSizeNameAndBold) {
    ComPtr<TextRange> all = wholeText(*deck, chinese);
    ComPtr<Font> f = font(all.get());
    EXPECT_EQ(f->put_Size(24.0f), S_OK);
    BstrHolder name(QStringLiteral("Noto Sans CJK SC"));
    EXPECT_EQ(f->put_Name(name.get()), S_OK);
    EXPECT_EQ(f->put_Bold(-1), S_OK);
    const minihost::ShapeInfo info = deck->shapes(1)[2];
    EXPECT_EQ(info.fontSize, 24.0f);
    EXPECT_EQ(info.fontName, QStringLiteral("Noto Sans CJK SC"));
    EXPECT_TRUE(info.bold);
    EXPECT_EQ(f->put_Bold(0), S_OK);
    EXPECT_FALSE(deck->shapes(1)[2].bold);
    EXPECT_LT(f->put_Bold(2), 0);
    EXPECT_LT(f->put_Size(0.0f), 0);
}

TEST_P(ObjectModelContract, SelectionIsShapesOrTextInOneShape) {
    ComPtr<Selection> sel = selection(*deck);
    ComPtr<TextRange> range;
    EXPECT_LT(sel->get_TextRange(range.put()), 0);  // nothing selected: no text selection
    EXPECT_FALSE(range);
    ComPtr<ShapeRange> shapes;
    ASSERT_EQ(sel->get_ShapeRange(shapes.put()), S_OK);
    std::int32_t count = -1;
    shapes->get_Count(&count);
    EXPECT_EQ(count, 0);

    ASSERT_TRUE(deck->selectShapes({chinese, plain}));
    ASSERT_EQ(sel->get_ShapeRange(shapes.put()), S_OK);
    shapes->get_Count(&count);
    EXPECT_EQ(count, 2);
    ComPtr<TextFrame> frame;
    ComPtr<TextRange> first;
    item(shapes.get(), 1)->get_TextFrame(frame.put());
    frame->get_TextRange(first.put());
    EXPECT_EQ(text(first.get()), QStringLiteral("你好世界"));  // in selection order
    EXPECT_LT(sel->get_TextRange(range.put()), 0);

    ASSERT_TRUE(deck->selectText(chinese, 1, 2));
    ASSERT_EQ(sel->get_TextRange(range.put()), S_OK);
    EXPECT_EQ(text(range.get()), QStringLiteral("好世"));
    ASSERT_EQ(sel->get_ShapeRange(shapes.put()), S_OK);
    shapes->get_Count(&count);
    EXPECT_EQ(count, 1);  // the shape holding the text

    ASSERT_TRUE(deck->selectText(chinese, 2, 0));  // a bare cursor
    ASSERT_EQ(sel->get_TextRange(range.put()), S_OK);
    EXPECT_EQ(length(range.get()), 0);
    EXPECT_FALSE(deck->selectText(chinese, 3, 2));  // outside the text
}

TEST_P(ObjectModelContract, SelectReplacesOrAdds) {
    ComPtr<Shape> a = shape(*deck, plain);
    ComPtr<Shape> b = shape(*deck, chinese);
    deck->selectText(empty, 0, 0);
    EXPECT_EQ(a->Select(-1), S_OK);
    EXPECT_EQ(deck->selectedShapes(), QList<int>({plain}));
    EXPECT_FALSE(deck->hasTextSelection());
    EXPECT_EQ(b->Select(0), S_OK);
    EXPECT_EQ(deck->selectedShapes(), QList<int>({plain, chinese}));
    EXPECT_EQ(b->Select(-1), S_OK);
    EXPECT_EQ(deck->selectedShapes(), QList<int>({chinese}));
    EXPECT_EQ(deck->journal().mid(deck->journal().size() - 3),
              QStringList({"Shape.Select(-1)", "Shape.Select(0)", "Shape.Select(-1)"}));
}

TEST_P(ObjectModelContract, TheJournalKeepsTheLastCallsOnly) {
    ComPtr<Shape> a = shape(*deck, plain);
    deck->clearJournal();
    for (int i = 0; i < Deck::kJournalLimit + 5; ++i) a->Select(i % 2 ? 0 : -1);
    const QStringList journal = deck->journal();
    ASSERT_EQ(journal.size(), Deck::kJournalLimit);
    EXPECT_EQ(journal.first(), QStringLiteral("Shape.Select(0)"));  // call 6 of them
    EXPECT_EQ(journal.last(), QStringLiteral("Shape.Select(-1)"));
}

TEST_P(ObjectModelContract, AddTextboxMakesAnUndoableBoxWithTheDefaultFormat) {
    const int before = deck->shapes(1).size();
    ComPtr<Shapes> shapes;
    ASSERT_EQ(deck->view()->get_Shapes(shapes.put()), S_OK);
    ComPtr<IUnknown> made;
    ASSERT_EQ(shapes->AddTextbox(1, 400, 250, 48, 700, made.put()), S_OK);
    ComPtr<Shape> box = made.query<Shape>(slxoldapi::IID_Shape);
    ASSERT_TRUE(box);
    const minihost::ShapeInfo info = deck->shapes(1).last();
    EXPECT_EQ(info.kind, QStringLiteral("text box"));
    EXPECT_EQ(info.box, QRectF(400, 250, 48, 700));
    EXPECT_EQ(info.text, QString());
    ComPtr<TextFrame> frame;
    ComPtr<TextRange> range;
    ASSERT_EQ(box->get_TextFrame(frame.put()), S_OK);
    ASSERT_EQ(frame->get_TextRange(range.put()), S_OK);
    EXPECT_EQ(size(range.get()), 18.0f);
    EXPECT_EQ(fontName(range.get()), QStringLiteral("Calibri"));
    EXPECT_EQ(deck->undoSteps().last(), QStringLiteral("AddTextbox"));
    ASSERT_TRUE(deck->undo());
    EXPECT_EQ(deck->shapes(1).size(), before);
    EXPECT_EQ(length(range.get()), -1);  // its shape is gone: calls fail
    ASSERT_TRUE(deck->redo());
    EXPECT_EQ(deck->shapes(1).size(), before + 1);
}

TEST_P(ObjectModelContract, AutoSizeMakesTheShapeFollowItsText) {
    ComPtr<Shapes> shapes;
    deck->view()->get_Shapes(shapes.put());
    ComPtr<IUnknown> made;
    shapes->AddTextbox(1, 400, 250, 96, 700, made.put());
    ComPtr<Shape> box = made.query<Shape>(slxoldapi::IID_Shape);
    ComPtr<TextFrame> frame;
    ComPtr<TextRange> range;
    box->get_TextFrame(frame.put());
    frame->get_TextRange(range.put());
    putText(range.get(), QStringLiteral("nǐ hǎo"));
    EXPECT_EQ(frame->put_AutoSize(1), S_OK);
    minihost::ShapeInfo info = deck->shapes(1).last();
    EXPECT_TRUE(info.followsText);
    const double oneLine = info.box.height();
    EXPECT_LT(oneLine, 700.0);
    EXPECT_GT(oneLine, 18.0);
    EXPECT_EQ(info.box.width(), 96.0);
    // From then on the height follows the text: more text, more lines.
    insertAfter(range.get(), QStringLiteral(" nǐ hǎo nǐ hǎo nǐ hǎo nǐ hǎo"));
    EXPECT_GT(deck->shapes(1).last().box.height(), oneLine);
    EXPECT_LT(frame->put_AutoSize(3), 0);
}

TEST_P(ObjectModelContract, EveryCallIsJournalledWithItsArguments) {
    ComPtr<TextRange> all = wholeText(*deck, plain);
    deck->clearJournal();
    ComPtr<TextRange> part = characters(all.get(), 2, 1);
    insertAfter(part.get(), QStringLiteral("\"q\""));
    font(part.get())->put_Size(10.5f);
    EXPECT_EQ(deck->journal(),
              QStringList({"TextRange.Characters(2, 1)", "TextRange.InsertAfter(\"\\\"q\\\"\")",
                           "TextRange.get_Font", "Font.put_Size(10.5)"}));
}

INSTANTIATE_TEST_SUITE_P(Decks, ObjectModelContract,
                         ::testing::Values(Backend::InMemory, Backend::WrittenAndRead),
                         [](const ::testing::TestParamInfo<Backend>& info) {
                             return info.param == Backend::InMemory ? "InMemory" : "WrittenAndRead";
                         });

}  // namespace
