// SPDX-License-Identifier: MIT
// The frameless window: its flags and options, dragging by the title bar, resizing by the edges.
#include <gtest/gtest.h>
#include <QApplication>
#include <QMouseEvent>

#include "echoapi.h"
#include "minihost/nvolite/webhost.h"

namespace {

class Window : public testing::Test {
protected:
    void SetUp() override { minihost::setWebRendering(false); }
    void TearDown() override { minihost::setWebRendering(true); }
};

// A mouse event sent to `target` at `local` (its coordinates), as the window system would.
void mouse(QWidget* target, QEvent::Type type, const QPoint& local, Qt::MouseButtons buttons) {
    const QPoint global = target->mapToGlobal(local);
    QMouseEvent event(type, local, global,
                      type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, buttons,
                      Qt::NoModifier);
    QApplication::sendEvent(target, &event);
}

void drag(QWidget* target, const QPoint& from, const QPoint& by) {
    const QPoint globalFrom = target->mapToGlobal(from);
    mouse(target, QEvent::MouseButtonPress, from, Qt::LeftButton);
    // Positions relative to where the press was, as the window moves under the mouse.
    for (int step = 1; step <= 4; ++step) {
        const QPoint global = globalFrom + by * step / 4;
        QMouseEvent event(QEvent::MouseMove, target->mapFromGlobal(global), global, Qt::NoButton,
                          Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(target, &event);
    }
    const QPoint globalTo = globalFrom + by;
    QMouseEvent release(QEvent::MouseButtonRelease, target->mapFromGlobal(globalTo), globalTo,
                        Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(target, &release);
}

TEST_F(Window, IsFramelessAndOutOfTheTaskbarUnlessAsked) {
    nvolite::ZxCommonWebWindow tool(nullptr, false, false, 20);
    EXPECT_TRUE(tool.windowFlags() & Qt::FramelessWindowHint);
    EXPECT_EQ(tool.windowType(), Qt::Tool);
    nvolite::ZxCommonWebWindow own(nullptr, false, true, 20);
    EXPECT_EQ(own.windowType(), Qt::Window);
    EXPECT_TRUE(own.windowFlags() & Qt::FramelessWindowHint);
}

TEST_F(Window, OptionsStartOffAndAreKept) {
    nvolite::ZxCommonWebWindow window(nullptr, false, false, 20);
    EXPECT_FALSE(window.centerOnParent());
    EXPECT_FALSE(window.localContentOnly());
    window.setCenterOnParent(true);
    window.setLocalContentOnly(true);
    EXPECT_TRUE(window.centerOnParent());
    EXPECT_TRUE(window.localContentOnly());
}

TEST_F(Window, DragsByTheTitleBarOnly) {
    EchoWindow window;
    ASSERT_TRUE(window.init(QStringLiteral("file:///nowhere/page.html"), QStringLiteral("test")));
    window.setFixedSize(627, 669);
    window.setTitleBarRect(QRect(0, 0, 626, 40));
    EXPECT_EQ(window.titleBarRect(), QRect(0, 0, 626, 40));
    window.move(100, 100);
    window.show();
    // The page's widgets cover the window: the events reach the container, not the window.
    QWidget* inside = window.webViewContainer();
    drag(inside, QPoint(300, 20), QPoint(50, 30));
    EXPECT_EQ(window.pos(), QPoint(150, 130));
    drag(inside, QPoint(300, 300), QPoint(50, 30));  // below the title bar: no move
    EXPECT_EQ(window.pos(), QPoint(150, 130));
    drag(inside, QPoint(626, 20), QPoint(50, 30));  // the last column is outside the area
    EXPECT_EQ(window.pos(), QPoint(150, 130));
}

TEST_F(Window, AClickInTheTitleBarDoesNotMoveIt) {
    EchoWindow window;
    window.setTitleBarRect(QRect(0, 0, 200, 40));
    window.resize(300, 300);
    window.move(10, 10);
    window.show();
    drag(window.webViewContainer(), QPoint(100, 10), QPoint(1, 1));  // below the drag distance
    EXPECT_EQ(window.pos(), QPoint(10, 10));
}

TEST_F(Window, ResizesByItsEdgesWhenResizable) {
    EchoWindow window(nullptr, true, 8);
    window.resize(400, 300);
    window.move(100, 100);
    window.show();
    drag(window.webViewContainer(), QPoint(398, 150), QPoint(40, 0));  // right edge
    EXPECT_EQ(window.geometry(), QRect(100, 100, 440, 300));
    drag(window.webViewContainer(), QPoint(2, 2), QPoint(-10, -20));  // top-left corner
    EXPECT_EQ(window.geometry(), QRect(90, 80, 450, 320));

    EchoWindow fixed(nullptr, false, 8);
    fixed.resize(400, 300);
    fixed.show();
    drag(fixed.webViewContainer(), QPoint(398, 150), QPoint(40, 0));
    EXPECT_EQ(fixed.size(), QSize(400, 300));
}

TEST_F(Window, CentresOnItsParentWhenFirstShown) {
    QWidget main;
    main.setGeometry(100, 100, 1000, 800);
    main.show();
    nvolite::ZxCommonWebWindow window(&main, false, false, 20);
    window.setCenterOnParent(true);
    window.resize(200, 100);
    window.show();
    EXPECT_EQ(window.pos(), QPoint(100 + 400, 100 + 350));
    window.hide();
    window.move(0, 0);
    window.show();  // only the first show centres
    EXPECT_EQ(window.pos(), QPoint(0, 0));
}

TEST_F(Window, ClosingAWindowWithItsPageDeletedIsSafe) {
    auto* window = new EchoWindow;
    ASSERT_TRUE(window->init(QStringLiteral("file:///nowhere/page.html"), QStringLiteral("test")));
    window->show();
    window->api->closeWindow();
    delete window;  // before the queued close runs
    QCoreApplication::processEvents();
    SUCCEED();
}

}  // namespace
