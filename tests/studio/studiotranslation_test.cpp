// SPDX-License-Identifier: MIT
// The studio speaks Chinese when the user's language is Chinese, English otherwise.
#include <QAction>
#include <QRadioButton>
#include <QTabBar>

#include "minihost/nvo/hoststore.h"
#include "myreadingswindow.h"
#include "studiofixture.h"
#include "studiotranslation.h"

namespace {

class StudioLanguage : public StudioTest {
protected:
    // A new window in `language`.
    void reopenIn(const QString& language) {
        window.reset();
        minihost::setHostSetting(QStringLiteral("ui/language"), language);
        studiotranslation::install();
        window = std::make_unique<StudioWindow>();
        window->show();
    }
    void TearDown() override {
        StudioTest::TearDown();
        studiotranslation::uninstall();
        minihost::setHostSetting(QStringLiteral("ui/language"), QVariant());
    }
    QString tab(int index) {
        return qobject_cast<QTabBar*>(minihost::ribbonTabBar(window.get()))->tabText(index);
    }
};

TEST_F(StudioLanguage, ChineseForAChineseUser) {
    reopenIn(QStringLiteral("zh_CN"));
    EXPECT_EQ(tab(0), QString::fromUtf8("开始"));
    EXPECT_EQ(tab(1), QString::fromUtf8("插入"));
    EXPECT_EQ(tab(2), QString::fromUtf8("文本工具"));
    EXPECT_EQ(window->phoneticSymbolAction()->text(), QString::fromUtf8("拼音标注"));
    EXPECT_EQ(window->phoneticOneKeyAction()->text(), QString::fromUtf8("一键拼音"));
    EXPECT_EQ(window->pinyinOverTextAction()->text(), QString::fromUtf8("拼音在上"));
    ASSERT_TRUE(window->openFile(lessonPath()));
    ASSERT_TRUE(window->deck()->selectShapes({3}));
    window->phoneticOneKeyAction()->trigger();
    // The step's name is the add-on's, in the add-on's own Chinese.
    EXPECT_EQ(window->undoAction()->text(), QString::fromUtf8("撤销(&U) 标注拼音"));
    EXPECT_EQ(window->placementAction(minihost::Placement::Below)->text(),
              QString::fromUtf8("文字下方"));
    // The window's own steps are named in Chinese too.
    ASSERT_TRUE(window->deck()->selectText(3, 0, 0));
    QTest::keyClick(window->slideView(), Qt::Key_A);
    EXPECT_EQ(window->undoAction()->text(), QString::fromUtf8("撤销(&U) 键入"));
    screenshot(QStringLiteral("studio-chinese.png"));
    // The window of the user's own readings speaks Chinese too.
    EXPECT_EQ(window->myReadingsAction()->text(), QString::fromUtf8("我的读音(&R)..."));
    window->myReadingsAction()->trigger();
    auto* readings = window->findChild<MyReadingsWindow*>();
    ASSERT_NE(readings, nullptr);
    EXPECT_EQ(readings->windowTitle(), QString::fromUtf8("我的读音"));
    EXPECT_EQ(readings->originalButton()->text(),
              QString::fromUtf8("按词典标原调：一个 yī gè，不是 bù shì"));
    screenshot(QStringLiteral("studio-chinese-my-readings.png"), readings);
}

TEST_F(StudioLanguage, EnglishForAnyOtherLanguage) {
    reopenIn(QStringLiteral("fr_FR"));
    EXPECT_EQ(tab(0), QStringLiteral("Home"));
    EXPECT_EQ(window->phoneticSymbolAction()->text(), QStringLiteral("Pinyin Readings"));
}

}  // namespace
