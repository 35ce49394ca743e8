// SPDX-License-Identifier: MIT
// Real pages in the web engine, headless: the page reaches the bridge through window.zxHost
// only, its window.close() closes the window, and a local-only window keeps it at home.
#include <gtest/gtest.h>
#include <QApplication>
#include <QFile>
#include <QJsonDocument>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>

#include "echoapi.h"
#include "minihost/nvolite/webhost.h"

namespace {

const int kTimeout = 60000;

// The test page as the host opens pages: "file://" + "/" + an absolute path (four slashes).
QString pageUrl(const QString& fragment) {
    return QStringLiteral("file:///") + QStringLiteral(ZPHONETIC_TEST_PAGES "/bridge.html") +
           fragment;
}

QVariantMap pageValue(nvolite::ZxCommonWebWidget* widget, const QString& expression) {
    bool ok = false;
    const QVariant json =
        minihost::runPageScript(widget, "JSON.stringify(" + expression + ")", kTimeout, &ok);
    EXPECT_TRUE(ok);
    return QJsonDocument::fromJson(json.toString().toUtf8()).toVariant().toMap();
}

class Page : public testing::Test {
protected:
    void SetUp() override { minihost::setWebProfilesOffTheRecord(true); }
};

// Whether the process has mapped an object whose path contains `name`.
bool mapped(const QString& name) {
    QFile maps(QStringLiteral("/proc/self/maps"));
    return maps.open(QIODevice::ReadOnly) && QString::fromUtf8(maps.readAll()).contains(name);
}

TEST_F(Page, ARenderedPageLoadsTheWebPartAndTheWebEngine) {
    EchoWindow window;
    ASSERT_TRUE(window.init(pageUrl(QString()), QStringLiteral("test")));
    EXPECT_TRUE(mapped(QStringLiteral("/libnvolite_web.so")));
    EXPECT_TRUE(mapped(QStringLiteral("/libQt5WebEngineCore.so")));
    ASSERT_NE(minihost::webWidgetView(&window), nullptr);
    window.show();
    ASSERT_TRUE(minihost::waitForPageAttribute(&window, "data-rendered", "bridge", kTimeout));
    EXPECT_TRUE(minihost::webPageUrl(&window).toString().endsWith(QStringLiteral("bridge.html")));
}

TEST_F(Page, SeesOnlyZxHostAndGetsEveryReply) {
    EchoWindow window;
    window.resize(400, 300);
    ASSERT_TRUE(window.init(pageUrl(QString()), QStringLiteral("test")));
    window.show();
    ASSERT_TRUE(minihost::waitForPageAttribute(&window, "data-rendered", "bridge", kTimeout));

    const QVariantMap early = pageValue(&window, "window.early");
    EXPECT_EQ(early.value("zxHost").toString(), "object");
    EXPECT_EQ(early.value("call").toString(), "function");
    EXPECT_EQ(early.value("QWebChannel").toString(), "undefined");

    const QVariantMap results = pageValue(&window, "window.results");
    EXPECT_EQ(results.value("echo").toString(),
              QString::fromUtf8(R"({"a":1,"list":[1,2.5],"s":"都得"})"));
    EXPECT_TRUE(results.contains("silent"));
    EXPECT_TRUE(results.value("silent").isNull());
    EXPECT_EQ(results.value("noArgs").toInt(), 7);
    EXPECT_EQ(results.value("unknown").toString(), "nosuch: no such method");
    EXPECT_EQ(window.api->calls, (QStringList{"echo", "silent", "hidden"}));
    EXPECT_EQ(window.api->browserUrls, QStringList{"https://help.example.invalid/x?from=home"});
}

TEST_F(Page, WindowCloseFromThePageClosesTheWindow) {
    EchoWindow window;
    ASSERT_TRUE(window.init(pageUrl("#close"), QStringLiteral("test")));
    window.show();
    for (int waited = 0; window.isVisible() && waited < kTimeout; waited += 50) QTest::qWait(50);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(Page, TheReplyArrivesBeforeTheBridgeClosesTheWindow) {
    EchoWindow window;
    ASSERT_TRUE(window.init(pageUrl("#closeMe"), QStringLiteral("test")));
    window.show();
    ASSERT_TRUE(minihost::waitForPageAttribute(&window, "data-rendered", "bridge", kTimeout));
    EXPECT_FALSE(window.isVisible());
    bool ok = false;
    EXPECT_EQ(minihost::runPageScript(&window, "document.title", kTimeout, &ok).toString(),
              "reply: closing");
}

TEST_F(Page, ALocalOnlyWindowStaysOnLocalContent) {
    EchoWindow window;
    window.setLocalContentOnly(true);
    ASSERT_TRUE(window.init(pageUrl("#remote"), QStringLiteral("test")));
    window.show();
    ASSERT_TRUE(minihost::waitForPageAttribute(&window, "data-rendered", "bridge", kTimeout));
    EXPECT_TRUE(minihost::webPageUrl(&window).toString().endsWith("bridge.html#remote"));
}

TEST_F(Page, ABridgeThatRefusesNavigationKeepsThePageAtHome) {
    EchoWindow window;
    window.navigationAllowed = false;
    ASSERT_TRUE(window.init(pageUrl("#elsewhere"), QStringLiteral("test")));
    window.show();
    ASSERT_TRUE(minihost::waitForPageAttribute(&window, "data-rendered", "bridge", kTimeout));
    EXPECT_TRUE(minihost::webPageUrl(&window).toString().endsWith("bridge.html#elsewhere"));
}

TEST_F(Page, OtherwiseThePageMayNavigate) {
    EchoWindow window;
    ASSERT_TRUE(window.init(pageUrl("#elsewhere"), QStringLiteral("test")));
    window.show();
    EXPECT_TRUE(minihost::waitForPageAttribute(&window, "data-rendered", "other", kTimeout));
}

TEST_F(Page, DragsByTheTitleBarOverTheRenderedPage) {
    EchoWindow window;
    window.resize(400, 300);
    window.setTitleBarRect(QRect(0, 0, 400, 40));
    ASSERT_TRUE(window.init(pageUrl(QString()), QStringLiteral("test")));
    window.move(100, 100);
    window.show();
    ASSERT_TRUE(minihost::waitForPageAttribute(&window, "data-rendered", "bridge", kTimeout));
    // The mouse reaches the widget the engine renders the page in, made after the page loaded.
    QWidget* page = minihost::webWidgetView(&window)->focusProxy();
    ASSERT_NE(page, nullptr);
    const QPoint from(200, 20);
    const QPoint globalFrom = page->mapToGlobal(from);
    QMouseEvent press(QEvent::MouseButtonPress, from, globalFrom, Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(page, &press);
    QMouseEvent move(QEvent::MouseMove, from + QPoint(30, 10), globalFrom + QPoint(30, 10),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(page, &move);
    QMouseEvent release(QEvent::MouseButtonRelease, from, globalFrom + QPoint(30, 10),
                        Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QApplication::sendEvent(page, &release);
    EXPECT_EQ(window.pos(), QPoint(130, 110));
}

}  // namespace
