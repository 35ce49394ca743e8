// SPDX-License-Identifier: MIT
// The ribbon as the host builds it: header bar, sub-tab bar, list command, tab ids.
#include <gtest/gtest.h>

#include <QVariant>

#include "hostjournal.h"
#include "minihost/nvo/ribbon_p.h"

TEST(Ribbon, BuiltRibbonListsTheTabsWithTheirIds) {
    ZMainWindow window;
    EXPECT_EQ(window.headerBar(), nullptr);
    ZListCommand* list = minihost::buildRibbon(
        &window,
        {QStringLiteral("CT_Home"), QStringLiteral("CT_Insert"), QStringLiteral("CT_TextTool")});
    ZRbTabWidget* header = window.headerBar();
    ASSERT_NE(header, nullptr);
    ZRbSubTabBar* bar = header->subTabBar();
    ASSERT_NE(bar, nullptr);
    EXPECT_EQ(bar->command(), list);
    EXPECT_EQ(bar->currentIdx(), -1);
    ASSERT_EQ(list->childCount(), 3);
    EXPECT_EQ(list->childAt(2)->property("id").toString(), QStringLiteral("CT_TextTool"));
    EXPECT_EQ(list->childAt(3), nullptr);
    EXPECT_EQ(list->childAt(-1), nullptr);
}

TEST(Ribbon, CurrentTabIsNotCheckedAgainstTheCount) {
    ZMainWindow window;
    ZListCommand* list = minihost::buildRibbon(&window, {QStringLiteral("CT_Home")});
    minihost::setCurrentTab(&window, list->childCount());
    EXPECT_EQ(window.headerBar()->subTabBar()->currentIdx(), 1);
    EXPECT_TRUE(minihost::setCurrentTabById(&window, QStringLiteral("CT_Home")));
    EXPECT_EQ(window.headerBar()->subTabBar()->currentIdx(), 0);
    EXPECT_FALSE(minihost::setCurrentTabById(&window, QStringLiteral("CT_View")));
    EXPECT_EQ(window.headerBar()->subTabBar()->currentIdx(), 0);
}

TEST(Ribbon, QueriesAreNotedInTheHostsJournal) {
    ZMainWindow window;
    minihost::buildRibbon(&window, {QStringLiteral("CT_Home")});
    minihost::clearHostJournal();
    QObject* command = window.headerBar()->subTabBar()->command();
    auto* list = static_cast<ZListCommand*>(command);
    list->childAt(list->childCount() - 1);
    window.headerBar()->subTabBar()->currentIdx();
    EXPECT_EQ(minihost::hostJournal(),
              (QStringList{"ZMainWindow.headerBar()", "ZRbTabWidget.subTabBar()",
                           "ZRbSubTabBar.command()", "ZListCommand.childCount()",
                           "ZListCommand.childAt(0)", "ZMainWindow.headerBar()",
                           "ZRbTabWidget.subTabBar()", "ZRbSubTabBar.currentIdx()"}));
    EXPECT_EQ(hostjournal::ribbonQueries(), 8);
}
