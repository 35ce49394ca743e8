// SPDX-License-Identifier: MIT
// "My Readings..." in the studio: words added, changed and removed, and the tones chosen, in the
// real window, written to the user's readings file in the configuration directory and taken by
// the very next one-key command; a line the file cannot use is shown with why, and fixed there.
#include <QAction>
#include <QDialogButtonBox>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>

#include "ReadingsStore.h"
#include "myreadingswindow.h"
#include "studiofixture.h"

namespace {

QString u(const char* text) {
    return QString::fromUtf8(text);
}

class MyReadingsTest : public StudioTest {
protected:
    void SetUp() override {
        // The test program's own configuration directory (tests/support/hostmain.cpp).
        path = QString::fromStdString(zphonetic::tagger::ownReadingsPath());
        ASSERT_TRUE(path.startsWith(qEnvironmentVariable("XDG_CONFIG_HOME"))) << path.toStdString();
        QFile::remove(path);
        StudioTest::SetUp();
    }
    void TearDown() override {
        StudioTest::TearDown();
        QFile::remove(path);
    }

    // Opens the window from the Pinyin menu's action, as a person does.
    MyReadingsWindow* openReadings() {
        window->myReadingsAction()->trigger();
        auto* readings = window->findChild<MyReadingsWindow*>();
        EXPECT_TRUE(readings && readings->isVisible());
        return readings;
    }
    // The words' editor while it is open (once closed, it goes at the next turn of the loop).
    QDialog* editor(MyReadingsWindow* readings) {
        for (auto* open :
             readings->findChildren<QDialog*>(QString::fromLatin1(MyReadingsWindow::kEditorName)))
            if (open->isVisible()) return open;
        return nullptr;
    }
    // Fills the open editor and clicks OK.
    void answerEditor(MyReadingsWindow* readings, const QString& word, const QString& text) {
        QDialog* open = editor(readings);
        ASSERT_NE(open, nullptr);
        ASSERT_TRUE(open->isVisible());
        auto* wordField = open->findChild<QLineEdit*>(QStringLiteral("word"));
        auto* readingsField = open->findChild<QLineEdit*>(QStringLiteral("readings"));
        type(wordField, word);
        type(readingsField, text);
        QTest::mouseClick(open->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok),
                          Qt::LeftButton);
    }
    // Replaces what `field` holds with `text` as an input method commits it (QTest types only
    // what a key gives).
    static void type(QLineEdit* field, const QString& text) {
        field->setFocus();
        field->selectAll();
        QInputMethodEvent commit;
        commit.setCommitString(text);
        QApplication::sendEvent(field, &commit);
    }
    QStringList rows(MyReadingsWindow* readings) {
        QStringList out;
        QTableWidget* table = readings->table();
        for (int row = 0; row < table->rowCount(); ++row)
            out << table->item(row, 0)->text() + QStringLiteral(" | ") +
                       table->item(row, 1)->text();
        return out;
    }
    QByteArray fileBytes() const {
        QFile in(path);
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray("<no file>");
    }
    // Runs one-key on shape `id` of slide `slide` and gives the text of the box it made.
    QString oneKeyOn(int slide, int id) {
        EXPECT_TRUE(window->deck()->setCurrentSlide(slide));
        EXPECT_TRUE(window->deck()->selectShapes({id}));
        const int before = window->deck()->shapes(slide).size();
        window->phoneticOneKeyAction()->trigger();
        const QList<minihost::ShapeInfo> after = window->deck()->shapes(slide);
        return after.size() == before + 1 ? after.last().text : QStringLiteral("<no box>");
    }
    // The id of the shape on `slide` whose text starts with `start`.
    int shapeWith(int slide, const QString& start) const {
        for (const minihost::ShapeInfo& shape : window->deck()->shapes(slide))
            if (shape.text.startsWith(start)) return shape.id;
        return 0;
    }

    QString path;
};

TEST_F(MyReadingsTest, AWordAddedChangedAndRemovedTakesEffectAtOnce) {
    ASSERT_TRUE(window->openFile(lessonPath()));
    const int polyphones = shapeWith(2, u("银行"));
    EXPECT_TRUE(oneKeyOn(2, polyphones).startsWith(u("yín hánɡ hánɡ zhǎnɡ")));

    MyReadingsWindow* readings = openReadings();
    ASSERT_NE(readings, nullptr);
    EXPECT_EQ(readings->filePath(), path);
    EXPECT_EQ(rows(readings), QStringList());
    EXPECT_FALSE(readings->changeButton()->isEnabled());
    QTest::mouseClick(readings->addButton(), Qt::LeftButton);
    answerEditor(readings, u("银行"), QStringLiteral("yin2 xing2"));
    EXPECT_EQ(editor(readings), nullptr);  // accepted and gone
    EXPECT_EQ(rows(readings), QStringList{u("银行 | yín xíng")});
    EXPECT_TRUE(fileBytes().endsWith(u("\n银行 yín xíng\n").toUtf8())) << fileBytes().toStdString();
    EXPECT_TRUE(oneKeyOn(2, polyphones).startsWith(u("yín xínɡ hánɡ zhǎnɡ")));

    readings->table()->selectRow(0);
    QTest::mouseClick(readings->changeButton(), Qt::LeftButton);
    ASSERT_NE(editor(readings), nullptr);
    EXPECT_EQ(editor(readings)->findChild<QLineEdit*>(QStringLiteral("readings"))->text(),
              u("yín xíng"));
    answerEditor(readings, u("银行行长"), u("yín háng xíng zhǎng"));
    EXPECT_EQ(rows(readings), QStringList{u("银行行长 | yín háng xíng zhǎng")});
    EXPECT_TRUE(oneKeyOn(2, polyphones).startsWith(u("yín hánɡ xínɡ zhǎnɡ")));

    readings->table()->selectRow(0);
    QTest::mouseClick(readings->removeButton(), Qt::LeftButton);
    EXPECT_EQ(rows(readings), QStringList());
    EXPECT_FALSE(fileBytes().contains(u("银行").toUtf8()));
    EXPECT_TRUE(oneKeyOn(2, polyphones).startsWith(u("yín hánɡ hánɡ zhǎnɡ")));
}

TEST_F(MyReadingsTest, TheTonesChosenInTheWindowAreWrittenByTheNextCommand) {
    ASSERT_TRUE(window->openFile(lessonPath()));
    // Slide 3's text: 一个人，一天，一年。 then 不是不好，是不对。
    const int changes = shapeWith(3, u("一个"));
    const QString taught = u("yí ɡè rén yì tiān yì nián bú shì bù hǎo shì bú duì ");
    EXPECT_EQ(oneKeyOn(3, changes), taught);

    MyReadingsWindow* readings = openReadings();
    ASSERT_NE(readings, nullptr);
    EXPECT_TRUE(readings->taughtButton()->isChecked());
    QTest::mouseClick(readings->originalButton(), Qt::LeftButton);
    EXPECT_TRUE(fileBytes().contains("\ntones original\n")) << fileBytes().toStdString();
    EXPECT_EQ(oneKeyOn(3, changes), u("yī ɡè rén yī tiān yī nián bù shì bù hǎo shì bù duì "));

    QTest::mouseClick(readings->taughtButton(), Qt::LeftButton);
    EXPECT_TRUE(fileBytes().contains("\ntones taught\n"));
    EXPECT_EQ(oneKeyOn(3, changes), taught);
}

TEST_F(MyReadingsTest, ALineTheFileCannotUseIsShownWithWhyAndFixedThere) {
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
    {
        QFile out(path);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(u("# mine\n曾老师 zēng lǎo\n还 huán\n").toUtf8());
    }
    ASSERT_TRUE(window->openFile(lessonPath()));
    MyReadingsWindow* readings = openReadings();
    ASSERT_NE(readings, nullptr);
    EXPECT_EQ(rows(readings),
              QStringList({u("还 | huán"),
                           u("曾老师 zēng lǎo | 曾老师 has 3 characters but 2 readings.")}));
    EXPECT_EQ(readings->table()->item(1, 1)->toolTip(),
              u("Line 2 of the file is not used: 曾老师 has 3 characters but 2 readings."));
    screenshot(QStringLiteral("studio-my-readings.png"), readings);

    readings->table()->selectRow(1);
    QTest::mouseClick(readings->changeButton(), Qt::LeftButton);
    ASSERT_NE(editor(readings), nullptr);
    EXPECT_EQ(editor(readings)->findChild<QLineEdit*>(QStringLiteral("word"))->text(), u("曾老师"));
    // Still wrong: the editor says why and stays.
    answerEditor(readings, u("曾老师"), u("zēng"));
    ASSERT_NE(editor(readings), nullptr);
    auto* problem = editor(readings)->findChild<QLabel*>(QStringLiteral("problem"));
    EXPECT_TRUE(problem->isVisible());
    EXPECT_EQ(problem->text(), u("曾老师 has 3 characters but 1 reading."));
    screenshot(QStringLiteral("studio-my-readings-editor.png"), editor(readings));
    answerEditor(readings, u("曾老师"), u("zeng1 lao3 shi1"));
    EXPECT_EQ(editor(readings), nullptr);
    EXPECT_EQ(fileBytes(), u("# mine\n曾老师 zēng lǎo shī\n还 huán\n").toUtf8());
    EXPECT_EQ(rows(readings), QStringList({u("曾老师 | zēng lǎo shī"), u("还 | huán")}));
}

TEST_F(MyReadingsTest, WhatAnotherProgramWroteMeanwhileIsKept) {
    MyReadingsWindow* readings = openReadings();
    ASSERT_NE(readings, nullptr);
    // Written by zphonetic words (or an editor) while the window is open.
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
    {
        QFile out(path);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(u("还 huán\n").toUtf8());
    }
    QTest::mouseClick(readings->addButton(), Qt::LeftButton);
    answerEditor(readings, u("行"), u("háng"));
    EXPECT_EQ(fileBytes(), u("还 huán\n行 háng\n").toUtf8());
    EXPECT_EQ(rows(readings), QStringList({u("还 | huán"), u("行 | háng")}));
}

}  // namespace
