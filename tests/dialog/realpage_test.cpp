// SPDX-License-Identifier: MIT
// The add-on's own page in the real dialog, headless: the command opens it, the page renders its
// view through window.zxHost and fits the window to itself. Screenshots go to the build tree.
#include <QDir>
#include <QTest>

#include "dialogfixture.h"

namespace {

const int kTimeout = 60000;

class RealPage : public DialogTest {
protected:
    void SetUp() override {
        DialogTest::SetUp();
        minihost::setWebRendering(true);
    }

    void screenshot(QWidget* window, const QString& name) {
        const QString folder = qEnvironmentVariableIsEmpty("ZPHONETIC_SCREENSHOT_DIR")
                                   ? QStringLiteral(ZPHONETIC_SCREENSHOT_DIR)
                                   : qEnvironmentVariable("ZPHONETIC_SCREENSHOT_DIR");
        QDir().mkpath(folder);
        EXPECT_TRUE(window->grab().save(folder + QLatin1Char('/') + name));
    }
};

TEST_F(RealPage, ThePinyinViewRendersAndFitsTheWindow) {
    selectBox(QString::fromUtf8("都得你好"));
    ZPhoneticSymbolWebWindow* window = openDialog();
    ASSERT_NE(window, nullptr);
    ASSERT_TRUE(minihost::waitForPageAttribute(window, "data-rendered", "pinyin", kTimeout));
    QTest::qWait(200);  // the page asks for its size right after rendering
    EXPECT_NE(window->size(), QSize(627, 669)) << "the page did not call changeSize";
    screenshot(window, QStringLiteral("dialog-pinyin.png"));
}

TEST_F(RealPage, TheGuideViewRenders) {
    deck->clearSelection();
    ZPhoneticSymbolWebWindow* window = openDialog();
    ASSERT_NE(window, nullptr);
    ASSERT_TRUE(minihost::waitForPageAttribute(window, "data-rendered", "guide", kTimeout));
    screenshot(window, QStringLiteral("dialog-guide.png"));
}

}  // namespace
