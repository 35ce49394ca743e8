// SPDX-License-Identifier: MIT
// The add-on's directory, file paths, translations, ribbon tab and page URLs, against the real
// host objects.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <map>

#include "entry/addonresources.h"
#include "hostjournal.h"
#include "minihost/nvo/hostcontrol.h"
#include "minihost/nvo/hoststore.h"
#include "ribbonfixture.h"

namespace {

const QString kPinyinPage = QStringLiteral("mui/default/html/pinyin/index.html#/pinyin");
const QString kGuidePage = QStringLiteral("mui/default/html/pinyin/index.html#/guide");

class AddonResources : public RibbonFixture {};

QString muiDirectory() {
    return addonFilePath(QStringLiteral("mui/"));
}

// A list of tab commands without bounds checks, as a host may keep it: it answers for every
// index it holds, also for those outside the count it reports.
struct UncheckedTabList {
    std::map<int, QObject*> children;
    int count = 0;
    int childCount() const { return count; }
    QObject* childAt(int index) const {
        const auto found = children.find(index);
        return found == children.end() ? nullptr : found->second;
    }
};

QString setPhoneticSymbol() {
    return QCoreApplication::translate("ZPhoneticSymbolModel", "set phonetic symbol");
}

}  // namespace

TEST_F(AddonResources, DirectoryIsBesideTheApplication) {
    const QString expected =
        QCoreApplication::applicationDirPath() + QStringLiteral("/addons/zphoneticsymbol");
    EXPECT_EQ(addonDirectory(), expected);
    EXPECT_FALSE(addonDirectory().endsWith(QLatin1Char('/')));
    EXPECT_EQ(addonFilePath(QStringLiteral("mui/")), expected + QStringLiteral("/mui/"));
    EXPECT_EQ(addonFilePath(QStringLiteral("mui/zh_CN/zphoneticsymbol.qm")),
              expected + QStringLiteral("/mui/zh_CN/zphoneticsymbol.qm"));
}

TEST_F(AddonResources, TranslationIsInstalledFromTheMuiDirectoryAndRemovedAgain) {
    minihost::setHostSetting(QStringLiteral("ui/language"), QStringLiteral("zh_CN"));
    ASSERT_TRUE(QFileInfo(addonFilePath(QStringLiteral("mui/zh_CN/zphoneticsymbol.qm"))).isFile());
    installAddonTranslation();
    EXPECT_EQ(minihost::installedTranslations(muiDirectory()), 1);
    EXPECT_EQ(setPhoneticSymbol(), QStringLiteral("标注拼音"));
    EXPECT_EQ(
        QCoreApplication::translate("ZPhoneticSymbolModel", "please select one character at least"),
        QStringLiteral("请至少选择一个字符"));
    EXPECT_EQ(QCoreApplication::translate("ZPhoneticSymbolWebWindow", "PhoneticSymbol"),
              QStringLiteral("拼音标注"));
    uninstallAddonTranslation();
    EXPECT_EQ(minihost::installedTranslations(muiDirectory()), 0);
    EXPECT_EQ(setPhoneticSymbol(), QStringLiteral("set phonetic symbol"));
    minihost::setHostSetting(QStringLiteral("ui/language"), {});
}

TEST_F(AddonResources, AnotherLanguageKeepsTheOriginalTexts) {
    minihost::setHostSetting(QStringLiteral("ui/language"), QStringLiteral("en_GB"));
    installAddonTranslation();
    EXPECT_EQ(minihost::installedTranslations(muiDirectory()), 0);
    EXPECT_EQ(setPhoneticSymbol(), QStringLiteral("set phonetic symbol"));
    uninstallAddonTranslation();
    minihost::setHostSetting(QStringLiteral("ui/language"), {});
}

TEST_F(AddonResources, WithoutATranslatorNothingIsInstalled) {
    minihost::setTranslatorAvailable(false);
    installAddonTranslation();  // must simply do nothing
    uninstallAddonTranslation();
    EXPECT_EQ(app()->coreApplication()->translator(), nullptr);
    minihost::setTranslatorAvailable(true);
}

TEST_F(AddonResources, WithoutAMainWindowTheTabIsOtherAndTheRibbonIsNotAsked) {
    minihost::clearHostJournal();
    EXPECT_EQ(currentRibbonTabId(), QString());
    EXPECT_EQ(currentRibbonTab(), RibbonTab::Other);
    EXPECT_EQ(hostjournal::ribbonQueries(), 0);
}

TEST_F(AddonResources, TabIdComesFromTheCurrentTabCommand) {
    showTab(QStringLiteral("CT_TextTool"));
    EXPECT_EQ(currentRibbonTabId(), QStringLiteral("CT_TextTool"));
    EXPECT_EQ(currentRibbonTab(), RibbonTab::TextTool);
    showTab(QStringLiteral("CT_Home"));
    EXPECT_EQ(currentRibbonTab(), RibbonTab::Home);
    showTab(QStringLiteral("CT_Insert"));
    EXPECT_EQ(currentRibbonTabId(), QStringLiteral("CT_Insert"));
    EXPECT_EQ(currentRibbonTab(), RibbonTab::Other);
}

TEST_F(AddonResources, TabIdsAreComparedCaseSensitively) {
    showRibbon({QStringLiteral("ct_home"), QStringLiteral("CT_TEXTTOOL")}, 0);
    EXPECT_EQ(currentRibbonTab(), RibbonTab::Other);
    minihost::setCurrentTab(window.get(), 1);
    EXPECT_EQ(currentRibbonTab(), RibbonTab::Other);
}

TEST_F(AddonResources, CurrentIndexEqualToTheChildCountGivesTheEmptyId) {
    showRibbon({QStringLiteral("CT_Home"), QStringLiteral("CT_TextTool")}, 2);
    EXPECT_EQ(currentRibbonTabId(), QString());
    EXPECT_EQ(currentRibbonTab(), RibbonTab::Other);
}

// The add-on checks the index itself: a list that answers beyond its count changes nothing.
TEST(RibbonTabCommands, AnIndexOutsideTheCountGivesTheEmptyIdWhatTheListAnswers) {
    QObject beforeFirst, home, textTool, afterLast;
    beforeFirst.setProperty("id", QStringLiteral("CT_Insert"));
    home.setProperty("id", QStringLiteral("CT_Home"));
    textTool.setProperty("id", QStringLiteral("CT_TextTool"));
    afterLast.setProperty("id", QStringLiteral("CT_Home"));
    const UncheckedTabList list{{{-1, &beforeFirst}, {0, &home}, {1, &textTool}, {2, &afterLast}},
                                2};
    EXPECT_EQ(childCommandId(list, 0), QStringLiteral("CT_Home"));
    EXPECT_EQ(childCommandId(list, 1), QStringLiteral("CT_TextTool"));
    EXPECT_EQ(childCommandId(list, 2), QString());
    EXPECT_EQ(childCommandId(list, -1), QString());
}

TEST(RibbonTabCommands, ANullChildGivesTheEmptyId) {
    const UncheckedTabList list{{{0, nullptr}}, 1};
    EXPECT_EQ(childCommandId(list, 0), QString());
}

TEST(RibbonTabCommands, TabsAreNamedForTheOriginAndTheUsageEvents) {
    EXPECT_EQ(ribbonTabName(RibbonTab::Home), QStringLiteral("home"));
    EXPECT_EQ(ribbonTabName(RibbonTab::TextTool), QStringLiteral("texttool"));
    EXPECT_EQ(ribbonTabName(RibbonTab::Other), QString());
}

TEST_F(AddonResources, NegativeIndexGivesTheEmptyId) {
    showRibbon({QStringLiteral("CT_Home")}, -1);
    EXPECT_EQ(currentRibbonTabId(), QString());
}

TEST_F(AddonResources, MissingRibbonPartsGiveTheEmptyId) {
    window = std::make_unique<ZMainWindow>();
    minihost::setCurrentMainWindow(window.get());
    EXPECT_EQ(currentRibbonTabId(), QString());  // no header bar

    auto* header = new ZRbTabWidget(window.get());
    minihost::setRibbonParts(window.get(), header, nullptr, nullptr);
    EXPECT_EQ(currentRibbonTabId(), QString());  // no sub-tab bar

    auto* bar = new ZRbSubTabBar(header);
    minihost::setRibbonParts(window.get(), header, bar, nullptr);
    minihost::setCurrentTab(window.get(), 0);
    EXPECT_EQ(bar->currentIdx(), 0);
    EXPECT_EQ(currentRibbonTabId(), QString());  // no command

    auto* notAList = new QObject(bar);
    notAList->setProperty("id", QStringLiteral("CT_Home"));
    minihost::setRibbonParts(window.get(), header, bar, notAList);
    EXPECT_EQ(currentRibbonTabId(), QString());  // a command of another type

    auto* list = new ZListCommand(bar);
    delete minihost::addTabCommand(list, QStringLiteral("CT_Home"));  // a tab whose command is gone
    ASSERT_EQ(list->childCount(), 1);
    minihost::setRibbonParts(window.get(), header, bar, list);
    EXPECT_EQ(currentRibbonTabId(), QString());
}

TEST_F(AddonResources, TextToolPinyinUrlEndsWithThePagePathAndTheOrigin) {
    showTab(QStringLiteral("CT_TextTool"));
    const QString url = pinyinPageUrl();
    EXPECT_TRUE(url.endsWith(kPinyinPage + QStringLiteral("?from=texttool"))) << url.toStdString();
    EXPECT_EQ(url, QStringLiteral("file:///") + addonFilePath(kPinyinPage) +
                       QStringLiteral("?from=texttool"));
    // The path is absolute, so four slashes follow the scheme name.
    EXPECT_TRUE(url.startsWith(QStringLiteral("file:////")));
    EXPECT_EQ(guidePageUrl(), QStringLiteral("file:///") + addonFilePath(kGuidePage) +
                                  QStringLiteral("?from=texttool"));
}

TEST_F(AddonResources, HomeUrlsCarryTheHomeOrigin) {
    showTab(QStringLiteral("CT_Home"));
    EXPECT_TRUE(pinyinPageUrl().endsWith(kPinyinPage + QStringLiteral("?from=home")));
    EXPECT_TRUE(guidePageUrl().endsWith(kGuidePage + QStringLiteral("?from=home")));
}

TEST_F(AddonResources, OtherTabUrlsHaveNoOrigin) {
    showTab(QStringLiteral("CT_Insert"));
    EXPECT_TRUE(pinyinPageUrl().endsWith(kPinyinPage));
    EXPECT_TRUE(guidePageUrl().endsWith(kGuidePage));
    minihost::setCurrentMainWindow(nullptr);
    EXPECT_EQ(pinyinPageUrl(), QStringLiteral("file:///") + addonFilePath(kPinyinPage));
}
