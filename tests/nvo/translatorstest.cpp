// SPDX-License-Identifier: MIT
// Translations: <dir>/<ui language>/<file> first, then <dir>/<file>; installed per directory.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "minihost/nvo/hostcontrol.h"
#include "minihost/nvo/hoststore.h"
#include "minihost/nvo/translators_p.h"

namespace {

QString hello() {
    return QCoreApplication::translate("Greeting", "hello");
}

class Translators : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        minihost::setHostSetting(QStringLiteral("ui/language"), QStringLiteral("fr_FR"));
    }
    void TearDown() override { minihost::setHostSetting(QStringLiteral("ui/language"), {}); }
    // Copies the compiled test translation to <dir>/<relative>.
    void place(const QString& relative) {
        const QString target = QDir(dir.path()).filePath(relative);
        QDir().mkpath(QFileInfo(target).absolutePath());
        ASSERT_TRUE(QFile::copy(QStringLiteral(GREETING_QM), target));
    }
    QString mui() const { return dir.path() + QStringLiteral("/mui/"); }
    QTemporaryDir dir;
};

}  // namespace

TEST_F(Translators, LoadsTheLanguageFolderFirst) {
    place(QStringLiteral("mui/fr_FR/greeting.qm"));
    zrt::ZAppTranslators translators;
    EXPECT_TRUE(translators.installTranslation(mui(), {QStringLiteral("greeting.qm")}));
    EXPECT_EQ(hello(), QStringLiteral("bonjour"));
    EXPECT_EQ(translators.d_func()->installedCount(mui()), 1);
    ASSERT_EQ(translators.d_func()->loadedFiles.size(), 1);
    EXPECT_TRUE(
        translators.d_func()->loadedFiles.first().endsWith(QStringLiteral("/fr_FR/greeting.qm")));
    translators.uninstallTranslation(mui());
    EXPECT_EQ(hello(), QStringLiteral("hello"));
    EXPECT_EQ(translators.d_func()->installedCount(mui()), 0);
}

TEST_F(Translators, FallsBackToTheDirectoryItself) {
    place(QStringLiteral("mui/greeting.qm"));
    zrt::ZAppTranslators translators;
    EXPECT_TRUE(translators.installTranslation(mui(), {QStringLiteral("greeting.qm")}));
    EXPECT_EQ(hello(), QStringLiteral("bonjour"));
}

TEST_F(Translators, NothingToLoadInstallsNothingButTheCallsAreNoted) {
    zrt::ZAppTranslators translators;
    minihost::clearHostJournal();
    EXPECT_FALSE(translators.installTranslation(mui(), {QStringLiteral("greeting.qm")}));
    EXPECT_EQ(translators.d_func()->installedCount(mui()), 0);
    translators.uninstallTranslation(QStringLiteral("/never/installed/"));
    EXPECT_EQ(minihost::hostJournal(),
              (QStringList{"ZAppTranslators.installTranslation(" + mui() + ", [greeting.qm])",
                           "ZAppTranslators.uninstallTranslation(/never/installed/)"}));
    EXPECT_EQ(hello(), QStringLiteral("hello"));
}

TEST_F(Translators, InstallingTwiceInstallsTwiceAndOneUninstallRemovesBoth) {
    place(QStringLiteral("mui/greeting.qm"));
    zrt::ZAppTranslators translators;
    translators.installTranslation(mui(), {QStringLiteral("greeting.qm")});
    translators.installTranslation(mui(), {QStringLiteral("greeting.qm")});
    EXPECT_EQ(translators.d_func()->installedCount(mui()), 2);
    translators.uninstallTranslation(mui());
    EXPECT_EQ(translators.d_func()->installedCount(mui()), 0);
    EXPECT_EQ(hello(), QStringLiteral("hello"));
}

TEST_F(Translators, DestroyingTheManagerRemovesItsTranslations) {
    place(QStringLiteral("mui/greeting.qm"));
    {
        zrt::ZAppTranslators translators;
        translators.installTranslation(mui(), {QStringLiteral("greeting.qm")});
        EXPECT_EQ(hello(), QStringLiteral("bonjour"));
    }
    EXPECT_EQ(hello(), QStringLiteral("hello"));
}
