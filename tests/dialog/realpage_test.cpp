// SPDX-License-Identifier: MIT
// The add-on's own page in the real dialog, headless: the command opens it, the page renders its
// view through window.zxHost and fits the window to itself; confirming writes the page's choice,
// Escape closes without writing. Screenshots go to the build tree.
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

// Waits until the model has forgotten its dialog (the window closed), running the event loop.
bool waitForClose() {
    for (int waited = 0; ZPhoneticSymbolModel::instance()->dialog && waited < kTimeout;
         waited += 50)
        QTest::qWait(50);
    return !ZPhoneticSymbolModel::instance()->dialog;
}

TEST_F(RealPage, ConfirmingWritesThePagesChoiceAsOneUndoStep) {
    const int box = selectBox(QString::fromUtf8("你好"));
    ZPhoneticSymbolWebWindow* window = openDialog();
    ASSERT_NE(window, nullptr);
    ASSERT_TRUE(minihost::waitForPageAttribute(window, "data-rendered", "pinyin", kTimeout));
    bool ok = false;
    minihost::runPageScript(
        window, QStringLiteral("document.querySelector('button.confirm').click()"), kTimeout, &ok);
    ASSERT_TRUE(ok);
    ASSERT_TRUE(waitForClose());
    // The page's first choices: each reading after its character, in full-width parentheses.
    EXPECT_EQ(deck->text(1, box), QString::fromUtf8("你（nǐ）好（hǎo）"));
    EXPECT_EQ(model()->styleType, 2);
    EXPECT_EQ(model()->bracketType, 1);
    EXPECT_EQ(deck->undoSteps(), QStringList{"set phonetic symbol"});
    EXPECT_TRUE(deck->undo());
    EXPECT_EQ(deck->text(1, box), QString::fromUtf8("你好"));
    model()->styleType = -1;
    model()->bracketType = -1;
}

TEST_F(RealPage, PickedReadingsAndLayoutAreWhatIsWritten) {
    const int box = selectBox(QString::fromUtf8("都得"));
    ZPhoneticSymbolWebWindow* window = openDialog();
    ASSERT_NE(window, nullptr);
    ASSERT_TRUE(minihost::waitForPageAttribute(window, "data-rendered", "pinyin", kTimeout));
    bool ok = false;
    // As a user would: the other reading of each polyphone, readings after the text, square
    // brackets, then OK.
    minihost::runPageScript(window, QString::fromUtf8(R"js(
        function pick(index, reading) {
            var choice = document.querySelector('select.reading-choice[data-index="' + index + '"]');
            choice.value = reading;
            choice.dispatchEvent(new Event('change', {bubbles: true}));
        }
        pick(0, 'dū');
        pick(1, 'děi');
        document.querySelector('.layouts input[value="1"]').click();
        document.querySelector('.brackets input[value="2"]').click();
        document.querySelector('button.confirm').click();
    )js"),
                            kTimeout, &ok);
    ASSERT_TRUE(ok);
    ASSERT_TRUE(waitForClose());
    EXPECT_EQ(deck->text(1, box), QString::fromUtf8("都得[dū děi]"));
    EXPECT_EQ(model()->styleType, 1);
    EXPECT_EQ(model()->bracketType, 2);
    EXPECT_EQ(deck->undoSteps(), QStringList{"set phonetic symbol"});
    model()->styleType = -1;
    model()->bracketType = -1;
}

TEST_F(RealPage, EscapeClosesWithoutWriting) {
    const int box = selectBox(QString::fromUtf8("你好"));
    ZPhoneticSymbolWebWindow* window = openDialog();
    ASSERT_NE(window, nullptr);
    ASSERT_TRUE(minihost::waitForPageAttribute(window, "data-rendered", "pinyin", kTimeout));
    deck->clearJournal();
    bool ok = false;
    minihost::runPageScript(
        window,
        QStringLiteral(
            "window.dispatchEvent(new KeyboardEvent('keydown', {key: 'Escape', bubbles: true}))"),
        kTimeout, &ok);
    ASSERT_TRUE(ok);
    ASSERT_TRUE(waitForClose());
    EXPECT_EQ(deck->text(1, box), QString::fromUtf8("你好"));
    EXPECT_TRUE(deck->undoSteps().isEmpty());
    EXPECT_EQ(model()->styleType, -1);
}

}  // namespace
