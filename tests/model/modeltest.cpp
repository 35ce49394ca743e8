// SPDX-License-Identifier: MIT
// The model's creation, its meta-object and the dialog's close notification.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QMetaMethod>
#include <QPointer>

#include "dialog/phoneticsymbolwebwindow.h"
#include "model/phoneticsymbolmodel.h"

namespace {

void flushDeferredDeletes() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

}  // namespace

TEST(Model, FreshModelHoldsItsInitialValues) {
    const ZPhoneticSymbolModel* model = ZPhoneticSymbolModel::instance();
    EXPECT_EQ(model->styleType, -1);
    EXPECT_EQ(model->bracketType, -1);
    EXPECT_EQ(model->style.color, QColor(0, 0, 0));
    EXPECT_EQ(model->style.color.alpha(), 255);
    EXPECT_EQ(model->style.fontSize, 0);
    EXPECT_TRUE(model->style.fontName.isEmpty());
    EXPECT_TRUE(model->style.text.isEmpty());
    EXPECT_FALSE(model->style.bold);
    EXPECT_FALSE(model->style.applyColor);
    EXPECT_TRUE(model->readings.isEmpty());
    EXPECT_TRUE(model->candidates.isEmpty());
    EXPECT_EQ(model->coreApp, nullptr);
    EXPECT_EQ(model->mainWindow, nullptr);
    EXPECT_EQ(model->dialog, nullptr);
    EXPECT_EQ(model->tagger, nullptr);
    EXPECT_EQ(model->parent(), nullptr);
}

TEST(Model, InstanceIsTheSameObjectEveryTime) {
    EXPECT_EQ(ZPhoneticSymbolModel::instance(), ZPhoneticSymbolModel::instance());
}

TEST(Model, MetaObjectHasExactlyTheCloseSlot) {
    const QMetaObject* meta = ZPhoneticSymbolModel::instance()->metaObject();
    EXPECT_STREQ(meta->className(), "ZPhoneticSymbolModel");
    ASSERT_EQ(meta->methodCount() - meta->methodOffset(), 1);
    const QMetaMethod slot = meta->method(meta->methodOffset());
    EXPECT_EQ(slot.methodSignature(), QByteArray("onWindowClose()"));
    EXPECT_EQ(slot.methodType(), QMetaMethod::Slot);
    EXPECT_EQ(slot.parameterCount(), 0);
    EXPECT_EQ(meta->propertyCount(), meta->propertyOffset());
}

TEST(Model, WindowCloseWithoutADialogChangesNothing) {
    ZPhoneticSymbolModel* model = ZPhoneticSymbolModel::instance();
    model->style.text = QStringLiteral("中国");
    model->readings = QStringList{QStringLiteral("zhōng"), QStringLiteral("ɡuó")};
    ASSERT_TRUE(QMetaObject::invokeMethod(model, "onWindowClose"));
    EXPECT_EQ(model->dialog, nullptr);
    EXPECT_EQ(model->style.text, QStringLiteral("中国"));
    EXPECT_EQ(model->readings.size(), 2);
    model->style = TextStyle();
    model->readings.clear();
}

TEST(Model, WindowCloseDeletesTheWindowLaterAndKeepsTheOperationState) {
    ZPhoneticSymbolModel* model = ZPhoneticSymbolModel::instance();
    // The dialog as the dialog opener makes it, connected by name; never shown (no page loads).
    auto* window = new ZPhoneticSymbolWebWindow(nullptr);
    QPointer<ZPhoneticSymbolWebWindow> watch(window);
    model->dialog = window;
    ASSERT_TRUE(QObject::connect(window, SIGNAL(signalClose()), model, SLOT(onWindowClose())));
    model->readings = QStringList{QStringLiteral("hǎo")};
    model->candidates.insert(QChar(0x597D), {QStringLiteral("hǎo"), QStringLiteral("hào")});

    window->close();
    EXPECT_EQ(model->dialog, nullptr);
    EXPECT_FALSE(watch.isNull());  // deleted later, not at once
    flushDeferredDeletes();
    EXPECT_TRUE(watch.isNull());
    EXPECT_EQ(model->readings, QStringList{QStringLiteral("hǎo")});
    EXPECT_EQ(model->candidates.size(), 1);
    model->readings.clear();
    model->candidates.clear();
}

TEST(Model, ValueRecordsStartEmpty) {
    const TextStyle style;
    EXPECT_EQ(style.color, QColor(0, 0, 0, 255));
    const PhoneticItem item;
    EXPECT_TRUE(item.pinyin.isEmpty());
    EXPECT_TRUE(item.text.isEmpty());
    EXPECT_EQ(item.index, -1);
}

