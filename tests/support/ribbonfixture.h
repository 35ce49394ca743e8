// SPDX-License-Identifier: MIT
// A host main window with a ribbon of tabs, made the application's current main window for the
// life of a test.
#pragma once

#include <gtest/gtest.h>

#include <QStringList>
#include <memory>

#include "minihost/nvo/hostcontrol.h"
#include "nvo/ribbon.h"
#include "nvo/zapplication.h"

class RibbonFixture : public ::testing::Test {
public:
    static ZxApplication* app() {
        return qobject_cast<ZxApplication*>(QCoreApplication::instance());
    }

protected:
    // Gives the host a main window whose ribbon lists `tabIds`, with tab `current` current.
    void showRibbon(const QStringList& tabIds, int current) {
        window = std::make_unique<ZMainWindow>();
        list = minihost::buildRibbon(window.get(), tabIds);
        minihost::setCurrentTab(window.get(), current);
        minihost::setCurrentMainWindow(window.get());
    }
    // The Home, Text Tool and Insert tabs with `tabId` current.
    void showTab(const QString& tabId) {
        showRibbon(
            {QStringLiteral("CT_Home"), QStringLiteral("CT_TextTool"), QStringLiteral("CT_Insert")},
            0);
        ASSERT_TRUE(minihost::setCurrentTabById(window.get(), tabId));
    }
    void TearDown() override {
        minihost::setCurrentMainWindow(nullptr);
        window.reset();
    }

    std::unique_ptr<ZMainWindow> window;
    ZListCommand* list = nullptr;
};
