// SPDX-License-Identifier: MIT
// Usage events by ribbon tab, and the client information record from the host's registry,
// settings, product and user-information queries.
#include <gtest/gtest.h>

#include <QFile>

#include "identityfixture.h"
#include "minihost/nvo/hostcontrol.h"
#include "minihost/nvo/hoststore.h"
#include "minihost/nvo/registry.h"
#include "nvo/platform.h"
#include "ribbonfixture.h"
#include "usage/clientinfo.h"
#include "usage/usageevents.h"

namespace {

class UsageEvents : public RibbonFixture {
protected:
    void SetUp() override { minihost::clearUsageEvents(); }
    static QList<UsageEvent> events() { return minihost::usageEvents(); }
};

class ClientInfoTest : public HostIdentityTest {
protected:
    static void setInfoGuid(const QString& value) {
        minihost::setRegistryValue(ZRegScopeUser, QString(), QStringLiteral("infoGUID"), value);
    }
};

}  // namespace

TEST_F(UsageEvents, HomeTabPostsTheHomeEventWithItsArguments) {
    showTab(QStringLiteral("CT_Home"));
    postUsageEvent(QStringLiteral("action"), QStringLiteral("onekey"));
    ASSERT_EQ(events().size(), 1);
    const UsageEvent event = events().first();
    EXPECT_EQ(event.name, QStringLiteral("nvo_phoneticsymbol_home"));
    EXPECT_EQ(event.parameters,
              (QHash<QString, QString>{{QStringLiteral("action"), QStringLiteral("onekey")}}));
    EXPECT_EQ(event.reserved1, 0u);
    EXPECT_EQ(event.reserved2, 0u);
    EXPECT_EQ(event.probability, 1);
    EXPECT_TRUE(event.immediate);
}

TEST_F(UsageEvents, TextToolTabPostsTheTextToolEvent) {
    showTab(QStringLiteral("CT_TextTool"));
    postUsageEvent(QStringLiteral("action"), QStringLiteral("symbol"));
    ASSERT_EQ(events().size(), 1);
    EXPECT_EQ(events().first().name, QStringLiteral("nvo_phoneticsymbol_texttool"));
    EXPECT_EQ(events().first().parameters.value(QStringLiteral("action")),
              QStringLiteral("symbol"));
}

TEST_F(UsageEvents, NeitherHomeNorTextToolPostsNothing) {
    showTab(QStringLiteral("CT_Insert"));
    postUsageEvent(QStringLiteral("action"), QStringLiteral("onekey"));
    showRibbon({QStringLiteral("CT_Home")}, 1);  // index equal to the tab count
    postUsageEvent(QStringLiteral("action"), QStringLiteral("onekey"));
    TearDown();  // no main window at all
    postUsageEvent(QStringLiteral("action"), QStringLiteral("onekey"));
    EXPECT_TRUE(events().isEmpty());
}

TEST_F(UsageEvents, WithoutACollectorNothingIsPosted) {
    showTab(QStringLiteral("CT_Home"));
    minihost::setUsageCollectorAvailable(false);
    postUsageEvent(QStringLiteral("action"), QStringLiteral("onekey"));  // must not crash
    EXPECT_EQ(app()->coreApplication()->getDcInfo(), nullptr);
    minihost::setUsageCollectorAvailable(true);
    EXPECT_TRUE(events().isEmpty());
}

TEST_F(ClientInfoTest, BracedDashedRegistryIdIsStoredAsPlainHex) {
    setInfoGuid(QStringLiteral("{A1B2C3D4-E5F6-4A5B-8C7D-0123456789AB}"));
    EXPECT_EQ(ClientInfo::collect().clientId, QStringLiteral("A1B2C3D4E5F64A5B8C7D0123456789AB"));
}

TEST_F(ClientInfoTest, EmptyRegistryValueFallsBackToTheCommonSettings) {
    setInfoGuid(QString());
    minihost::setHostSetting(QStringLiteral("infoGUID"), QStringLiteral("{0F0E-0D0C}"));
    EXPECT_EQ(ClientInfo::collect().clientId, QStringLiteral("0F0E0D0C"));
    setInfoGuid(QStringLiteral("{AB-CD}"));
    EXPECT_EQ(ClientInfo::collect().clientId, QStringLiteral("ABCD"));  // the registry comes first
}

TEST_F(ClientInfoTest, WithoutARegistryTheSettingsAreNotConsultedEither) {
    minihost::setHostSetting(QStringLiteral("infoGUID"), QStringLiteral("{0F0E-0D0C}"));
    minihost::setRegistryAvailable(false);
    EXPECT_EQ(ClientInfo::collect().clientId, QString());
}

TEST_F(ClientInfoTest, OnlyTheFirst1023UnitsOfTheIdAreLookedAt) {
    const QString id = QStringLiteral("{") + QString(1100, QLatin1Char('a')) + QStringLiteral("}");
    EXPECT_EQ(ClientInfo::collect().clientId, QString());
    setInfoGuid(id);
    EXPECT_EQ(ClientInfo::collect().clientId, QString(1022, QLatin1Char('a')));
    EXPECT_EQ(cleanClientId(QStringLiteral("-{}-")), QString());
}

TEST_F(ClientInfoTest, NotSendFollowsTheRegistryAndTheProduct) {
    EXPECT_EQ(ClientInfo::collect().notSend, 0);
    minihost::setRegistryValue(ZRegScopeMachine, QString(), QStringLiteral("ICNotSend"), 2);
    EXPECT_EQ(ClientInfo::collect().notSend, 2);
    minihost::setRegistryValue(ZRegScopeMachine, QString(), QStringLiteral("ICNotSend"), 0);
    minihost::setHostSetting(QStringLiteral("product/disableInfoCollect"), true);
    EXPECT_EQ(ClientInfo::collect().notSend, 1);
}

TEST_F(ClientInfoTest, OtherFieldsComeFromTheHostOrStayEmpty) {
    minihost::setHostSetting(QStringLiteral("product/version"), QStringLiteral("12.1.0.15"));
    minihost::setHostSetting(QStringLiteral("ui/language"), QStringLiteral("zh_CN"));
    const ClientInfo info = ClientInfo::collect();
    EXPECT_EQ(info.appVersion, QStringLiteral("12.1.0.15"));
    EXPECT_EQ(info.language, QStringLiteral("zh_CN"));
    EXPECT_EQ(info.collectServer, QString());
    EXPECT_EQ(info.appDist, QString());
    EXPECT_EQ(info.reserved1, QString());
    EXPECT_EQ(info.reserved2, QString());
    EXPECT_EQ(info.reserved3, QString());
}

TEST_F(ClientInfoTest, MissingUserInformationLeavesTheVersionEmpty) {
    minihost::setUserInformationAvailable(false);
    EXPECT_EQ(ClientInfo::collect().appVersion, QString());
}

TEST_F(ClientInfoTest, RecordIsFilledOnceAndAppDistIsEmpty) {
    setInfoGuid(QStringLiteral("{11-22}"));
    const ClientInfo& first = ClientInfo::instance();
    EXPECT_EQ(first.clientId, QStringLiteral("1122"));
    setInfoGuid(QStringLiteral("{33-44}"));
    const ClientInfo& second = ClientInfo::instance();
    EXPECT_EQ(&first, &second);
    EXPECT_EQ(second.clientId, QStringLiteral("1122"));
    EXPECT_EQ(second.appDist, QString());
}
