// SPDX-License-Identifier: MIT
// A build without the web engine: a page that is to be rendered cannot be, and the host says
// so in its message box; a window that is the page's widget closes, a window that holds one
// stays.
#include <gtest/gtest.h>
#include <QTest>

#include "echoapi.h"
#include "minihost/nvo/hostcontrol.h"
#include "minihost/nvolite/webhost.h"

namespace {

class NoWebEngine : public testing::Test {
protected:
    void SetUp() override {
        minihost::setWebRendering(true);
        minihost::clearMessagesShown();
    }
    void TearDown() override { minihost::clearMessagesShown(); }
};

TEST_F(NoWebEngine, APageToRenderIsReportedAndItsWindowCloses) {
    EchoWindow window;
    window.show();
    EXPECT_FALSE(
        window.init(QStringLiteral("file:///nowhere/page.html#/a"), QStringLiteral("test")));
    EXPECT_EQ(window.api, nullptr);  // no bridge was made for a page that is not shown
    EXPECT_TRUE(minihost::webWidgets().isEmpty());
    QTest::qWait(0);
    const QList<RecordedMessage> messages = minihost::messagesShown();
    ASSERT_EQ(messages.size(), 1);
    EXPECT_EQ(messages[0].text.toStdString(),
              "The page file:///nowhere/page.html#/a cannot be shown: this build has no web "
              "engine.");
    EXPECT_EQ(messages[0].flags, 0x10u);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(NoWebEngine, AWindowHoldingThePageStaysOpen) {
    QWidget outer;
    auto* widget = new nvolite::ZxCommonWebWidget(&outer);
    outer.show();
    EXPECT_FALSE(
        widget->init(QStringLiteral("file:///nowhere/page.html"), QStringLiteral("test"), false));
    QTest::qWait(0);
    EXPECT_EQ(minihost::messagesShown().size(), 1);
    EXPECT_TRUE(outer.isVisible());
}

TEST_F(NoWebEngine, WithoutRenderingTheBridgeWorksAsEver) {
    minihost::setWebRendering(false);
    EchoWindow window;
    ASSERT_TRUE(window.init(QStringLiteral("file:///nowhere/page.html"), QStringLiteral("test")));
    EXPECT_EQ(minihost::callBridge(&window, "hidden", "{}").value(QStringLiteral("result")), 7);
    EXPECT_TRUE(minihost::messagesShown().isEmpty());
}

}  // namespace
