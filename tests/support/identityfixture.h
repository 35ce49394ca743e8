// SPDX-License-Identifier: MIT
// A test of what the host knows about its user and installation (registry, common settings,
// user information): each test starts from an empty store and must give back every object.
#pragma once

#include <gtest/gtest.h>

#include <QFile>

#include "minihost/nvo/hoststore.h"
#include "minihost/nvo/registry.h"

class HostIdentityTest : public ::testing::Test {
protected:
    void TearDown() override {
        QFile::remove(minihost::registryPath());
        QFile::remove(minihost::commonSettingsPath());
        minihost::setRegistryAvailable(true);
        minihost::setUserInformationAvailable(true);
        EXPECT_EQ(minihost::liveIdentityObjects(), 0);
    }
};
