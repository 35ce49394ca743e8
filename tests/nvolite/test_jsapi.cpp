// SPDX-License-Identifier: MIT
// The bridge without a rendered page: what a host driving a dialog from native code sees, which
// is exactly what the page's adapter receives.
#include <gtest/gtest.h>
#include <QApplication>
#include <QSignalSpy>

#include "echoapi.h"
#include "minihost/nvolite/webhost.h"

namespace {

class Bridge : public testing::Test {
protected:
    void SetUp() override { minihost::setWebRendering(false); }
    void TearDown() override { minihost::setWebRendering(true); }
};

QVariantMap ok(const QVariant& result) {
    return QVariantMap{{QStringLiteral("ok"), true}, {QStringLiteral("result"), result}};
}

TEST_F(Bridge, ParsesArgumentsWithWholeNumbersAsInt) {
    EchoApi api(nullptr);
    ZxWebViewJSContext context(
        QStringLiteral("echo"),
        QStringLiteral(R"({"width":600,"height":0,"ratio":1.5,"big":5000000000,)"
                       R"("styleType":"2","list":[1,"a",null],"nested":{"x":true}})"));
    const QMap<QString, QVariant> args = api.parseContextArgs(context);
    EXPECT_EQ(args.value("width").userType(), QMetaType::Int);
    EXPECT_EQ(args.value("width").toInt(), 600);
    EXPECT_EQ(args.value("height").userType(), QMetaType::Int);
    EXPECT_EQ(args.value("ratio").userType(), QMetaType::Double);
    EXPECT_EQ(args.value("big").toLongLong(), 5000000000LL);
    EXPECT_EQ(args.value("styleType").toInt(), 2);
    const QVariantList list = args.value("list").toList();
    ASSERT_EQ(list.size(), 3);
    EXPECT_EQ(list[0].userType(), QMetaType::Int);
    EXPECT_EQ(list[1].toString(), "a");
    EXPECT_TRUE(list[2].isNull());
    EXPECT_TRUE(args.value("nested").toMap().value("x").toBool());
}

TEST_F(Bridge, ArgumentsThatAreNoObjectGiveAnEmptyMap) {
    EchoApi api(nullptr);
    for (const char* text : {"[1,2]", "42", "\"text\"", "", "{broken"}) {
        ZxWebViewJSContext context(QStringLiteral("echo"), QString::fromUtf8(text));
        EXPECT_TRUE(api.parseContextArgs(context).isEmpty()) << text;
    }
}

TEST_F(Bridge, ContextKeepsItsResult) {
    EchoApi api(nullptr);
    ZxWebViewJSContext context(QStringLiteral("m"), QStringLiteral("{}"));
    EXPECT_FALSE(context.hasResult());
    api.setResult(context, QStringLiteral("{\"a\":1}"));
    EXPECT_TRUE(context.hasResult());
    EXPECT_EQ(context.result().toString(), "{\"a\":1}");
    EXPECT_EQ(context.method(), "m");
    EXPECT_EQ(context.argumentsJson(), "{}");
}

TEST_F(Bridge, CallsTheSlotOfThatNameAndAnswersItsResult) {
    EchoWindow window;
    ASSERT_TRUE(
        window.init(QStringLiteral("file:///nowhere/page.html#/a"), QStringLiteral("test")));
    EXPECT_EQ(minihost::webWidgetView(&window), nullptr);  // nothing rendered
    EXPECT_EQ(minihost::webPageUrl(&window), QUrl());
    EXPECT_EQ(minihost::callBridge(&window, "echo", R"({"a":1})"), ok(QStringLiteral("{\"a\":1}")));
    EXPECT_EQ(minihost::callBridge(&window, "hidden", "{}"), ok(7));
    EXPECT_EQ(window.api->calls, (QStringList{"echo", "hidden"}));
}

TEST_F(Bridge, ASlotWithoutResultAnswersNull) {
    EchoWindow window;
    ASSERT_TRUE(window.init(QStringLiteral("file:///nowhere/page.html"), QStringLiteral("test")));
    const QVariantMap reply = minihost::callBridge(&window, "silent", "{}");
    EXPECT_TRUE(reply.value("ok").toBool());
    EXPECT_TRUE(reply.contains("result"));
    EXPECT_FALSE(reply.value("result").isValid());
}

TEST_F(Bridge, UnknownNamesAndSlotsWithoutContextAnswerAnError) {
    EchoWindow window;
    ASSERT_TRUE(window.init(QStringLiteral("file:///nowhere/page.html"), QStringLiteral("test")));
    for (const char* name : {"nosuch", "plain", "deleteLater", "recordBrowser", ""}) {
        const QVariantMap reply = minihost::callBridge(&window, name, "{}");
        EXPECT_FALSE(reply.value("ok").toBool()) << name;
        EXPECT_EQ(reply.value("error").toString(), QString::fromUtf8(name) + ": no such method");
    }
    EXPECT_TRUE(window.api->calls.isEmpty());
}

TEST_F(Bridge, OpenBrowserRaisesTheSignal) {
    EchoWindow window;
    ASSERT_TRUE(window.init(QStringLiteral("file:///nowhere/page.html"), QStringLiteral("test")));
    QSignalSpy spy(window.api, SIGNAL(openPromeBrowser(QString)));
    EXPECT_TRUE(minihost::callBridge(&window, "openPromeBrowser",
                                     R"({"url":"https://help.example.invalid/a?x=1"})")
                    .value("ok")
                    .toBool());
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy[0][0].toString(), "https://help.example.invalid/a?x=1");
}

TEST_F(Bridge, OpenBrowserIsForWebAddressesOnly) {
    EchoWindow window;
    ASSERT_TRUE(window.init(QStringLiteral("file:///nowhere/page.html"), QStringLiteral("test")));
    QSignalSpy spy(window.api, SIGNAL(openPromeBrowser(QString)));
    for (const char* url : {"file:///etc/passwd", "javascript:alert(1)", "mailto:a@example.invalid",
                            "smb://server/share", "https:no-host", "help.example.invalid/x"}) {
        const QVariantMap reply = minihost::callBridge(&window, "openPromeBrowser",
                                                       QStringLiteral(R"({"url":"%1"})").arg(url));
        EXPECT_EQ(reply, (QVariantMap{{"ok", false},
                                      {"error", QStringLiteral("openPromeBrowser: not a web "
                                                               "address: %1")
                                                    .arg(url)}}));
    }
    EXPECT_EQ(spy.count(), 0);
    // http and https of a host go through, and so does an empty address: the bridge decides.
    for (const char* url : {"http://example.invalid/", "HTTPS://Example.invalid/a?b=c", ""})
        EXPECT_TRUE(minihost::callBridge(&window, "openPromeBrowser",
                                         QStringLiteral(R"({"url":"%1"})").arg(url))
                        .value("ok")
                        .toBool())
            << url;
    EXPECT_EQ(spy.count(), 3);
}

TEST_F(Bridge, RemotePagesAreRefusedWhenTheBridgeSaysSo) {
    EchoWindow window;
    window.remoteAllowed = false;
    ASSERT_TRUE(window.init(QStringLiteral("https://remote.example.invalid/page.html"),
                            QStringLiteral("test")));
    const QVariantMap reply = minihost::callBridge(&window, "echo", "{}");
    EXPECT_FALSE(reply.value("ok").toBool());
    EXPECT_EQ(reply.value("error").toString(), "echo: this bridge does not answer remote pages");
    EXPECT_TRUE(window.api->calls.isEmpty());

    EchoWindow local;
    local.remoteAllowed = false;
    ASSERT_TRUE(local.init(QStringLiteral("file:////nowhere/page.html#/a?from=home"),
                           QStringLiteral("test")));
    EXPECT_TRUE(minihost::callBridge(&local, "echo", "{}").value("ok").toBool());
}

TEST_F(Bridge, CloseWindowIsQueuedSoTheReplyStillArrives) {
    EchoWindow window;
    ASSERT_TRUE(window.init(QStringLiteral("file:///nowhere/page.html"), QStringLiteral("test")));
    window.show();
    EXPECT_EQ(minihost::callBridge(&window, "closeMe", "{}"), ok(QStringLiteral("closing")));
    EXPECT_TRUE(window.isVisible());
    QCoreApplication::processEvents();
    EXPECT_FALSE(window.isVisible());
}

TEST_F(Bridge, InitTwiceOrRefusedByTheBridgeFails) {
    EchoWindow window;
    EXPECT_TRUE(window.init(QStringLiteral("file:///nowhere/a.html"), QStringLiteral("test")));
    EXPECT_FALSE(window.init(QStringLiteral("file:///nowhere/b.html"), QStringLiteral("test")));
    EXPECT_EQ(minihost::webWidgetUrl(&window), "file:///nowhere/a.html");

    EchoWindow refused;
    refused.refuseInit = true;
    EXPECT_FALSE(refused.init(QStringLiteral("file:///nowhere/a.html"), QStringLiteral("test")));
    EXPECT_FALSE(minihost::webWidgets().contains(&refused));
    EXPECT_FALSE(minihost::callBridge(&refused, "echo", "{}").value("ok").toBool());
}

TEST_F(Bridge, TheHostListsLiveInitialisedWidgets) {
    const int before = minihost::webWidgets().size();
    {
        EchoWindow window;
        EXPECT_EQ(minihost::webWidgets().size(), before);
        ASSERT_TRUE(window.init(QStringLiteral("file:///nowhere/a.html"), QStringLiteral("test")));
        EXPECT_EQ(minihost::webWidgets().size(), before + 1);
        EXPECT_EQ(minihost::webWidgets().constLast(), &window);
    }
    EXPECT_EQ(minihost::webWidgets().size(), before);
}

TEST_F(Bridge, TheDefaultBridgeHasNoMethods) {
    nvolite::ZxCommonWebWidget widget;
    ASSERT_TRUE(
        widget.init(QStringLiteral("file:///nowhere/a.html"), QStringLiteral("test"), false));
    EXPECT_EQ(minihost::callBridge(&widget, "init", "{}").value("error").toString(),
              "init: no such method");
}

}  // namespace
