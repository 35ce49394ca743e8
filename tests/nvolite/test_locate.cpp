// SPDX-License-Identifier: MIT
// Placing a window relative to the main window.
#include <gtest/gtest.h>
#include <QGuiApplication>
#include <QScreen>

#include "nvolite/zxcommonwebwidget.h"

namespace {

TEST(Locate, CentresOverTheParentsWindowOnTheChosenAxes) {
    QWidget main;
    main.setGeometry(100, 100, 1000, 800);
    main.show();
    QWidget dialog(&main, Qt::Dialog | Qt::FramelessWindowHint);
    dialog.resize(200, 100);
    dialog.move(5, 6);
    ZxLocateHelpFunc::adjustToRelatedMainWindow(&dialog, 0, true, false);
    EXPECT_EQ(dialog.pos(), QPoint(500, 6));
    ZxLocateHelpFunc::adjustToRelatedMainWindow(&dialog, 0, false, true);
    EXPECT_EQ(dialog.pos(), QPoint(500, 450));
    dialog.move(5, 6);
    ZxLocateHelpFunc::adjustToRelatedMainWindow(&dialog, 0, true, true);
    EXPECT_EQ(dialog.pos(), QPoint(500, 450));
}

TEST(Locate, KeepsTheWindowOnTheScreen) {
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    QWidget main;
    main.setGeometry(screen.right() - 100, screen.top() + 10, 400, 300);  // mostly off the screen
    main.show();
    QWidget dialog(&main, Qt::Dialog | Qt::FramelessWindowHint);
    dialog.resize(300, 200);
    ZxLocateHelpFunc::adjustToRelatedMainWindow(&dialog, 0, true, true);
    EXPECT_EQ(dialog.pos().x(), screen.right() - 300 + 1);
    EXPECT_EQ(dialog.pos().y(), screen.top() + 10 + 50);
}

TEST(Locate, NullIsIgnored) {
    ZxLocateHelpFunc::adjustToRelatedMainWindow(nullptr, 0, true, true);
}

}  // namespace
