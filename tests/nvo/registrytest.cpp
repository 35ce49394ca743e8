// SPDX-License-Identifier: MIT
// The registry and the user information over the host's settings files.
#include <gtest/gtest.h>

#include <QFile>

#include "common/bstrholder.h"
#include "common/comptr.h"
#include "identityfixture.h"
#include "minihost/nvo/hoststore.h"
#include "minihost/nvo/registry.h"
#include "nvo/platform.h"

namespace {

using Registry = HostIdentityTest;

}  // namespace

TEST_F(Registry, IntegerQueryAnswersTheValueOrTheDefault) {
    std::int32_t value = 7;
    EXPECT_EQ(_nvo_RegQueryValueI(4, nullptr, u"ICNotSend", 0, &value), S_FALSE);
    EXPECT_EQ(value, 0);

    minihost::setRegistryValue(ZRegScopeMachine, QString(), QStringLiteral("ICNotSend"), 1);
    EXPECT_EQ(_nvo_RegQueryValueI(4, nullptr, u"ICNotSend", 0, &value), S_OK);
    EXPECT_EQ(value, 1);

    // The user's value comes before the machine's in the product scope.
    minihost::setRegistryValue(ZRegScopeUser, QString(), QStringLiteral("ICNotSend"), 0);
    EXPECT_EQ(_nvo_RegQueryValueI(4, nullptr, u"ICNotSend", 5, &value), S_OK);
    EXPECT_EQ(value, 0);
    EXPECT_EQ(_nvo_RegQueryValueI(2, nullptr, u"ICNotSend", 5, &value), S_OK);
    EXPECT_EQ(value, 1);
}

TEST_F(Registry, IntegerQueryRejectsTextAndBadArguments) {
    std::int32_t value = 0;
    minihost::setRegistryValue(ZRegScopeUser, QStringLiteral("Office\\Common"),
                               QStringLiteral("Flag"), QStringLiteral("yes"));
    EXPECT_EQ(_nvo_RegQueryValueI(1, u"Office\\Common", u"Flag", 3, &value), S_FALSE);
    EXPECT_EQ(value, 3);
    minihost::setRegistryValue(ZRegScopeUser, QStringLiteral("Office\\Common"),
                               QStringLiteral("Flag"), 12);
    EXPECT_EQ(_nvo_RegQueryValueI(1, u"Office\\Common", u"Flag", 3, &value), S_OK);
    EXPECT_EQ(value, 12);
    EXPECT_EQ(_nvo_RegQueryValueI(1, nullptr, u"Flag", 3, &value), S_FALSE);  // other key

    EXPECT_LT(_nvo_RegQueryValueI(9, nullptr, u"Flag", 3, &value), 0);
    EXPECT_EQ(value, 3);
    EXPECT_LT(_nvo_RegQueryValueI(1, nullptr, nullptr, 3, &value), 0);
    EXPECT_LT(_nvo_RegQueryValueI(1, nullptr, u"Flag", 3, nullptr), 0);
}

TEST_F(Registry, ObjectReadsStringValuesUnderItsRootKey) {
    minihost::setRegistryValue(ZRegScopeUser, QString(), QStringLiteral("infoGUID"),
                               QStringLiteral("{A1B2-C3D4}"));
    ComPtr<IZRegistry> registry;
    ASSERT_EQ(_nvo_CreateRegistry(4, registry.put()), S_OK);
    ASSERT_TRUE(registry);
    EXPECT_EQ(minihost::liveIdentityObjects(), 1);

    BstrHolder value;
    EXPECT_EQ(registry->QueryStringValue(registry->rootKey(), u"infoGUID", value.put()), S_OK);
    EXPECT_EQ(value.toQString(), QStringLiteral("{A1B2-C3D4}"));
    EXPECT_EQ(registry->QueryStringValue(registry->rootKey(), u"absent", value.put()), S_FALSE);
    EXPECT_EQ(value.get(), nullptr);
    int otherKey = 0;
    EXPECT_LT(registry->QueryStringValue(&otherKey, u"infoGUID", value.put()), 0);

    ComPtr<IZRegistry> again = registry.query<IZRegistry>(IID_IZRegistry);
    EXPECT_TRUE(again);
    EXPECT_TRUE(registry.query<IZUserInformation>(IID_IZUserInformation).get() == nullptr);
}

TEST_F(Registry, CreationCanFail) {
    IZRegistry* registry = reinterpret_cast<IZRegistry*>(1);
    minihost::setRegistryAvailable(false);
    EXPECT_EQ(_nvo_CreateRegistry(4, &registry), E_FAIL);
    EXPECT_EQ(registry, nullptr);
    minihost::setRegistryAvailable(true);
    EXPECT_LT(_nvo_CreateRegistry(3, &registry), 0);
    EXPECT_EQ(_nvo_CreateRegistry(4, nullptr), E_POINTER);
}

TEST_F(Registry, UserInformationGivesTheVersionText) {
    ComPtr<IZUserInformation> information;
    ASSERT_EQ(_nvo_GetUserInformation(information.put()), S_OK);
    BstrHolder version;
    ASSERT_EQ(information->get_Version(version.put()), S_OK);
    EXPECT_FALSE(version.toQString().isEmpty());

    minihost::setHostSetting(QStringLiteral("product/version"), QStringLiteral("12.1.0.15"));
    ASSERT_EQ(information->get_Version(version.put()), S_OK);
    EXPECT_EQ(version.toQString(), QStringLiteral("12.1.0.15"));
}

TEST_F(Registry, UserInformationCanBeMissing) {
    minihost::setUserInformationAvailable(false);
    IZUserInformation* information = nullptr;
    EXPECT_EQ(_nvo_GetUserInformation(&information), E_FAIL);
    EXPECT_EQ(information, nullptr);
}
