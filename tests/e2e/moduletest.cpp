// SPDX-License-Identifier: MIT
// The built module loaded as a host loads it (dlopen, GetAppEntryObject, trigger by name), and
// the entry object's life cycle through it. This program links only the host's library.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <memory>

#include "hostjournal.h"
#include "minihost/nvo/addonmodule.h"
#include "minihost/nvo/hostconfig.h"
#include "minihost/nvo/hostcontrol.h"
#include "minihost/nvo/hoststore.h"
#include "ribbonfixture.h"

namespace {

class Module : public RibbonFixture {
protected:
    void SetUp() override {
        ASSERT_TRUE(module.load(minihost::addonModulePath(QStringLiteral("zphoneticsymbol"))))
            << module.errorString().toStdString();
        showTab(QStringLiteral("CT_TextTool"));
        minihost::clearUsageEvents();
        minihost::clearMessagesShown();
    }
    static QList<UsageEvent> events() { return minihost::usageEvents(); }
    std::unique_ptr<QObject> entryObject() {
        return std::unique_ptr<QObject>(module.createEntryObject());
    }

    minihost::AddonModule module;
};

}  // namespace

TEST_F(Module, EntryObjectLifeCycle) {
    minihost::setHostSetting(QStringLiteral("ui/language"), QStringLiteral("zh_CN"));
    minihost::clearHostJournal();

    auto entry = entryObject();
    ASSERT_NE(entry, nullptr);
    EXPECT_STREQ(entry->metaObject()->className(), "ZxPhoneticSymbolObject");
    EXPECT_EQ(hostjournal::translationInstalls(), 1);
    EXPECT_EQ(hostjournal::libraryLoads(), 1);  // the tagging library

    auto second = entryObject();
    EXPECT_EQ(hostjournal::translationInstalls(), 1);
    EXPECT_EQ(hostjournal::libraryLoads(), 1);
    second.reset();  // releases the add-on for every entry object

    auto third = entryObject();
    EXPECT_EQ(hostjournal::translationInstalls(), 2);

    // "PhoneticOneKey" with nothing selected: the event, then the translated warning.
    ASSERT_TRUE(minihost::triggerCommand(third.get(), QStringLiteral("PhoneticOneKey")));
    ASSERT_EQ(events().size(), 1);
    EXPECT_EQ(events().first().name, QStringLiteral("nvo_phoneticsymbol_texttool"));
    EXPECT_EQ(events().first().parameters.value(QStringLiteral("action")),
              QStringLiteral("onekey"));
    const QList<RecordedMessage> messages = minihost::messagesShown();
    ASSERT_EQ(messages.size(), 1);
    EXPECT_EQ(messages.first().text, QStringLiteral("请至少选择一个字符"));
    EXPECT_EQ(messages.first().flags, 0x30u);

    // Unknown actions and another case do nothing.
    ASSERT_TRUE(minihost::triggerCommand(third.get(), QStringLiteral("phoneticonekey")));
    ASSERT_TRUE(minihost::triggerCommand(third.get(), QStringLiteral("Other")));
    EXPECT_EQ(events().size(), 1);

    minihost::clearHostJournal();
    third.reset();
    entry.reset();
    EXPECT_EQ(hostjournal::translationUninstalls(), 1);
    EXPECT_EQ(minihost::installedTranslations(QCoreApplication::applicationDirPath() +
                                              QStringLiteral("/addons/zphoneticsymbol/mui/")),
              0);
    minihost::setHostSetting(QStringLiteral("ui/language"), {});
}

TEST(ModuleLoading, MissingOrForeignFilesAreReportedWithTheirPath) {
    minihost::AddonModule module;
    EXPECT_FALSE(module.load(QStringLiteral("/nonexistent/libzphoneticsymbol.so")));
    EXPECT_EQ(module.errorString(),
              QStringLiteral("/nonexistent/libzphoneticsymbol.so: no such file"));
    EXPECT_EQ(module.createEntryObject(), nullptr);

    QTemporaryDir dir;
    const QString text = dir.filePath(QStringLiteral("libtext.so"));
    QFile file(text);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("not a library\n");
    file.close();
    EXPECT_FALSE(module.load(text));
    EXPECT_TRUE(module.errorString().startsWith(text + QStringLiteral(": ")))
        << module.errorString().toStdString();
    EXPECT_FALSE(module.isLoaded());
}

TEST(ModuleLoading, AModuleWithoutTheEntryFunctionIsRefused) {
    minihost::AddonModule module;
    // The host's own library is a loadable module that exports no GetAppEntryObject.
    const QString nvo = QStringLiteral(NVO_LIBRARY);
    EXPECT_FALSE(module.load(nvo));
    EXPECT_EQ(module.errorString(), nvo + QStringLiteral(": does not export GetAppEntryObject"));
}
