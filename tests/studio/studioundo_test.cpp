// SPDX-License-Identifier: MIT
// The window over the deck's undo stack, driven by real clicks and keys: every kind of edit is
// undone and redone by step from the keyboard, the undo and redo texts name the step, the title's
// modified mark is the stack's clean state; "Pinyin at Once" lands inside the slide for each
// placement the Pinyin menu offers, in one step with the command, and the choice is remembered.
#include <QAction>
#include <QSettings>
#include <functional>

#include "minihost/nvo/hoststore.h"
#include "minihost/slxcore/placement.h"
#include "studiofixture.h"

namespace {

using minihost::Placement;

constexpr int kTitle = 2, kBody = 3;  // the lesson's shapes on slide 1

QString u(const char* text) {
    return QString::fromUtf8(text);
}

class StudioUndo : public StudioTest {
protected:
    void SetUp() override {
        StudioTest::SetUp();
        ASSERT_TRUE(window->openFile(lessonPath()));
    }

    // Slide `slide` as it is: each shape's id, box and text.
    QStringList state(int slide = 1) const {
        QStringList shapes;
        for (const minihost::ShapeInfo& shape : window->deck()->shapes(slide)) {
            const QRectF& b = shape.box;
            shapes << QStringLiteral("%1 %2,%3 %4x%5 %6")
                          .arg(shape.id)
                          .arg(b.left())
                          .arg(b.top())
                          .arg(b.width())
                          .arg(b.height())
                          .arg(shape.text);
        }
        return shapes;
    }

    // Makes an edit with `edit` on a deck as read, then undoes and redoes it with the keys: the
    // slide goes back and forth, the actions name `step`, the title is marked while the deck
    // differs from its file.
    void expectUndoneAndRedone(const QString& step, const std::function<void()>& edit) {
        const QStringList before = state();
        ASSERT_FALSE(window->isWindowModified());
        edit();
        const QStringList after = state();
        ASSERT_NE(after, before) << step.toStdString();
        EXPECT_EQ(window->deck()->undoSteps(), QStringList{step});
        EXPECT_EQ(window->undoAction()->text(), QStringLiteral("&Undo ") + step);
        EXPECT_TRUE(window->isWindowModified());
        ctrl(Qt::Key_Z);
        EXPECT_EQ(state(), before) << step.toStdString();
        EXPECT_FALSE(window->undoAction()->isEnabled());
        EXPECT_EQ(window->redoAction()->text(), QStringLiteral("&Redo ") + step);
        EXPECT_FALSE(window->isWindowModified());
        ctrl(Qt::Key_Y);
        EXPECT_EQ(state(), after) << step.toStdString();
        EXPECT_EQ(window->undoAction()->text(), QStringLiteral("&Undo ") + step);
        EXPECT_FALSE(window->redoAction()->isEnabled());
        EXPECT_TRUE(window->isWindowModified());
    }
};

TEST_F(StudioUndo, TypingIsUndoneAndRedone) {
    expectUndoneAndRedone(QStringLiteral("typing"), [this] {
        clickOnSlide(insideShape(kBody));
        clickOnSlide(textPoint(kBody, 2));
        QTest::keyClick(window->slideView(), Qt::Key_X);
        EXPECT_EQ(window->deck()->text(1, kBody).left(3), u("床前x"));
    });
}

TEST_F(StudioUndo, MovingIsUndoneAndRedone) {
    expectUndoneAndRedone(QStringLiteral("move"), [this] {
        dragOnSlide(insideShape(kTitle), insideShape(kTitle) + QPoint(60, 120));
    });
}

TEST_F(StudioUndo, ResizingIsUndoneAndRedone) {
    expectUndoneAndRedone(QStringLiteral("resize"), [this] {
        clickOnSlide(insideShape(kBody));
        const QPoint corner = insideShape(kBody, 1, 1);
        dragOnSlide(corner, corner - QPoint(200, 0));
    });
}

TEST_F(StudioUndo, InsertingATextBoxIsUndoneAndRedone) {
    expectUndoneAndRedone(QStringLiteral("insert text box"), [this] {
        minihost::setCurrentTabById(window.get(), QStringLiteral("CT_Insert"));
        QTest::mouseClick(ribbonButton(QStringLiteral("CT_Insert"), window->textBoxAction()),
                          Qt::LeftButton);
    });
}

TEST_F(StudioUndo, DeletingIsUndoneAndRedone) {
    expectUndoneAndRedone(QStringLiteral("delete"), [this] {
        clickOnSlide(insideShape(kTitle));
        QTest::keyClick(window->slideView(), Qt::Key_Delete);
    });
}

TEST_F(StudioUndo, PinyinAtOnceAndItsPlacementAreOneStepUndoneAndRedone) {
    expectUndoneAndRedone(QStringLiteral("set phonetic symbol"), [this] {
        clickOnSlide(insideShape(kBody));
        QTest::mouseClick(ribbonButton(QStringLiteral("CT_Home"), window->phoneticOneKeyAction()),
                          Qt::LeftButton);
        // Placed under its text, below by default.
        const QList<minihost::ShapeInfo> shapes = window->deck()->shapes(1);
        ASSERT_EQ(shapes.size(), 3);
        EXPECT_NEAR(shapes.last().box.top(), window->deck()->placeOf(1, kBody).bottom(), 0.01);
    });
}

TEST_F(StudioUndo, PinyinOverTextIsOneStepNamedForItUndoneAndRedone) {
    expectUndoneAndRedone(QStringLiteral("Pinyin over Text"), [this] {
        clickOnSlide(insideShape(kBody));
        QTest::mouseClick(ribbonButton(QStringLiteral("CT_Home"), window->pinyinOverTextAction()),
                          Qt::LeftButton);
        // A reading over each of the poem's twenty characters; the add-on's box is gone.
        EXPECT_EQ(window->deck()->readingsOver(1, kBody).size(), 20);
        EXPECT_EQ(window->deck()->shapes(1).size(), 2 + 1 + 20);
    });
}

TEST_F(StudioUndo, PinyinOverTextTwiceReplacesTheReadings) {
    clickOnSlide(insideShape(kBody));
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(window->deck()->selectShapes({kBody}));
        QTest::mouseClick(ribbonButton(QStringLiteral("CT_Home"), window->pinyinOverTextAction()),
                          Qt::LeftButton);
        EXPECT_EQ(window->deck()->shapes(1).size(), 2 + 1 + 20) << "time " << i + 1;
    }
}

TEST_F(StudioUndo, TheTitleAndTheUndoTextsFollowTheStack) {
    EXPECT_EQ(window->windowTitle(), QStringLiteral("lesson.pptx[*] - zphonetic-studio"));
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_FALSE(window->undoAction()->isEnabled());
    EXPECT_EQ(window->undoAction()->text(), QStringLiteral("&Undo"));
    EXPECT_EQ(window->redoAction()->text(), QStringLiteral("&Redo"));
    clickOnSlide(insideShape(kTitle));
    QTest::keyClick(window->slideView(), Qt::Key_Right);  // moved 6 points
    clickOnSlide(textPoint(kTitle, 3));
    QTest::keyClicks(window->slideView(), QStringLiteral("ab"));
    EXPECT_TRUE(window->isWindowModified());
    EXPECT_EQ(window->undoAction()->text(), QStringLiteral("&Undo typing"));
    ctrl(Qt::Key_S);
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_EQ(window->undoAction()->text(), QStringLiteral("&Undo typing"));
    // Back past the saved state is a change, forward to it again none.
    ctrl(Qt::Key_Z);
    EXPECT_TRUE(window->isWindowModified());
    EXPECT_EQ(window->redoAction()->text(), QStringLiteral("&Redo typing"));
    ctrl(Qt::Key_Z);
    EXPECT_EQ(window->undoAction()->text(), QStringLiteral("&Undo move"));
    EXPECT_EQ(window->redoAction()->text(), QStringLiteral("&Redo typing"));
    ctrl(Qt::Key_Y);
    ctrl(Qt::Key_Y);
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_FALSE(window->redoAction()->isEnabled());
    // Saved under another name: the title names the new file.
    ctrl(Qt::Key_Z);
    ASSERT_TRUE(window->saveTo(dir.filePath(QStringLiteral("copy.pptx"))));
    EXPECT_EQ(window->windowTitle(), QStringLiteral("copy.pptx[*] - zphonetic-studio"));
    EXPECT_FALSE(window->isWindowModified());
    EXPECT_FALSE(window->hasUnsavedChanges());
}

// Texts where there is no room above (at the top), none below (at the bottom), one as wide as
// the slide, and one whose readings are longer than the add-on's box reaches on the slide: every
// box the command makes is inside the slide whatever the placement.
class PinyinAtOncePlaced : public StudioUndo, public ::testing::WithParamInterface<Placement> {};

TEST_P(PinyinAtOncePlaced, EveryNewBoxIsInsideItsSlide) {
    window->placementAction(GetParam())->trigger();
    ASSERT_EQ(window->oneKeyPlacement(), GetParam());
    const QList<QRectF> sources = {QRectF(500, 10, 300, 50), QRectF(40, 480, 300, 50),
                                   QRectF(0, 250, 960, 40), QRectF(40, 150, 880, 40)};
    const QList<int> texts =
        openTexts({{u("你好"), sources[0]},
                   {u("银行行长"), sources[1]},
                   {u("音乐很快乐"), sources[2]},
                   {u("我们一起学习汉语拼音，今天天气很好，我们去公园散步吧。"), sources[3]}});
    ASSERT_EQ(texts.size(), 4);
    const QMap<int, QRectF> boxes = pinyinAtOnce(texts);
    if (GetParam() == Placement::Over) {
        // No box stays: each text has a group of a box a syllable over its characters.
        int groups = 0;
        for (const minihost::ShapeInfo& shape : window->deck()->shapes(1))
            groups += shape.name.startsWith(QLatin1String("Pinyin over ")) ? 1 : 0;
        EXPECT_EQ(groups, 4);
        const QRectF slide(QPointF(), window->deck()->slideSize());
        for (auto it = boxes.cbegin(); it != boxes.cend(); ++it)
            EXPECT_TRUE(slide.contains(*it))
                << "shape " << it.key() << " at " << it->left() << "," << it->top();
        for (const int text : texts)
            EXPECT_TRUE(slide.contains(window->deck()->placeOf(1, text))) << "text " << text;
        screenshot(QStringLiteral("studio-onekey-over.png"));
        return;
    }
    ASSERT_EQ(boxes.size(), 4);
    const QRectF slide(QPointF(), window->deck()->slideSize());
    for (auto it = boxes.cbegin(); it != boxes.cend(); ++it)
        EXPECT_TRUE(slide.contains(*it)) << "box " << it.key() << " at " << it->left() << ","
                                         << it->top() << " " << it->width() << "x" << it->height();
    EXPECT_EQ(window->deck()->undoSteps(), QStringList{QStringLiteral("set phonetic symbol")});
    screenshot(QStringLiteral("studio-onekey-%1.png").arg(minihost::placementName(GetParam())));

    // Next to their texts, as wide and at the left of each: the side asked for, else the other.
    const QList<QRectF> placed = boxes.values();  // in the order the texts were read
    if (GetParam() == Placement::Below) {
        EXPECT_NEAR(placed[0].top(), sources[0].bottom(), 0.01);
        EXPECT_NEAR(placed[1].bottom(), sources[1].top(), 0.01);  // no room below: above
        EXPECT_NEAR(placed[2].top(), sources[2].bottom(), 0.01);
        EXPECT_NEAR(placed[3].top(), sources[3].bottom(), 0.01);
    } else if (GetParam() == Placement::Above) {
        EXPECT_NEAR(placed[0].top(), sources[0].bottom(), 0.01);  // no room above: below
        EXPECT_NEAR(placed[1].bottom(), sources[1].top(), 0.01);
        EXPECT_NEAR(placed[2].bottom(), sources[2].top(), 0.01);
        EXPECT_NEAR(placed[3].bottom(), sources[3].top(), 0.01);
    } else {
        // Where the add-on put them, the long one moved in from past the slide's right edge.
        EXPECT_EQ(placed[0].topLeft(), QPointF(400, 250));
        EXPECT_NEAR(placed[3].right(), slide.right(), 0.01);
        EXPECT_EQ(placed[3].top(), 250);
    }
    for (int i = 0; GetParam() != Placement::Addon && i < 4; ++i) {
        EXPECT_NEAR(placed[i].left(), sources[i].left(), 0.01);
        EXPECT_NEAR(placed[i].width(), sources[i].width(), 0.01);
    }

    // One undo takes the boxes and their places away, one redo brings both back.
    ctrl(Qt::Key_Z);
    EXPECT_EQ(window->deck()->shapes(1).size(), 4);
    ctrl(Qt::Key_Y);
    for (auto it = boxes.cbegin(); it != boxes.cend(); ++it)
        EXPECT_EQ(window->deck()->placeOf(1, it.key()), *it);
}

INSTANTIATE_TEST_SUITE_P(EachPlacement, PinyinAtOncePlaced,
                         ::testing::Values(Placement::Below, Placement::Above, Placement::Addon,
                                           Placement::Over),
                         [](const ::testing::TestParamInfo<Placement>& info) {
                             return minihost::placementName(info.param).toStdString();
                         });

TEST_F(StudioUndo, ThePlacementChosenIsRememberedForTheNextRun) {
    EXPECT_EQ(window->oneKeyPlacement(), Placement::Below);  // the default
    EXPECT_TRUE(window->placementAction(Placement::Below)->isChecked());
    window->placementAction(Placement::Above)->trigger();
    EXPECT_TRUE(window->placementAction(Placement::Above)->isChecked());
    EXPECT_FALSE(window->placementAction(Placement::Below)->isChecked());
    // In the host's settings file, where the next run reads it.
    EXPECT_EQ(QSettings(minihost::commonSettingsPath(), QSettings::IniFormat)
                  .value(QStringLiteral("studio/oneKeyPlacement"))
                  .toString(),
              QStringLiteral("above"));
    window.reset();
    window = std::make_unique<StudioWindow>();
    EXPECT_EQ(window->oneKeyPlacement(), Placement::Above);
    EXPECT_TRUE(window->placementAction(Placement::Above)->isChecked());
    // A setting the studio does not offer (written by hand) gives the default.
    minihost::setHostSetting(QStringLiteral("studio/oneKeyPlacement"), QStringLiteral("sideways"));
    window = std::make_unique<StudioWindow>();
    EXPECT_EQ(window->oneKeyPlacement(), Placement::Below);
}

}  // namespace
