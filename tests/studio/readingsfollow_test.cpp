// SPDX-License-Identifier: MIT
// Readings over a text follow it in the real window, driven by clicks and keys: typing into the
// text, cutting and pasting in it ask the engine again (a wrong word corrected to 银行 gets yín
// háng), moving and resizing it takes its readings along, deleting it deletes them; each in the
// step of the edit, undone and redone with it; after saving and reopening the readings still
// follow.
#include <QAction>
#include <QInputMethodEvent>

#include "minihost/slxcore/placement.h"
#include "studiofixture.h"

namespace {

using minihost::Placement;

QString u(const char* text) {
    return QString::fromUtf8(text);
}

class ReadingsFollow : public StudioTest {
protected:
    // A deck of one text, `text`, at `box`, its readings placed over its characters by "Pinyin at
    // Once" (the Pinyin menu set to over the characters). Its id.
    int openWithReadingsOver(const QString& text, const QRectF& box = QRectF(100, 200, 600, 60)) {
        window->placementAction(Placement::Over)->trigger();
        EXPECT_EQ(window->oneKeyPlacement(), Placement::Over);
        const QList<int> ids = openTexts({{text, box}});
        pinyinAtOnce(ids);
        return ids.value(0);
    }
    // The syllables over shape `id`'s text, in order, as "P:syllable" (P its character's position).
    std::string syllables(int id) const {
        QStringList out;
        for (const minihost::Reading& r : window->deck()->readingsOver(1, id))
            out << QStringLiteral("%1:%2").arg(r.position).arg(r.syllable);
        return out.join(QLatin1Char(' ')).toStdString();
    }
    // Where each reading over shape `id` is drawn against its character: "" when every one is
    // centred over its character's glyph (within a point; the characters are full-width, one
    // size wide, the character spacing after them) and above the middle of its line, else what
    // is not.
    std::string misplaced(int id) const {
        const minihost::Deck& deck = *window->deck();
        const std::optional<minihost::TextLayout> layout = deck.textLayout(1, id);
        double size = 0;
        for (const minihost::ShapeInfo& shape : deck.shapes(1))
            if (shape.id == id) size = shape.fontSize;
        if (!layout) return "no layout";
        QMap<QString, QRectF> boxes;  // "Pinyin P" -> its box
        bool inGroup = false;
        for (const minihost::ShapeInfo& shape : deck.shapes(1)) {
            if (shape.name == QStringLiteral("Pinyin over %1").arg(id))
                inGroup = true;
            else if (inGroup && shape.name.startsWith(QLatin1String("Pinyin ")))
                boxes.insert(shape.name, shape.box);
            else
                inGroup = false;
        }
        const QList<minihost::Reading> readings = deck.readingsOver(1, id);
        if (boxes.size() != readings.size())
            return QStringLiteral("%1 boxes for %2 readings")
                .arg(boxes.size())
                .arg(readings.size())
                .toStdString();
        QString wrong;
        for (const minihost::Reading& r : readings) {
            const QRectF box = boxes.value(QStringLiteral("Pinyin %1").arg(r.position));
            const minihost::CharPlace place = layout->place(r.position);
            const minihost::TextLine& line = layout->lines().at(place.line);
            const double centre = place.left + size / 2;
            if (std::abs(box.center().x() - centre) > 1 ||
                box.bottom() > line.baseline - line.ascent / 2)
                wrong += QStringLiteral("%1 at %2,%3 over %4 (line at %5); ")
                             .arg(r.syllable)
                             .arg(box.center().x())
                             .arg(box.bottom())
                             .arg(centre)
                             .arg(line.baseline - line.ascent);
        }
        return wrong.toStdString();
    }
    // Types `text` into shape `id` at the end of its text, as an input method commits it.
    void commit(const QString& text) {
        QInputMethodEvent event;
        event.setCommitString(text);
        QApplication::sendEvent(window->slideView(), &event);
    }
};

TEST_F(ReadingsFollow, AWrongWordCorrectedToYinHangGetsItsReadings) {
    const int id = openWithReadingsOver(u("我们去银杏"));
    const std::string wrong = u("0:wǒ 1:men 2:qù 3:yín 4:xìnɡ").toStdString();
    const std::string cut = u("0:wǒ 1:men 2:qù 3:yín").toStdString();
    const std::string right = u("0:wǒ 1:men 2:qù 3:yín 4:hánɡ").toStdString();
    ASSERT_EQ(syllables(id), wrong);
    const QStringList stepsBefore = window->deck()->undoSteps();

    // The cursor after 杏: Backspace takes it, an input method gives 行.
    clickOnSlide(insideShape(id));
    clickOnSlide(textPoint(id, 5));
    QTest::keyClick(window->slideView(), Qt::Key_Backspace);
    EXPECT_EQ(window->deck()->text(1, id), u("我们去银"));
    EXPECT_EQ(syllables(id), cut);
    commit(u("行"));
    EXPECT_EQ(window->deck()->text(1, id), u("我们去银行"));
    EXPECT_EQ(syllables(id), right);
    EXPECT_EQ(misplaced(id), "");
    // No step of its own: the readings are part of each edit's.
    EXPECT_EQ(window->deck()->undoSteps().size(), stepsBefore.size() + 2);

    // Undo and redo take text and readings together.
    ctrl(Qt::Key_Z);
    EXPECT_EQ(window->deck()->text(1, id), u("我们去银"));
    EXPECT_EQ(syllables(id), cut);
    ctrl(Qt::Key_Z);
    EXPECT_EQ(window->deck()->text(1, id), u("我们去银杏"));
    EXPECT_EQ(syllables(id), wrong);
    ctrl(Qt::Key_Y);
    ctrl(Qt::Key_Y);
    EXPECT_EQ(window->deck()->text(1, id), u("我们去银行"));
    EXPECT_EQ(syllables(id), right);
    EXPECT_EQ(misplaced(id), "");
}

TEST_F(ReadingsFollow, CutAndPasteGiveTheTextItsReadingsInItsNewOrder) {
    const int id = openWithReadingsOver(u("银行行长"));
    EXPECT_EQ(syllables(id), u("0:yín 1:hánɡ 2:hánɡ 3:zhǎnɡ").toStdString());
    clickOnSlide(insideShape(id, 0.5, 0.9));
    clickOnSlide(textPoint(id, 4));
    QTest::keyClick(window->slideView(), Qt::Key_Left, Qt::ShiftModifier);
    QTest::keyClick(window->slideView(), Qt::Key_Left, Qt::ShiftModifier);
    QTest::keyClick(window->slideView(), Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(window->deck()->text(1, id), u("银行"));
    EXPECT_EQ(syllables(id), u("0:yín 1:hánɡ").toStdString());
    QTest::keyClick(window->slideView(), Qt::Key_Home);
    QTest::keyClick(window->slideView(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(window->deck()->text(1, id), u("行长银行"));
    EXPECT_EQ(syllables(id), u("0:hánɡ 1:zhǎnɡ 2:yín 3:hánɡ").toStdString());
    EXPECT_EQ(misplaced(id), "");
    EXPECT_EQ(window->deck()->undoSteps().mid(window->deck()->undoSteps().size() - 2),
              (QStringList{QStringLiteral("cut"), QStringLiteral("paste")}));
}

TEST_F(ReadingsFollow, MovingAndResizingTakeTheReadingsAlongAndDeletingDeletesThem) {
    const int id = openWithReadingsOver(u("床前明月光，疑是地上霜。"));
    ASSERT_EQ(window->deck()->readingsOver(1, id).size(), 10);
    EXPECT_EQ(misplaced(id), "");

    // Grabbed by its text, under the readings (a click on a reading takes the readings).
    dragOnSlide(insideShape(id, 0.5, 0.9), insideShape(id, 0.5, 0.9) + QPoint(40, 80));
    EXPECT_EQ(window->deck()->undoSteps().last(), QStringLiteral("move"));
    EXPECT_EQ(misplaced(id), "");

    // Narrower: the text wraps, every line keeps its readings.
    clickOnSlide(insideShape(id, 0.5, 0.9));
    const QPoint corner = insideShape(id, 1, 1);
    dragOnSlide(corner, corner - QPoint(300, 0));
    EXPECT_EQ(window->deck()->undoSteps().last(), QStringLiteral("resize"));
    ASSERT_GT(window->deck()->textLayout(1, id)->lines().size(), 1u);
    EXPECT_EQ(window->deck()->readingsOver(1, id).size(), 10);
    EXPECT_EQ(misplaced(id), "");
    ctrl(Qt::Key_Z);
    EXPECT_EQ(window->deck()->textLayout(1, id)->lines().size(), 1u);
    EXPECT_EQ(misplaced(id), "");

    clickOnSlide(insideShape(id, 0.5, 0.9));
    QTest::keyClick(window->slideView(), Qt::Key_Delete);
    EXPECT_TRUE(window->deck()->text(1, id).isNull());
    EXPECT_TRUE(window->deck()->readingsOver(1, id).isEmpty());
    EXPECT_TRUE(window->deck()->shapes(1).isEmpty());
    ctrl(Qt::Key_Z);
    EXPECT_EQ(window->deck()->readingsOver(1, id).size(), 10);
    EXPECT_EQ(misplaced(id), "");
}

TEST_F(ReadingsFollow, AfterSavingAndReopeningTheReadingsStillFollow) {
    const int id = openWithReadingsOver(u("音乐"));
    EXPECT_EQ(syllables(id), u("0:yīn 1:yuè").toStdString());
    ctrl(Qt::Key_S);
    const QString path = window->filePath();
    ASSERT_TRUE(window->openFile(path));
    EXPECT_EQ(syllables(id), u("0:yīn 1:yuè").toStdString());
    clickOnSlide(insideShape(id));
    clickOnSlide(textPoint(id, 2));
    commit(u("很快乐"));
    EXPECT_EQ(window->deck()->text(1, id), u("音乐很快乐"));
    EXPECT_EQ(syllables(id), u("0:yīn 1:yuè 2:hěn 3:kuài 4:lè").toStdString());
    EXPECT_EQ(misplaced(id), "");
}

TEST_F(ReadingsFollow, AStepThatChangedTheReadingsThemselvesIsLeftAsItIs) {
    // One step moves the text and, apart from it, its readings (as a tool that arranges shapes
    // would): the readings stay where that step put them.
    const int id = openWithReadingsOver(u("你好"));
    const QList<minihost::ShapeInfo> before = window->deck()->shapes(1);
    ASSERT_EQ(before.size(), 4);  // the text, its readings' group and their two boxes
    const int group = before.at(1).id;
    ASSERT_EQ(before.at(1).name, QStringLiteral("Pinyin over %1").arg(id));
    const QMap<int, QRectF> moved = {{id, before.at(0).box.translated(30, 40)},
                                     {group, before.at(1).box.translated(0, 100)}};
    ASSERT_TRUE(window->deck()->setShapeBoxes(1, moved, QStringLiteral("move")));
    EXPECT_NEAR(window->deck()->placeOf(1, id).top(), moved.value(id).top(), 0.01);
    EXPECT_NEAR(window->deck()->placeOf(1, group).top(), moved.value(group).top(), 0.01);
    EXPECT_EQ(syllables(id), u("0:nǐ 1:hǎo").toStdString());
}

}  // namespace
