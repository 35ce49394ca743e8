// SPDX-License-Identifier: MIT
// The studio's window without the dialog: files (open, save, recent, dropped, refused), the
// ribbon and its usage events, the one-key command, undo and redo by step, the prompt on
// closing, and the object model left empty after a deck is closed.
#include <unistd.h>
#include <QAction>
#include <QMenu>
#include <QMimeData>
#include <QTabBar>

#include "decktestutil.h"
#include "minihost/nvo/hostconfig.h"
#include "minihost/slxcore/liveobjects.h"
#include "slideview.h"
#include "studiofixture.h"

namespace {

QString u(const char* text) {
    return QString::fromUtf8(text);
}

const QString kOneKeyText = u("银行行长还是觉得音乐很快乐。");

class StudioWindowTest : public StudioTest {
protected:
    // Opens the lesson and selects slide 2's text box, whose text holds polyphones.
    void openLessonOnSlide2() {
        ASSERT_TRUE(window->openFile(lessonPath()));
        ASSERT_TRUE(window->deck()->setCurrentSlide(2));
        ASSERT_TRUE(window->deck()->selectShapes({3}));
    }
};

TEST_F(StudioWindowTest, OpensADeckGivenByPathAndRemembersIt) {
    ASSERT_TRUE(window->openFile(lessonPath()));
    ASSERT_NE(window->deck(), nullptr);
    EXPECT_EQ(window->deck()->slideCount(), 3);
    EXPECT_EQ(window->filePath(), lessonPath());
    EXPECT_FALSE(window->hasUnsavedChanges());
    EXPECT_TRUE(window->windowTitle().startsWith(QStringLiteral("lesson.pptx")));
    ASSERT_FALSE(window->recentFilesMenu()->actions().isEmpty());
    EXPECT_EQ(window->recentFilesMenu()->actions().first()->data().toString(), lessonPath());
}

TEST_F(StudioWindowTest, ARecentFileOpensFromTheMenu) {
    ASSERT_TRUE(window->openFile(lessonPath()));
    const QString other = dir.filePath(QStringLiteral("other.pptx"));
    ASSERT_TRUE(QFile::copy(lessonPath(), other));
    ASSERT_TRUE(window->openFile(other));
    QAction* lesson = nullptr;
    for (QAction* action : window->recentFilesMenu()->actions())
        if (action->data().toString() == lessonPath()) lesson = action;
    ASSERT_NE(lesson, nullptr);
    lesson->trigger();
    EXPECT_EQ(window->filePath(), lessonPath());
}

TEST_F(StudioWindowTest, ADroppedDeckOpens) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(lessonPath())});
    const QPoint at = window->rect().center();
    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window.get(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window.get(), &drop);
    ASSERT_NE(window->deck(), nullptr);
    EXPECT_EQ(window->filePath(), lessonPath());
}

TEST_F(StudioWindowTest, SomethingElseDroppedIsRefused) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(dir.filePath(QStringLiteral("notes.txt")))});
    QDragEnterEvent enter(window->rect().center(), Qt::CopyAction, &data, Qt::LeftButton,
                          Qt::NoModifier);
    enter.setAccepted(false);
    QApplication::sendEvent(window.get(), &enter);
    EXPECT_FALSE(enter.isAccepted());
}

// A deck that cannot be read: a real error box naming the file and what is wrong, and the
// window keeps the deck it had.
void expectRefused(StudioWindowTest* test, StudioWindow* window, const QString& path,
                   const QString& what) {
    MessageBoxAnswer answer(QMessageBox::Ok);
    EXPECT_FALSE(window->openFile(path));
    EXPECT_TRUE(answer.text.contains(path)) << answer.text.toStdString();
    EXPECT_TRUE(answer.text.contains(what)) << answer.text.toStdString();
    EXPECT_EQ(answer.icon, QMessageBox::Critical);
    ASSERT_NE(window->deck(), nullptr);
    EXPECT_EQ(window->deck()->slideCount(), 3);
    EXPECT_TRUE(window->isVisible());
    (void)test;
}

TEST_F(StudioWindowTest, ACorruptDeckIsReportedAndTheOpenOneStays) {
    ASSERT_TRUE(window->openFile(lessonPath()));
    const QString corrupt = dir.filePath(QStringLiteral("corrupt.pptx"));
    QFile file(corrupt);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(decktest::readFile(lessonPath()).left(2000));
    file.close();
    expectRefused(this, window.get(), corrupt, QStringLiteral("zip"));
    EXPECT_EQ(window->filePath(), lessonPath());
}

TEST_F(StudioWindowTest, AMissingFileIsReported) {
    ASSERT_TRUE(window->openFile(lessonPath()));
    expectRefused(this, window.get(), dir.filePath(QStringLiteral("gone.pptx")),
                  QStringLiteral("cannot be opened"));
}

TEST_F(StudioWindowTest, ADeckTheUserMayNotReadIsReported) {
    ASSERT_TRUE(window->openFile(lessonPath()));
    const QString locked = dir.filePath(QStringLiteral("locked.pptx"));
    ASSERT_TRUE(QFile::copy(lessonPath(), locked));
    ASSERT_TRUE(QFile::setPermissions(locked, QFileDevice::WriteOwner));
    // Root reads any file: the test reads as an ordinary user for the length of the attempt.
    const bool asRoot = geteuid() == 0;
    if (asRoot) {
        ASSERT_EQ(chown(dir.path().toLocal8Bit().constData(), 65534, 65534), 0);
        ASSERT_EQ(seteuid(65534), 0);
    }
    expectRefused(this, window.get(), locked, QStringLiteral("Permission denied"));
    if (asRoot) {
        ASSERT_EQ(seteuid(0), 0);
    }
}

TEST_F(StudioWindowTest, TheRibbonHasItsTabsAndBothCommandsOnHomeAndTextTool) {
    auto* tabs = qobject_cast<QTabBar*>(minihost::ribbonTabBar(window.get()));
    ASSERT_NE(tabs, nullptr);
    ASSERT_EQ(tabs->count(), 3);
    EXPECT_EQ(tabs->tabText(0), QStringLiteral("Home"));
    EXPECT_EQ(tabs->tabText(1), QStringLiteral("Insert"));
    EXPECT_EQ(tabs->tabText(2), QStringLiteral("Text Tool"));
    EXPECT_EQ(minihost::currentTabId(window.get()), QStringLiteral("CT_Home"));
    for (const QString& tab : {QStringLiteral("CT_Home"), QStringLiteral("CT_TextTool")}) {
        EXPECT_NE(ribbonButton(tab, window->phoneticSymbolAction()), nullptr) << tab.toStdString();
        EXPECT_NE(ribbonButton(tab, window->phoneticOneKeyAction()), nullptr) << tab.toStdString();
        EXPECT_NE(ribbonButton(tab, window->pinyinOverTextAction()), nullptr) << tab.toStdString();
    }
    EXPECT_EQ(ribbonButton(QStringLiteral("CT_Insert"), window->phoneticSymbolAction()), nullptr);
}

TEST_F(StudioWindowTest, TextEditingMakesTextToolCurrentAndItsEndGoesHome) {
    ASSERT_TRUE(window->openFile(lessonPath()));
    emit window->slideView()->textEditingChanged(true);
    EXPECT_EQ(minihost::currentTabId(window.get()), QStringLiteral("CT_TextTool"));
    emit window->slideView()->textEditingChanged(false);
    EXPECT_EQ(minihost::currentTabId(window.get()), QStringLiteral("CT_Home"));
}

TEST_F(StudioWindowTest, OneKeyFromEachTabPostsThatTabsUsageEvent) {
    ASSERT_TRUE(window->openFile(lessonPath()));
    // The shape selected with a click: Home stays current.
    clickOnSlide(insideShape(3));
    ASSERT_EQ(minihost::currentTabId(window.get()), QStringLiteral("CT_Home"));
    QToolButton* home = ribbonButton(QStringLiteral("CT_Home"), window->phoneticOneKeyAction());
    ASSERT_NE(home, nullptr);
    QTest::mouseClick(home, Qt::LeftButton);
    // A click into the selected text shape: a text cursor, and Text Tool is current.
    clickOnSlide(insideShape(2));
    clickOnSlide(textPoint(2, 1));
    ASSERT_TRUE(window->deck()->hasTextSelection());
    ASSERT_EQ(minihost::currentTabId(window.get()), QStringLiteral("CT_TextTool"));
    QToolButton* textTool =
        ribbonButton(QStringLiteral("CT_TextTool"), window->phoneticOneKeyAction());
    ASSERT_NE(textTool, nullptr);
    ASSERT_TRUE(textTool->isVisible());
    QTest::mouseClick(textTool, Qt::LeftButton);
    const QList<UsageEvent> events = minihost::usageEvents();
    ASSERT_EQ(events.size(), 2);
    EXPECT_EQ(events.at(0).name, QStringLiteral("nvo_phoneticsymbol_home"));
    EXPECT_EQ(events.at(0).parameters.value(QStringLiteral("action")), QStringLiteral("onekey"));
    EXPECT_EQ(events.at(1).name, QStringLiteral("nvo_phoneticsymbol_texttool"));
    EXPECT_EQ(events.at(1).parameters.value(QStringLiteral("action")), QStringLiteral("onekey"));
    // Escape leaves the text, then the shape: Home again.
    QTest::keyClick(window->slideView(), Qt::Key_Escape);
    EXPECT_EQ(minihost::currentTabId(window.get()), QStringLiteral("CT_Home"));
}

TEST_F(StudioWindowTest, OneKeyOverThreeShapesThenOneBoxDraggedAwayAndTheDragUndone) {
    // Three texts of a deck of our own, selected with a click and two Shift+clicks.
    auto made = minihost::Deck::create(1);
    const QList<int> texts = {made->addTextBox(1, u("你好"), QRectF(60, 60, 300, 50)),
                              made->addTextBox(1, u("银行"), QRectF(60, 200, 300, 50)),
                              made->addTextBox(1, u("快乐"), QRectF(500, 200, 300, 50))};
    const QString path = dir.filePath(QStringLiteral("three.pptx"));
    QString error;
    ASSERT_TRUE(made->save(path, &error)) << error.toStdString();
    ASSERT_TRUE(window->openFile(path));
    clickOnSlide(insideShape(texts.at(0)));
    clickOnSlide(insideShape(texts.at(1)), Qt::ShiftModifier);
    clickOnSlide(insideShape(texts.at(2)), Qt::ShiftModifier);
    ASSERT_EQ(window->deck()->selectedShapes(), texts);

    // Where the add-on puts them (inside the slide), chosen in the Pinyin menu.
    window->placementAction(minihost::Placement::Addon)->trigger();
    QTest::mouseClick(ribbonButton(QStringLiteral("CT_Home"), window->phoneticOneKeyAction()),
                      Qt::LeftButton);
    const QList<minihost::ShapeInfo> shapes = window->deck()->shapes(1);
    ASSERT_EQ(shapes.size(), 6);
    QList<int> boxes;
    for (int i = 3; i < 6; ++i) boxes << shapes.at(i).id;
    EXPECT_EQ(shapes.at(3).text, u("nǐ hǎo"));
    EXPECT_EQ(shapes.at(4).text, u("yín hánɡ"));
    EXPECT_EQ(shapes.at(5).text, u("kuài lè"));
    // All three on one spot, and selected.
    EXPECT_EQ(shapes.at(3).box.topLeft(), shapes.at(4).box.topLeft());
    EXPECT_EQ(shapes.at(4).box.topLeft(), shapes.at(5).box.topLeft());
    EXPECT_EQ(window->deck()->selectedShapes(), boxes);
    EXPECT_EQ(window->deck()->undoSteps(), QStringList{QStringLiteral("set phonetic symbol")});
    screenshot(QStringLiteral("studio-after-onekey.png"));

    // The frontmost box dragged to the bottom left, after a click on nothing.
    clickOnSlide(window->slideView()->toWidget(QPointF(900, 500)).toPoint());
    ASSERT_TRUE(window->deck()->selectedShapes().isEmpty());
    const QRectF spot = shapes.at(5).box;
    const QPoint from = insideShape(boxes.at(2));
    dragOnSlide(from, from + QPoint(-200, 200));
    QRectF moved;
    for (const minihost::ShapeInfo& shape : window->deck()->shapes(1))
        if (shape.id == boxes.at(2)) moved = shape.box;
    EXPECT_NE(moved.topLeft(), spot.topLeft());
    EXPECT_EQ(moved.size(), spot.size());
    EXPECT_EQ(window->deck()->undoSteps().size(), 2);
    EXPECT_TRUE(window->undoAction()->text().startsWith(QStringLiteral("&Undo ")));
    screenshot(QStringLiteral("studio-after-moving.png"));

    QTest::keyClick(window.get(), Qt::Key_Z, Qt::ControlModifier);
    for (const minihost::ShapeInfo& shape : window->deck()->shapes(1)) {
        if (shape.id == boxes.at(2)) {
            EXPECT_EQ(shape.box, spot);
        }
    }
    EXPECT_EQ(window->deck()->shapes(1).size(), 6);  // only the drag was undone
    EXPECT_EQ(window->undoAction()->text(), QStringLiteral("&Undo set phonetic symbol"));
}

TEST_F(StudioWindowTest, OneKeyLeavesItsBoxSelectedAndIsUndoneAndRedoneByStep) {
    openLessonOnSlide2();
    const int before = window->deck()->shapes(2).size();
    window->phoneticOneKeyAction()->trigger();
    const QList<minihost::ShapeInfo> after = window->deck()->shapes(2);
    ASSERT_EQ(after.size(), before + 1);
    const minihost::ShapeInfo box = after.last();
    EXPECT_TRUE(box.text.startsWith(u("yín hánɡ"))) << box.text.toStdString();
    EXPECT_EQ(window->deck()->selectedShapes(), QList<int>{box.id});
    EXPECT_TRUE(window->hasUnsavedChanges());
    EXPECT_TRUE(window->isWindowModified());
    EXPECT_EQ(window->undoAction()->text(), QStringLiteral("&Undo set phonetic symbol"));
    EXPECT_FALSE(window->redoAction()->isEnabled());

    QTest::keyClick(window.get(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(window->deck()->shapes(2).size(), before);
    EXPECT_FALSE(window->hasUnsavedChanges());
    EXPECT_FALSE(window->undoAction()->isEnabled());
    EXPECT_EQ(window->redoAction()->text(), QStringLiteral("&Redo set phonetic symbol"));
    QTest::keyClick(window.get(), Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(window->deck()->shapes(2).size(), before + 1);
    QTest::keyClick(window.get(), Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(window.get(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(window->deck()->shapes(2).size(), before + 1);
    EXPECT_EQ(window->deck()->shapes(2).last().text, box.text);
}

TEST_F(StudioWindowTest, SavingWritesTheEditAndLeavesTheRestByteForByte) {
    openLessonOnSlide2();
    const QByteArray original = decktest::readFile(lessonPath());
    window->phoneticOneKeyAction()->trigger();
    QTest::keyClick(window.get(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_FALSE(window->hasUnsavedChanges());
    const QByteArray saved = decktest::readFile(lessonPath());
    QString error;
    auto reread = minihost::Deck::loadFile(lessonPath(), &error);
    ASSERT_TRUE(reread) << error.toStdString();
    EXPECT_EQ(reread->shapes(2).size(), 3);
    EXPECT_EQ(reread->text(2, 3), window->deck()->text(2, 3));
    for (const decktest::ZipEntry& entry : decktest::zipEntries(original)) {
        if (entry.name == QStringLiteral("ppt/slides/slide2.xml")) continue;
        EXPECT_EQ(decktest::zipPart(saved, entry.name), entry.data) << entry.name.toStdString();
    }
}

TEST_F(StudioWindowTest, SavingAsMakesTheNewFileTheDecksFile) {
    openLessonOnSlide2();
    window->phoneticOneKeyAction()->trigger();
    const QString copy = dir.filePath(QStringLiteral("copy.pptx"));
    ASSERT_TRUE(window->saveTo(copy));
    EXPECT_EQ(window->filePath(), copy);
    QString error;
    auto reread = minihost::Deck::loadFile(copy, &error);
    ASSERT_TRUE(reread) << error.toStdString();
    EXPECT_EQ(reread->shapes(2).size(), 3);
    auto untouched = minihost::Deck::loadFile(lessonPath(), &error);
    EXPECT_EQ(untouched->shapes(2).size(), 2);
}

TEST_F(StudioWindowTest, AFileThatCannotBeWrittenIsReportedAndTheChangesStay) {
    openLessonOnSlide2();
    window->phoneticOneKeyAction()->trigger();
    MessageBoxAnswer answer(QMessageBox::Ok);
    EXPECT_FALSE(window->saveTo(dir.filePath(QStringLiteral("no/such/folder/out.pptx"))));
    EXPECT_TRUE(answer.text.contains(QStringLiteral("out.pptx"))) << answer.text.toStdString();
    EXPECT_TRUE(window->hasUnsavedChanges());
    EXPECT_EQ(window->filePath(), lessonPath());
}

TEST_F(StudioWindowTest, ClosingWithUnsavedChangesAsksAndCancelKeepsTheWindow) {
    openLessonOnSlide2();
    window->phoneticOneKeyAction()->trigger();
    {
        MessageBoxAnswer answer(QMessageBox::Cancel);
        EXPECT_FALSE(window->close());
        EXPECT_TRUE(answer.text.contains(QStringLiteral("lesson.pptx")))
            << answer.text.toStdString();
    }
    EXPECT_TRUE(window->isVisible());
    {
        MessageBoxAnswer answer(QMessageBox::Yes);
        EXPECT_TRUE(window->close());
    }
    QString error;
    EXPECT_EQ(minihost::Deck::loadFile(lessonPath(), &error)->shapes(2).size(), 3);
}

TEST_F(StudioWindowTest, ClosingWithoutChangesDoesNotAsk) {
    ASSERT_TRUE(window->openFile(lessonPath()));
    minihost::clearMessagesShown();
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(minihost::messagesShown().isEmpty());
}

TEST_F(StudioWindowTest, NoObjectOfTheModelOutlivesItsDeck) {
    openLessonOnSlide2();
    window->phoneticOneKeyAction()->trigger();
    ASSERT_TRUE(window->deck()->selectText(3, 0, 4));
    window->phoneticOneKeyAction()->trigger();
    EXPECT_EQ(minihost::liveObjectCount(), 0)
        << minihost::liveObjectKinds().join(' ').toStdString();
    minihost::setUnshownMessageBoxAnswer(7);
    ASSERT_TRUE(window->openFile(lessonPath()));  // the edited deck is set aside unsaved
    minihost::setUnshownMessageBoxAnswer(0);
    window.reset();
    EXPECT_EQ(minihost::liveObjectCount(), 0)
        << minihost::liveObjectKinds().join(' ').toStdString();
    EXPECT_EQ(minihost::overReleaseCount(), 0);
}

TEST_F(StudioWindowTest, TheWarningOfTheAddOnIsARealMessageBox) {
    ASSERT_TRUE(window->openFile(lessonPath()));
    ASSERT_TRUE(window->deck()->setCurrentSlide(2));
    // An empty text box: no Chinese to read.
    ASSERT_TRUE(window->deck()->selectShapes({3}));
    ASSERT_TRUE(window->deck()->selectText(3, 13, 1));  // the closing full stop alone
    MessageBoxAnswer answer(QMessageBox::Ok);
    window->phoneticOneKeyAction()->trigger();
    EXPECT_EQ(answer.text, QStringLiteral("please select one character at least"));
    EXPECT_EQ(answer.icon, QMessageBox::Warning);
}

TEST_F(StudioWindowTest, AMissingDictionaryIsNamedBeforeACommandRuns) {
    ASSERT_TRUE(window->openFile(lessonPath()));
    ASSERT_TRUE(window->deck()->selectShapes({3}));
    minihost::setDirectory(ZDirDictionaries, dir.filePath(QStringLiteral("nowhere")));
    MessageBoxAnswer answer(QMessageBox::Ok);
    window->phoneticOneKeyAction()->trigger();
    minihost::resetDirectories();
    EXPECT_TRUE(answer.text.startsWith(dir.filePath(QStringLiteral("nowhere/Pinyin.dic")) +
                                       QStringLiteral(": ")))
        << answer.text.toStdString();
    EXPECT_EQ(answer.icon, QMessageBox::Critical);
    EXPECT_EQ(window->deck()->undoSteps(), QStringList());  // nothing written
}

TEST_F(StudioWindowTest, InsertTextBoxAddsABoxToTypeInAsOneUndoStep) {
    ASSERT_TRUE(window->openFile(lessonPath()));
    minihost::setCurrentTabById(window.get(), QStringLiteral("CT_Insert"));
    QToolButton* button = ribbonButton(QStringLiteral("CT_Insert"), window->textBoxAction());
    ASSERT_NE(button, nullptr);
    ASSERT_TRUE(button->isVisible());
    const int before = window->deck()->shapes(1).size();
    QTest::mouseClick(button, Qt::LeftButton);
    const QList<minihost::ShapeInfo> shapes = window->deck()->shapes(1);
    ASSERT_EQ(shapes.size(), before + 1);
    EXPECT_EQ(window->deck()->undoSteps(), QStringList{QStringLiteral("insert text box")});
    // The text cursor is in it, and what is typed goes there.
    EXPECT_TRUE(window->deck()->hasTextSelection());
    EXPECT_EQ(minihost::currentTabId(window.get()), QStringLiteral("CT_TextTool"));
    QTest::keyClicks(window->slideView(), QStringLiteral("Hi"));
    EXPECT_EQ(window->deck()->text(1, shapes.last().id), QStringLiteral("Hi"));
    // Undone typing first, then the box.
    while (window->undoAction()->isEnabled()) window->undoAction()->trigger();
    EXPECT_EQ(window->deck()->shapes(1).size(), before);
    EXPECT_FALSE(window->hasUnsavedChanges());
}

}  // namespace
