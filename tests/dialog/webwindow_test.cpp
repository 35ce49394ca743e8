// SPDX-License-Identifier: MIT
// The dialog window: its meta object, its setup at scale 1 and above, and its close.
#include <QMetaMethod>
#include <QSignalSpy>
#include <QCloseEvent>
#include <gtest/gtest.h>

#include "dialog/phoneticsymboljsapi.h"
#include "dialog/phoneticsymbolwebwindow.h"
#include "minihost/nvo/hostconfig.h"
#include "minihost/nvolite/webhost.h"

namespace {

class WebWindow : public testing::Test {
protected:
    void SetUp() override {
        minihost::setWebRendering(false);
        minihost::setScaleFactor(1.0);
    }
    void TearDown() override {
        minihost::setWebRendering(true);
        minihost::setScaleFactor(1.0);
    }
};

TEST_F(WebWindow, MetaObjectHasOneSignalAndTheDraggableWidgetAsSuperclass) {
    const QMetaObject& meta = ZPhoneticSymbolWebWindow::staticMetaObject;
    EXPECT_STREQ(meta.className(), "ZPhoneticSymbolWebWindow");
    EXPECT_EQ(meta.superClass(), &nvolite::ZxCommonWebDragableWidget::staticMetaObject);
    ASSERT_EQ(meta.methodCount() - meta.methodOffset(), 1);
    const QMetaMethod signal = meta.method(meta.methodOffset());
    EXPECT_EQ(signal.methodSignature(), "signalClose()");
    EXPECT_EQ(signal.methodType(), QMetaMethod::Signal);
    EXPECT_EQ(meta.propertyCount() - meta.propertyOffset(), 0);
    ZPhoneticSymbolWebWindow window(nullptr);
    EXPECT_EQ(window.qt_metacast("ZPhoneticSymbolWebWindow"), &window);
    EXPECT_NE(window.qt_metacast("nvolite::ZxCommonWebDragableWidget"), nullptr);
}

TEST_F(WebWindow, AtScaleOneIs627By669WithADragAreaOf626By40) {
    ZPhoneticSymbolWebWindow window(nullptr);
    EXPECT_EQ(window.size(), QSize(627, 669));
    EXPECT_EQ(window.minimumSize(), QSize(627, 669));
    EXPECT_EQ(window.maximumSize(), QSize(627, 669));
    EXPECT_EQ(window.titleBarRect(), QRect(0, 0, 626, 40));
}

TEST_F(WebWindow, SizesAreScaledAndTruncated) {
    minihost::setScaleFactor(1.5);
    ZPhoneticSymbolWebWindow window(nullptr);
    EXPECT_EQ(window.size(), QSize(940, 1003));  // 940.5 and 1003.5
    EXPECT_EQ(window.titleBarRect(), QRect(0, 0, 939, 60));
}

TEST_F(WebWindow, SetupTitleFlagsModalityOptionsAndName) {
    ZPhoneticSymbolWebWindow window(nullptr);
    EXPECT_EQ(window.windowTitle(), "PhoneticSymbol");
    EXPECT_EQ(int(window.windowFlags()), 0x803);
    EXPECT_EQ(window.windowModality(), Qt::WindowModal);
    EXPECT_TRUE(window.centerOnParent());
    EXPECT_TRUE(window.localContentOnly());
    EXPECT_EQ(window.objectName(), "ZPhoneticSymbolWebWindow");
    EXPECT_EQ(window.createUrlRequestInterceptor(), nullptr);
}

TEST_F(WebWindow, ItsBridgeIsThePhoneticOne) {
    ZPhoneticSymbolWebWindow window(nullptr);
    std::unique_ptr<nvolite::ZxCommonJsApi> api(window.createJsApi());
    ASSERT_NE(qobject_cast<ZPhoneticSymbolJsApi*>(api.get()), nullptr);
    EXPECT_EQ(api->container(), window.webViewContainer());
}

TEST_F(WebWindow, ClosingEmitsSignalClose) {
    ZPhoneticSymbolWebWindow window(nullptr);
    window.show();
    QSignalSpy spy(&window, SIGNAL(signalClose()));
    EXPECT_TRUE(window.close());
    EXPECT_EQ(spy.count(), 1);
    EXPECT_FALSE(window.isVisible());
}

}  // namespace
