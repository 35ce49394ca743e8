// SPDX-License-Identifier: MIT
// The dialog command's usage event through the module: it is counted before the selection is
// looked at, so also when there is nothing to show but the guide.
#include <gtest/gtest.h>

#include <QApplication>
#include <QWidget>
#include <memory>

#include "minihost/nvo/addonmodule.h"
#include "minihost/nvo/hostcontrol.h"
#include "minihost/nvolite/webhost.h"
#include "minihost/slxcore/deck.h"
#include "qtprinters.h"
#include "ribbonfixture.h"

namespace {

// The add-on's dialog windows that are open now.
QList<QWidget*> dialogWindows() {
    QList<QWidget*> windows;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->inherits("ZPhoneticSymbolWebWindow")) windows << widget;
    return windows;
}

}  // namespace

TEST(DialogCommand, WithNothingSelectedItStillPostsTheSymbolEvent) {
    // The window is made but shows no page: what is tested here is the event, not the page.
    minihost::setWebRendering(false);
    minihost::AddonModule module;
    ASSERT_TRUE(module.load(minihost::addonModulePath(QStringLiteral("zphoneticsymbol"))))
        << module.errorString().toStdString();
    ZMainWindow window;
    minihost::buildRibbon(&window, {QStringLiteral("CT_Home"), QStringLiteral("CT_TextTool")});
    ASSERT_TRUE(minihost::setCurrentTabById(&window, QStringLiteral("CT_TextTool")));
    minihost::setCurrentMainWindow(&window);
    auto deck = minihost::Deck::create(1);
    deck->addTextBox(1, QStringLiteral("你好"), QRectF(40, 40, 400, 60));
    deck->clearSelection();
    minihost::setActiveView(deck->view());
    minihost::clearUsageEvents();

    std::unique_ptr<QObject> entry(module.createEntryObject());
    ASSERT_TRUE(minihost::triggerCommand(entry.get(), QStringLiteral("PhoneticSymbol")));
    QList<UsageEvent> events = minihost::usageEvents();
    ASSERT_EQ(events.size(), 1);
    EXPECT_EQ(events[0].name, QStringLiteral("nvo_phoneticsymbol_texttool"));
    EXPECT_EQ(events[0].parameters,
              (QHash<QString, QString>{{QStringLiteral("action"), QStringLiteral("symbol")}}));

    // The guide is open; a second command while it is open posts nothing.
    const QList<QWidget*> windows = dialogWindows();
    ASSERT_EQ(windows.size(), 1);
    ASSERT_TRUE(minihost::triggerCommand(entry.get(), QStringLiteral("PhoneticSymbol")));
    EXPECT_EQ(minihost::usageEvents().size(), 1);

    windows[0]->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(dialogWindows().isEmpty());
    entry.reset();
    minihost::setActiveView(nullptr);
    minihost::setCurrentMainWindow(nullptr);
    minihost::setWebRendering(true);
}
