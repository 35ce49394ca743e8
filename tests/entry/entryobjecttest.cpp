// SPDX-License-Identifier: MIT
// The entry object: its meta-object, the once-per-process initialisation of the model, the
// release when an entry object goes, and the dispatch of commands by their action.
#include <gtest/gtest.h>

#include <QMetaMethod>
#include <QTemporaryDir>
#include <memory>

#include "dialog/phoneticsymbolwebwindow.h"
#include "engine/taggerbinding.h"
#include "entry/appentry.h"
#include "entry/phoneticsymbolobject.h"
#include "hostjournal.h"
#include "minihost/nvo/addonmodule.h"
#include "minihost/nvo/hostconfig.h"
#include "minihost/nvo/hostcontrol.h"
#include "minihost/nvolite/webhost.h"
#include "model/phoneticsymbolmodel.h"
#include "ribbonfixture.h"

namespace {

// Every test starts with an uninitialised model, a Home tab current, and tagging-library
// directories that hold nothing (the load fails quietly, as on a machine without the library).
class EntryObject : public RibbonFixture {
protected:
    void SetUp() override {
        ASSERT_TRUE(emptyDirectory.isValid());
        minihost::setDirectory(ZDirTaggingLibrary, emptyDirectory.path());
        minihost::setDirectory(ZDirDictionaries, emptyDirectory.path());
        showTab(QStringLiteral("CT_Home"));
        minihost::clearUsageEvents();
        minihost::clearMessagesShown();
    }
    void TearDown() override {
        model()->releaseModel();
        minihost::resetDirectories();
        RibbonFixture::TearDown();
    }
    static ZPhoneticSymbolModel* model() { return ZPhoneticSymbolModel::instance(); }
    static QList<UsageEvent> events() { return minihost::usageEvents(); }
    static std::unique_ptr<QObject> newEntryObject() {
        return std::unique_ptr<QObject>(GetAppEntryObject());
    }

    QTemporaryDir emptyDirectory;
};

}  // namespace

TEST_F(EntryObject, MetaObjectHasOnlyTheInvokableTrigger) {
    ZxPhoneticSymbolObject object;
    const QMetaObject* meta = object.metaObject();
    EXPECT_STREQ(meta->className(), "ZxPhoneticSymbolObject");
    ASSERT_EQ(meta->methodCount() - meta->methodOffset(), 1);
    const QMetaMethod trigger = meta->method(meta->methodOffset());
    EXPECT_EQ(trigger.methodSignature(), QByteArray("trigger(ZAppObj*,ZAppContext*)"));
    EXPECT_EQ(trigger.methodType(), QMetaMethod::Method);
    EXPECT_EQ(trigger.access(), QMetaMethod::Public);
    EXPECT_EQ(trigger.returnType(), int(QMetaType::Void));
    EXPECT_EQ(trigger.parameterNames(), (QList<QByteArray>{"obj", "context"}));
    EXPECT_EQ(meta->propertyCount(), meta->propertyOffset());
    EXPECT_EQ(object.qt_metacast("ZxPhoneticSymbolObject"), &object);
    EXPECT_EQ(object.qt_metacast("QObject"), &object);
    EXPECT_EQ(object.qt_metacast("ZPhoneticSymbolModel"), nullptr);
}

TEST_F(EntryObject, ArgumentMetaTypesAreNotRegistered) {
    ZxPhoneticSymbolObject object;
    const int method = object.metaObject()->methodOffset();
    for (int argument = 0; argument < 2; ++argument) {
        int result = 0;
        int index = argument;
        void* arguments[] = {&result, &index};
        object.qt_metacall(QMetaObject::RegisterMethodArgumentMetaType, method, arguments);
        EXPECT_EQ(result, -1) << "argument " << argument;
    }
}

TEST_F(EntryObject, FirstEntryObjectInitialisesTheModel) {
    minihost::clearHostJournal();
    auto entry = newEntryObject();
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->parent(), nullptr);
    EXPECT_STREQ(entry->metaObject()->className(), "ZxPhoneticSymbolObject");
    EXPECT_EQ(model()->coreApp, app()->coreApplication());
    EXPECT_EQ(model()->mainWindow, window.get());
    ASSERT_NE(model()->tagger, nullptr);
    EXPECT_EQ(model()->tagger->library, nullptr);  // the load failed, quietly
    EXPECT_EQ(hostjournal::translationInstalls(), 1);
    EXPECT_EQ(hostjournal::libraryLoads(), 1);
}

TEST_F(EntryObject, SecondEntryObjectLoadsNothingAndInstallsNoTranslationAgain) {
    auto first = newEntryObject();
    PinyinTaggerHandle* tagger = model()->tagger;
    minihost::clearHostJournal();

    auto second = newEntryObject();
    ASSERT_NE(second, nullptr);
    EXPECT_NE(second.get(), first.get());
    EXPECT_EQ(model()->tagger, tagger);
    EXPECT_EQ(hostjournal::translationInstalls(), 0);
    EXPECT_EQ(hostjournal::libraryLoads(), 0);
}

TEST_F(EntryObject, DestroyingTheEntryObjectReleasesAndKeepsTheLastChoices) {
    auto entry = newEntryObject();
    model()->readings = QStringList{QStringLiteral("zhōnɡ")};
    model()->candidates.insert(QChar(0x4E2D), {QStringLiteral("zhōnɡ"), QStringLiteral("zhònɡ")});
    model()->styleType = 3;
    model()->bracketType = 5;
    model()->style.fontSize = 28;
    minihost::clearHostJournal();

    entry.reset();
    EXPECT_EQ(model()->coreApp, nullptr);
    EXPECT_EQ(model()->tagger, nullptr);
    EXPECT_TRUE(model()->readings.isEmpty());
    EXPECT_TRUE(model()->candidates.isEmpty());
    EXPECT_EQ(model()->styleType, 3);
    EXPECT_EQ(model()->bracketType, 5);
    EXPECT_EQ(model()->style.fontSize, 28);
    EXPECT_EQ(model()->mainWindow, window.get());
    EXPECT_EQ(hostjournal::translationUninstalls(), 1);
    model()->styleType = model()->bracketType = -1;
    model()->style = TextStyle();
}

TEST_F(EntryObject, AfterTheEntryObjectIsDestroyedANewOneInitialisesAgain) {
    newEntryObject().reset();
    minihost::clearHostJournal();
    auto again = newEntryObject();
    EXPECT_EQ(model()->coreApp, app()->coreApplication());
    EXPECT_NE(model()->tagger, nullptr);
    EXPECT_EQ(hostjournal::translationInstalls(), 1);
    EXPECT_EQ(hostjournal::libraryLoads(), 1);
}

TEST_F(EntryObject, DestroyingOneOfSeveralEntryObjectsReleasesForAll) {
    auto first = newEntryObject();
    auto second = newEntryObject();
    first.reset();
    EXPECT_EQ(model()->coreApp, nullptr);
    minihost::clearHostJournal();
    second.reset();  // nothing left to release
    EXPECT_EQ(hostjournal::translationUninstalls(), 0);
}

TEST_F(EntryObject, DestroyingWhenNeverInitialisedOnlyDestroysTheObject) {
    minihost::clearHostJournal();
    auto object = std::make_unique<ZxPhoneticSymbolObject>();
    object.reset();
    EXPECT_EQ(model()->coreApp, nullptr);
    EXPECT_EQ(hostjournal::translationUninstalls(), 0);
}

TEST_F(EntryObject, InitModelAndReleaseModelRunOnlyInTheirState) {
    minihost::clearHostJournal();
    model()->initModel(window.get());
    EXPECT_EQ(model()->coreApp, app()->coreApplication());
    EXPECT_EQ(model()->mainWindow, window.get());
    PinyinTaggerHandle* tagger = model()->tagger;
    model()->initModel(nullptr);  // already initialised: nothing changes
    EXPECT_EQ(model()->tagger, tagger);
    EXPECT_EQ(model()->mainWindow, window.get());
    EXPECT_EQ(hostjournal::translationInstalls(), 1);
    model()->releaseModel();
    minihost::clearHostJournal();
    model()->releaseModel();  // already released: nothing happens
    EXPECT_EQ(hostjournal::translationUninstalls(), 0);
}

TEST_F(EntryObject, ContextWithoutActionOrWithAnotherCaseDoesNothing) {
    auto entry = newEntryObject();
    ZAppContext empty;
    ZAppContext* context = &empty;
    ZAppObj* source = nullptr;
    ASSERT_TRUE(QMetaObject::invokeMethod(entry.get(), "trigger", Qt::DirectConnection,
                                          QGenericArgument("ZAppObj*", &source),
                                          QGenericArgument("ZAppContext*", &context)));
    EXPECT_TRUE(minihost::triggerCommand(entry.get(), QStringLiteral("phoneticsymbol")));
    EXPECT_TRUE(minihost::triggerCommand(entry.get(), QStringLiteral("PHONETICONEKEY")));
    EXPECT_TRUE(minihost::triggerCommand(entry.get(), QString()));
    ZAppContext number({{QStringLiteral("action"), 1}});
    dispatchCommand(nullptr, &number);
    dispatchCommand(nullptr, nullptr);
    EXPECT_TRUE(events().isEmpty());
    EXPECT_TRUE(minihost::messagesShown().isEmpty());
    EXPECT_EQ(model()->dialog, nullptr);
}

TEST_F(EntryObject, OneKeyIsDispatchedToTheOneKeyCommand) {
    auto entry = newEntryObject();
    ASSERT_TRUE(minihost::triggerCommand(entry.get(), QStringLiteral("PhoneticOneKey")));
    ASSERT_EQ(events().size(), 1);
    EXPECT_EQ(events().first().name, QStringLiteral("nvo_phoneticsymbol_home"));
    EXPECT_EQ(events().first().parameters.value(QStringLiteral("action")),
              QStringLiteral("onekey"));
    // No presentation, so no text: the command warns.
    ASSERT_EQ(minihost::messagesShown().size(), 1);
    EXPECT_EQ(minihost::messagesShown().first().flags, 0x30u);
}

TEST_F(EntryObject, CommandFromAnotherTabPostsNoEventButWorks) {
    showTab(QStringLiteral("CT_Insert"));
    auto entry = newEntryObject();
    ASSERT_TRUE(minihost::triggerCommand(entry.get(), QStringLiteral("PhoneticOneKey")));
    EXPECT_TRUE(events().isEmpty());
    ASSERT_EQ(minihost::messagesShown().size(), 1);
    EXPECT_EQ(minihost::messagesShown().first().text,
              QStringLiteral("please select one character at least"));
}

TEST_F(EntryObject, PhoneticSymbolIsDispatchedToTheDialogAndPostsEvenWithoutASelection) {
    minihost::setWebRendering(false);  // the dialog's window, without a web engine page
    auto entry = newEntryObject();
    ASSERT_TRUE(minihost::triggerCommand(entry.get(), QStringLiteral("PhoneticSymbol")));
    ASSERT_EQ(events().size(), 1);
    EXPECT_EQ(events().first().name, QStringLiteral("nvo_phoneticsymbol_home"));
    EXPECT_EQ(events().first().parameters.value(QStringLiteral("action")),
              QStringLiteral("symbol"));
    // Nothing selected and no tagging library: the guide view opens.
    ASSERT_NE(model()->dialog, nullptr);
    EXPECT_TRUE(
        minihost::webWidgetUrl(model()->dialog).endsWith(QStringLiteral("#/guide?from=home")));

    // While the dialog is open, the command does nothing, not even count itself.
    ZPhoneticSymbolWebWindow* open = model()->dialog;
    ASSERT_TRUE(minihost::triggerCommand(entry.get(), QStringLiteral("PhoneticSymbol")));
    EXPECT_EQ(events().size(), 1);
    EXPECT_EQ(model()->dialog, open);

    open->close();
    EXPECT_EQ(model()->dialog, nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    minihost::setWebRendering(true);
}
