// SPDX-License-Identifier: MIT
// The slide view driven as a person drives it (QTest mouse and key events on the real widget,
// headless) over the example deck: what they select is the deck's selection, what they edit is
// one undo step of the deck, and the view follows what the deck says changed.
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QInputMethodEvent>
#include <QSignalSpy>
#include <QTest>

#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/liveobjects.h"
#include "minihost/slxrender/slidescene.h"
#include "qtprinters.h"
#include "slideview.h"

using minihost::Deck;

namespace {

constexpr int kTitle = 2, kBody = 3;  // the example deck's shapes on every slide
const QString kLine1 = QStringLiteral("床前明月光，疑是地上霜。");

class SlideViewTest : public ::testing::Test {
protected:
    void SetUp() override {
        QString error;
        deck = Deck::loadFile(QStringLiteral(EXAMPLE_DECK), &error);
        ASSERT_TRUE(deck) << error.toStdString();
        // One pixel per point, the slide 16 pixels from the view's corner.
        view.resize(960 + 32, 540 + 32);
        view.setDeck(deck.get());
        view.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    }
    void TearDown() override {
        view.setDeck(nullptr);
        deck.reset();
        EXPECT_EQ(minihost::liveObjectCount(), 0);
    }

    // Where text position `pos` of shape `id` is drawn, in the view (the middle of its line).
    QPoint at(int id, int pos) const {
        const minihost::SlideScene scene(*deck, deck->currentSlide());
        const QLineF cursor = scene.text(id)->cursorLine(pos);
        return view.toWidget(cursor.center()).toPoint();
    }
    QPoint inside(int id, double fx = 0.5, double fy = 0.5) const {
        const minihost::SlideScene scene(*deck, deck->currentSlide());
        const QRectF box = scene.boxOf(id);
        return view.toWidget(QPointF(box.left() + box.width() * fx, box.top() + box.height() * fy))
            .toPoint();
    }
    QRectF drawnBox(int id) const {
        return minihost::SlideScene(*deck, deck->currentSlide()).boxOf(id);
    }
    QRectF box(int id) const {
        for (const minihost::ShapeInfo& s : deck->shapes(deck->currentSlide()))
            if (s.id == id) return s.box;
        return {};
    }
    void click(const QPoint& p, Qt::KeyboardModifiers mods = Qt::NoModifier) {
        QTest::mouseClick(&view, Qt::LeftButton, mods, p);
    }
    // QTest::mouseMove moves the cursor without the button held, which is no drag: the move
    // events are sent as the window system sends them while the button is down.
    void moveHeld(const QPoint& p) {
        QMouseEvent move(QEvent::MouseMove, p, view.mapToGlobal(p), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(&view, &move);
    }
    void drag(const QPoint& from, const QPoint& to) {
        QTest::mousePress(&view, Qt::LeftButton, Qt::NoModifier, from);
        // Through a point between, as a hand does; past the drag distance.
        moveHeld((from + to) / 2);
        moveHeld(to);
        QTest::mouseRelease(&view, Qt::LeftButton, Qt::NoModifier, to);
    }
    // Chinese comes from an input method, committed whole.
    void compose(const QString& text) {
        QInputMethodEvent event;
        event.setCommitString(text);
        QApplication::sendEvent(&view, &event);
    }
    // Places the text cursor in the body text at `pos`: a click selects it, a second one goes in.
    void enterBody(int pos) {
        click(inside(kBody));
        click(at(kBody, pos));
        ASSERT_TRUE(deck->hasTextSelection());
    }
    Deck::TextSelection selection() const { return deck->textSelection(); }
    // What the view shows, to be looked at.
    void keep(const QString& name) {
        QDir().mkpath(QStringLiteral(CANVAS_RENDERS_DIR));
        view.grab().save(QStringLiteral(CANVAS_RENDERS_DIR "/%1.png").arg(name));
    }

    std::unique_ptr<Deck> deck;
    SlideView view;
};

TEST_F(SlideViewTest, ClickSelectsAShapeShiftAndCtrlAddAndRemove) {
    QSignalSpy changed(deck.get(), &Deck::selectionChanged);
    click(inside(kTitle));
    EXPECT_EQ(deck->selectedShapes(), QList<int>{kTitle});
    EXPECT_FALSE(deck->hasTextSelection());
    EXPECT_EQ(changed.count(), 1);
    click(inside(kBody), Qt::ShiftModifier);
    EXPECT_EQ(deck->selectedShapes(), (QList<int>{kTitle, kBody}));
    keep(QStringLiteral("view-two-shapes"));
    click(inside(kTitle), Qt::ControlModifier);
    keep(QStringLiteral("view-one-shape"));
    EXPECT_EQ(deck->selectedShapes(), QList<int>{kBody});
    // Nothing there: nothing selected.
    click(view.toWidget(QPointF(900, 500)).toPoint());
    EXPECT_TRUE(deck->selectedShapes().isEmpty());
    EXPECT_EQ(changed.count(), 4);
}

TEST_F(SlideViewTest, ClickIntoTheSelectedTextShapePlacesACursorDragSelectsText) {
    QSignalSpy editing(&view, &SlideView::textEditingChanged);
    click(inside(kBody));
    EXPECT_TRUE(editing.isEmpty());
    click(at(kBody, 2));
    ASSERT_EQ(editing.count(), 1);
    EXPECT_TRUE(editing.takeFirst().at(0).toBool());
    EXPECT_TRUE(deck->hasTextSelection());
    EXPECT_EQ(selection().shapeId, kBody);
    EXPECT_EQ(selection().start, 2);
    EXPECT_EQ(selection().length, 0);
    EXPECT_EQ(deck->selectedShapes(), QList<int>{kBody});  // what the add-on sees

    // Across four characters: 明月光，
    drag(at(kBody, 2), at(kBody, 6));
    EXPECT_EQ(selection().start, 2);
    EXPECT_EQ(selection().length, 4);
    EXPECT_EQ(deck->text(1, kBody).mid(selection().start, selection().length),
              QStringLiteral("明月光，"));
    keep(QStringLiteral("view-text-selection"));
    // Backwards too.
    drag(at(kBody, 9), at(kBody, 7));
    EXPECT_EQ(selection().start, 7);
    EXPECT_EQ(selection().length, 2);
    EXPECT_TRUE(editing.isEmpty());  // still editing text
}

TEST_F(SlideViewTest, ShiftArrowsSelectTextEscapeGoesBackToTheShapeCtrlASelectsAll) {
    QSignalSpy editing(&view, &SlideView::textEditingChanged);
    enterBody(0);
    QTest::keyClick(&view, Qt::Key_Right);
    QTest::keyClick(&view, Qt::Key_Right, Qt::ShiftModifier);
    QTest::keyClick(&view, Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(selection().start, 1);
    EXPECT_EQ(selection().length, 2);
    QTest::keyClick(&view, Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_EQ(selection().length, 1);
    QTest::keyClick(&view, Qt::Key_End);
    EXPECT_EQ(selection().start, kLine1.size());
    QTest::keyClick(&view, Qt::Key_Down);
    EXPECT_GT(selection().start, kLine1.size());  // on the second paragraph
    QTest::keyClick(&view, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(selection().start, 0);
    EXPECT_EQ(selection().length, deck->text(1, kBody).size());
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_FALSE(deck->hasTextSelection());
    EXPECT_EQ(deck->selectedShapes(), QList<int>{kBody});
    ASSERT_EQ(editing.count(), 2);
    EXPECT_FALSE(editing.at(1).at(0).toBool());
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_TRUE(deck->selectedShapes().isEmpty());
    // Enter on a selected text shape selects all its text.
    click(inside(kTitle));
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_EQ(selection().shapeId, kTitle);
    EXPECT_EQ(selection().start, 0);
    EXPECT_EQ(selection().length, 3);
    EXPECT_EQ(editing.count(), 3);
}

TEST_F(SlideViewTest, TypingDeletingAndPastingAreUndoSteps) {
    QSignalSpy edited(deck.get(), &Deck::changed);
    enterBody(5);
    compose(QStringLiteral("啊"));
    EXPECT_EQ(deck->text(1, kBody).left(7), QStringLiteral("床前明月光啊，"));
    EXPECT_EQ(selection().start, 6);
    QTest::keyClick(&view, Qt::Key_Backspace);
    QTest::keyClick(&view, Qt::Key_Backspace);
    EXPECT_EQ(deck->text(1, kBody).left(5), QStringLiteral("床前明月，"));
    QTest::keyClick(&view, Qt::Key_Delete);
    EXPECT_EQ(deck->text(1, kBody).left(5), QStringLiteral("床前明月疑"));
    QApplication::clipboard()->setText(QStringLiteral("光\n"));
    QTest::keyClick(&view, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(deck->text(1, kBody).left(7), QStringLiteral("床前明月光\r疑"));
    EXPECT_EQ(deck->undoSteps(),
              (QStringList{QStringLiteral("typing"), QStringLiteral("delete text"),
                           QStringLiteral("delete text"), QStringLiteral("delete text"),
                           QStringLiteral("paste")}));
    ASSERT_EQ(edited.count(), 5);
    for (const QList<QVariant>& change : edited) {
        const auto shapes = change.at(0).value<minihost::DeckChange>().shapes;
        EXPECT_EQ(shapes, (QMap<int, QSet<int>>{{1, {kBody}}}));
    }
    // The new text takes the format of the text it was typed into.
    const minihost::SlideDrawing drawn = deck->drawing(1);
    for (const minihost::DrawnShape& s : drawn.shapes)
        if (s.id == kBody)
            for (const minihost::TextRun& run : s.text.paragraphs.first().runs) {
                EXPECT_EQ(run.format.rgb, 0x1F3864u);
                EXPECT_EQ(run.format.size, 28);
            }
    for (int i = 0; i < 5; ++i) ASSERT_TRUE(deck->undo());
    EXPECT_EQ(deck->text(1, kBody).left(kLine1.size()), kLine1);
    EXPECT_TRUE(
        deck->editedParts().isEmpty());  // every edit undone: the slide is written as stored
}

TEST_F(SlideViewTest, SelectedTextIsReplacedByWhatIsTypedEnterSplitsTheParagraph) {
    enterBody(0);
    QTest::keyClick(&view, Qt::Key_Right, Qt::ShiftModifier);
    QTest::keyClick(&view, Qt::Key_Right, Qt::ShiftModifier);
    compose(QStringLiteral("窗"));
    EXPECT_EQ(deck->text(1, kBody).left(4), QStringLiteral("窗明月光"));
    QTest::keyClick(&view, Qt::Key_Return);
    QTest::keyClick(&view, Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(deck->text(1, kBody).left(4), QStringLiteral("窗\r\v明"));
    EXPECT_EQ(deck->undoSteps().size(), 3);
}

TEST_F(SlideViewTest, DraggingAShapeMovesItInOneStepUndoPutsItBack) {
    QSignalSpy edited(deck.get(), &Deck::changed);
    const QRectF before = box(kTitle);
    drag(inside(kTitle), inside(kTitle) + QPoint(40, 100));
    EXPECT_EQ(box(kTitle), before.translated(40, 100));
    EXPECT_EQ(deck->undoSteps(), QStringList{QStringLiteral("move")});
    EXPECT_EQ(edited.count(), 1);
    EXPECT_EQ(deck->selectedShapes(), QList<int>{kTitle});
    ASSERT_TRUE(deck->undo());
    EXPECT_EQ(box(kTitle), before);
    // A press and release without moving is a click, not a move: into the selected shape's
    // text.
    click(inside(kTitle));
    EXPECT_EQ(deck->undoSteps().size(), 0);
    EXPECT_TRUE(deck->hasTextSelection());
    // The shape being typed in moves by its border.
    const QPoint border = view.toWidget(drawnBox(kTitle).topLeft() + QPointF(300, 0)).toPoint();
    drag(border, border + QPoint(-20, 10));
    EXPECT_EQ(box(kTitle), before.translated(-20, 10));
    EXPECT_EQ(deck->selectedShapes(), QList<int>{kTitle});
}

TEST_F(SlideViewTest, DraggingAHandleResizes) {
    const QRectF before = drawnBox(kTitle);
    click(inside(kTitle));
    const QPoint corner = view.toWidget(before.bottomRight()).toPoint();
    drag(corner, corner + QPoint(-200, 30));
    const QRectF after = box(kTitle);
    EXPECT_EQ(after.topLeft(), before.topLeft());
    EXPECT_NEAR(after.width(), before.width() - 200, 1);
    // The title follows its text: it keeps the height its one line needs, however far the
    // handle went down.
    EXPECT_NEAR(after.height(), before.height(), 1);
    EXPECT_EQ(deck->undoSteps(), QStringList{QStringLiteral("resize")});
    // A top-left handle moves the corner and keeps the opposite one.
    const QRectF second = drawnBox(kTitle);
    const QPoint topLeft = view.toWidget(second.topLeft()).toPoint();
    drag(topLeft, topLeft + QPoint(10, 0));
    EXPECT_NEAR(box(kTitle).left(), second.left() + 10, 1);
    EXPECT_NEAR(box(kTitle).right(), second.right(), 1);
    // The right handle dragged past the left edge: a point wide, the left edge where it was.
    const QRectF third = drawnBox(kTitle);
    const QPoint right = view.toWidget(QPointF(third.right(), third.center().y())).toPoint();
    drag(right, right - QPoint(static_cast<int>(third.width()) + 50, 0));
    EXPECT_NEAR(box(kTitle).left(), third.left(), 1);
    EXPECT_NEAR(box(kTitle).width(), 1, 0.01);
}

TEST_F(SlideViewTest, ArrowKeysMoveTheSelectedShapesDeleteRemovesThem) {
    click(inside(kTitle));
    click(inside(kBody), Qt::ShiftModifier);
    const QRectF title = box(kTitle), body = box(kBody);
    QTest::keyClick(&view, Qt::Key_Right);
    QTest::keyClick(&view, Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(box(kTitle), title.translated(6, 1));
    EXPECT_EQ(box(kBody), body.translated(6, 1));
    EXPECT_EQ(deck->undoSteps().size(), 2);
    QTest::keyClick(&view, Qt::Key_Delete);
    EXPECT_TRUE(deck->shapes(1).isEmpty());
    EXPECT_TRUE(deck->selectedShapes().isEmpty());
    EXPECT_EQ(deck->undoSteps().last(), QStringLiteral("delete"));
    ASSERT_TRUE(deck->undo());
    EXPECT_EQ(deck->shapes(1).size(), 2);
}

TEST_F(SlideViewTest, TheViewFollowsTheDeckAfterUndoAndCommands) {
    QSignalSpy editing(&view, &SlideView::textEditingChanged);
    enterBody(0);
    QTest::keyClicks(&view, QStringLiteral("abc"));
    QTest::keyClick(&view, Qt::Key_A, Qt::ControlModifier);
    // Undo shortens the text under the selection: the view keeps the selection inside it.
    for (int i = 0; i < 3; ++i) ASSERT_TRUE(deck->undo());
    EXPECT_TRUE(deck->hasTextSelection());
    EXPECT_EQ(view.textCursor(), deck->text(1, kBody).size());
    EXPECT_LE(selection().start + selection().length, deck->text(1, kBody).size());
    // A command selects shapes: the view leaves the text.
    ASSERT_TRUE(deck->selectShapes({kTitle}));
    ASSERT_EQ(editing.count(), 2);
    EXPECT_FALSE(editing.at(1).at(0).toBool());
    EXPECT_EQ(view.textCursor(), -1);
    // An edit made elsewhere is drawn: the title moved by a program, then undone.
    const QRectF title = drawnBox(kTitle);
    ASSERT_TRUE(
        deck->setShapeBoxes(1, {{kTitle, title.translated(0, 200)}}, QStringLiteral("move")));
    QTest::mouseClick(&view, Qt::LeftButton, Qt::NoModifier,
                      view.toWidget(title.center() + QPointF(0, 200)).toPoint());
    EXPECT_EQ(deck->selectedShapes(), QList<int>{kTitle});
}

}  // namespace
