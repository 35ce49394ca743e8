// SPDX-License-Identifier: MIT
// The host's public controls: the ribbon a person sees and clicks, the main window and the
// services the add-on finds through the application, the message boxes and usage events the
// host keeps.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include "minihost/nvo/hostcontrol.h"
#include "nvo/dcinfo.h"
#include "nvo/ribbon.h"
#include "nvo/zapplication.h"

namespace {

const QStringList kTabs = {QStringLiteral("CT_Home"), QStringLiteral("CT_Insert"),
                           QStringLiteral("CT_TextTool")};

TEST(HostControl, ClickingATabMakesItCurrentAndShowsItsPanel) {
    ZMainWindow window;
    minihost::buildRibbon(&window, kTabs);
    minihost::setCurrentTabById(&window, QStringLiteral("CT_Home"));
    QAction action(QStringLiteral("Pinyin"), nullptr);
    QToolButton* button =
        minihost::addRibbonAction(&window, QStringLiteral("CT_TextTool"), &action);
    ASSERT_NE(button, nullptr);
    window.resize(800, 400);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    EXPECT_FALSE(button->isVisible());

    auto* tabs = qobject_cast<QTabBar*>(minihost::ribbonTabBar(&window));
    ASSERT_NE(tabs, nullptr);
    ASSERT_EQ(tabs->count(), 3);
    QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(2).center());
    EXPECT_EQ(window.headerBar()->subTabBar()->currentIdx(), 2);
    EXPECT_EQ(minihost::currentTabId(&window), QStringLiteral("CT_TextTool"));
    EXPECT_TRUE(button->isVisible());

    // Set by the host program, the tab the user sees follows too.
    minihost::setCurrentTabById(&window, QStringLiteral("CT_Home"));
    EXPECT_EQ(tabs->currentIndex(), 0);
    EXPECT_FALSE(button->isVisible());
}

TEST(HostControl, TabTitlesAreWhatTheUserReadsAndIdsStay) {
    ZMainWindow window;
    minihost::buildRibbon(&window, kTabs);
    EXPECT_TRUE(minihost::setRibbonTabTitle(&window, QStringLiteral("CT_Insert"),
                                            QStringLiteral("Insert")));
    EXPECT_FALSE(
        minihost::setRibbonTabTitle(&window, QStringLiteral("CT_View"), QStringLiteral("View")));
    auto* tabs = qobject_cast<QTabBar*>(minihost::ribbonTabBar(&window));
    EXPECT_EQ(tabs->tabText(1), QStringLiteral("Insert"));
    EXPECT_EQ(minihost::ribbonTabPanel(&window, QStringLiteral("CT_View")), nullptr);
    EXPECT_EQ(minihost::currentTabId(&window), QString());  // none current yet
    minihost::setCurrentTab(&window, 3);
    EXPECT_EQ(minihost::currentTabId(&window), QString());
}

TEST(HostControl, TheCurrentMainWindowIsForgottenWhenItGoes) {
    ZxApplication* app = minihost::hostApplication();
    ASSERT_NE(app, nullptr);
    {
        ZMainWindow window;
        minihost::setCurrentMainWindow(&window);
        EXPECT_EQ(app->currentMainWindow(), &window);
    }
    EXPECT_EQ(app->currentMainWindow(), nullptr);
}

struct CountedService : IUnknown {
    HRESULT QueryInterface(REFIID, void** out) override {
        *out = this;
        AddRef();
        return S_OK;
    }
    std::uint32_t AddRef() override { return ++references; }
    std::uint32_t Release() override { return --references; }
    std::uint32_t references = 1;
};

TEST(HostControl, ServicesAreFoundThroughTheApplicationAndHeldByReference) {
    const GUID id = {0x11111111, 0x2222, 0x3333, {1, 2, 3, 4, 5, 6, 7, 8}};
    CountedService counted;
    minihost::registerService(id, &counted);
    EXPECT_EQ(counted.references, 2u);
    EXPECT_EQ(minihost::service(id), &counted);
    IUnknown* found = nullptr;
    EXPECT_EQ(minihost::hostApplication()->coreApplication()->QueryService(id, &found), S_OK);
    EXPECT_EQ(found, &counted);
    found->Release();
    minihost::unregisterService(id);
    EXPECT_EQ(counted.references, 1u);
    EXPECT_EQ(minihost::service(id), nullptr);
}

TEST(HostControl, MessageBoxesAreKeptAndAnsweredWhenNotShown) {
    ZxApplication* app = minihost::hostApplication();
    ASSERT_TRUE(minihost::isHeadless());
    EXPECT_FALSE(minihost::showsMessageBoxes());
    minihost::clearMessagesShown();
    EXPECT_EQ(app->messageBox(QStringLiteral("Save?"), 0x23), 6);
    minihost::setUnshownMessageBoxAnswer(2);
    EXPECT_EQ(app->messageBox(QStringLiteral("Really?"), 0x21), 2);
    minihost::setUnshownMessageBoxAnswer(0);
    const QList<RecordedMessage> messages = minihost::messagesShown();
    ASSERT_EQ(messages.size(), 2);
    EXPECT_EQ(messages.at(0).text, QStringLiteral("Save?"));
    EXPECT_EQ(messages.at(1).flags, 0x21u);
    minihost::clearMessagesShown();
    EXPECT_TRUE(minihost::messagesShown().isEmpty());
}

TEST(HostControl, AShownMessageBoxIsARealBoxAndIsKeptToo) {
    ZxApplication* app = minihost::hostApplication();
    minihost::clearMessagesShown();
    minihost::setShowMessageBoxes(true);
    QString seen;
    // The box is modal: answer it from the event loop, as a person would.
    QTimer::singleShot(0, [&seen] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box) return;
        seen = box->text();
        box->button(QMessageBox::No)->click();
    });
    const int answer = app->messageBox(QStringLiteral("Save changes?"), 0x23);
    minihost::setShowMessageBoxes(false);
    EXPECT_EQ(seen, QStringLiteral("Save changes?"));
    EXPECT_EQ(answer, 7);
    ASSERT_EQ(minihost::messagesShown().size(), 1);
}

TEST(HostControl, UsageEventsAreReadAndCleared) {
    minihost::clearUsageEvents();
    ZDcInfoC* collector = minihost::hostApplication()->coreApplication()->getDcInfo();
    ASSERT_NE(collector, nullptr);
    collector->postGeneralEvent(QStringLiteral("nvo_test"),
                                {{QStringLiteral("action"), QStringLiteral("x")}}, 0, 0,
                                ZDcProbabilityAlways, true);
    const QList<UsageEvent> events = minihost::usageEvents();
    ASSERT_EQ(events.size(), 1);
    EXPECT_EQ(events.at(0).name, QStringLiteral("nvo_test"));
    EXPECT_EQ(events.at(0).parameters.value(QStringLiteral("action")), QStringLiteral("x"));
    minihost::clearUsageEvents();
    EXPECT_TRUE(minihost::usageEvents().isEmpty());
}

}  // namespace
