// SPDX-License-Identifier: MIT
// Features, directories, scale factor, language and product queries: what the host is told
// wins over the environment, which wins over the host settings, which win over the defaults.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include "minihost/nvo/hostconfig.h"
#include "minihost/nvo/hoststore.h"
#include "nvo/platform.h"
#include "nvo/zlitestyle.h"
#include "nvo/zrt.h"

namespace {

QString dirInfo(int id) {
    char16_t buffer[512];
    if (_nvo_GetDirInfo(id, 0, 1, buffer, 512, 1) != S_OK) return QStringLiteral("<failed>");
    return QString::fromUtf16(buffer);
}

// Restores the environment variable and the host's state after each test.
class HostConfig : public ::testing::Test {
protected:
    void TearDown() override {
        qunsetenv("ZPHONETIC_TAGGER_DIR");
        qunsetenv("ZPHONETIC_DICT_DIR");
        qunsetenv("ZPHONETIC_UI_LANGUAGE");
        minihost::resetDirectories();
        minihost::resetFeatureStates();
        minihost::resetScaleFactor();
        QFile::remove(minihost::commonSettingsPath());
    }
};

}  // namespace

TEST_F(HostConfig, DirectoriesFollowProgramThenEnvironmentThenSettingsThenDefault) {
    const QString bin = QCoreApplication::applicationDirPath();
    EXPECT_EQ(dirInfo(2), QDir::cleanPath(bin + QStringLiteral("/../lib/zphonetic")));
    EXPECT_EQ(dirInfo(27), QDir::cleanPath(bin + QStringLiteral("/../share/zphonetic/dict")));

    minihost::setHostSetting(QStringLiteral("directories/tagger"),
                             QStringLiteral("/from/settings"));
    minihost::setHostSetting(QStringLiteral("directories/dictionaries"),
                             QStringLiteral("/dict/settings/"));
    EXPECT_EQ(dirInfo(2), QStringLiteral("/from/settings"));
    EXPECT_EQ(dirInfo(27), QStringLiteral("/dict/settings/"));  // trailing separator kept

    qputenv("ZPHONETIC_TAGGER_DIR", "/from/environment");
    EXPECT_EQ(dirInfo(2), QStringLiteral("/from/environment"));
    EXPECT_EQ(dirInfo(27), QStringLiteral("/dict/settings/"));

    minihost::setDirectory(2, QStringLiteral("/from/program"));
    EXPECT_EQ(dirInfo(2), QStringLiteral("/from/program"));
}

TEST_F(HostConfig, UnknownDirectoriesAndShortBuffersFail) {
    char16_t buffer[4] = {u'x', 0, 0, 0};
    EXPECT_EQ(_nvo_GetDirInfo(5, 0, 1, buffer, 4, 1), E_FAIL);
    minihost::setDirectory(2, QStringLiteral("/abcd"));
    EXPECT_EQ(_nvo_GetDirInfo(2, 0, 1, buffer, 4, 1), E_FAIL);
    EXPECT_EQ(buffer[0], u'x');  // left unchanged
    EXPECT_EQ(_nvo_GetDirInfo(2, 0, 1, nullptr, 4, 1), E_POINTER);
}

TEST_F(HostConfig, TaggingLibraryFeatureIsOnUnlessSwitchedOff) {
    EXPECT_EQ(_nvo_QueryFeatureState(0x1000018), 1);
    EXPECT_EQ(_nvo_QueryFeatureState(0x1000019), 0);
    minihost::setHostSetting(QStringLiteral("features/taggingLibrary"), false);
    EXPECT_EQ(_nvo_QueryFeatureState(0x1000018), 0);
    minihost::setFeatureState(0x1000018, true);
    EXPECT_EQ(_nvo_QueryFeatureState(0x1000018), 1);
}

TEST_F(HostConfig, ScaleFactorIsOneUnlessConfigured) {
    EXPECT_DOUBLE_EQ(ZLiteStyle::dpiScaled(85), 85.0);
    minihost::setHostSetting(QStringLiteral("ui/scaleFactor"), 1.5);
    EXPECT_DOUBLE_EQ(ZLiteStyle::dpiScaled(85), 127.5);
    minihost::setScaleFactor(2);
    EXPECT_DOUBLE_EQ(ZLiteStyle::dpiScaled(85), 170.0);
}

TEST_F(HostConfig, LanguageComesFromSettingsThenEnvironment) {
    qputenv("ZPHONETIC_UI_LANGUAGE", "fr-FR.UTF-8");
    EXPECT_EQ(zrt::i18n::language(1, true), QStringLiteral("fr_FR"));
    EXPECT_EQ(zrt::i18n::language(0, true), QStringLiteral("fr"));
    minihost::setHostSetting(QStringLiteral("ui/language"), QStringLiteral("zh_CN"));
    EXPECT_EQ(zrt::i18n::language(1, true), QStringLiteral("zh_CN"));
    EXPECT_EQ(zrt::i18n::language(0, false), QStringLiteral("zh"));
}

TEST_F(HostConfig, WithoutFallbackAnUnsetLanguageIsEmpty) {
    EXPECT_EQ(zrt::i18n::language(1, false), QString());
}

TEST_F(HostConfig, ProductQueriesFollowTheSettings) {
    EXPECT_FALSE(zrt::product::isEnterprise());
    EXPECT_FALSE(zrt::product::isDisableGlobalInfocollect(false));
    EXPECT_TRUE(zrt::product::isDisableGlobalInfocollect(true));
    minihost::setHostSetting(QStringLiteral("product/enterprise"), true);
    minihost::setHostSetting(QStringLiteral("product/disableInfoCollect"), true);
    EXPECT_TRUE(zrt::product::isEnterprise());
    EXPECT_TRUE(zrt::product::isDisableGlobalInfocollect(false));
    EXPECT_EQ(zrt::serverinfo::infoCollectSvr(), QString());
}

TEST_F(HostConfig, CommonSettingsShareTheHostSettingsFile) {
    {
        zrt::ZUWPCommonSettings settings;
        settings.setValue(QStringLiteral("infoGUID"), QStringLiteral("{A1B2-C3}"));
    }
    EXPECT_EQ(minihost::hostSetting(QStringLiteral("infoGUID")).toString(),
              QStringLiteral("{A1B2-C3}"));
    EXPECT_TRUE(minihost::commonSettingsPath().startsWith(qEnvironmentVariable("ZPHONETIC_HOME")));
}

// The check before a command that needs readings: the first missing file, and a fix that fits
// where its directory came from.
TEST_F(HostConfig, TheMissingReadingFileIsNamedWithAFixForWhereItsDirectoryCameFrom) {
    QString problem;
    minihost::setHostSetting(QStringLiteral("directories/tagger"),
                             QStringLiteral("/from/settings"));
    EXPECT_EQ(minihost::missingReadingFile(&problem),
              QStringLiteral("/from/settings/libPinyinTagger.so"));
    EXPECT_EQ(problem,
              QStringLiteral(
                  "the tagging library is missing (host setting \"directories/tagger\" in %1): "
                  "correct the setting, or remove it")
                  .arg(minihost::commonSettingsPath()));

    qputenv("ZPHONETIC_TAGGER_DIR", "/from/environment/");
    EXPECT_EQ(minihost::missingReadingFile(&problem),
              QStringLiteral("/from/environment/libPinyinTagger.so"));
    EXPECT_EQ(problem,
              QStringLiteral("the tagging library is missing (set by ZPHONETIC_TAGGER_DIR): point "
                             "ZPHONETIC_TAGGER_DIR at the directory that holds it, or unset it"));

    // Switched off, the tagging library is not needed: the dictionaries are checked, beside the
    // programs here (a test executable has none there).
    minihost::setFeatureState(ZFeatureTaggingLibrary, false);
    const QString dictionaries = QDir::cleanPath(QCoreApplication::applicationDirPath() +
                                                 QStringLiteral("/../share/zphonetic/dict"));
    const QString missing = minihost::missingReadingFile(&problem);
    if (QFile::exists(dictionaries + QStringLiteral("/Pinyin.dic"))) {
        minihost::setDirectory(ZDirDictionaries, QStringLiteral("/chosen"));
        EXPECT_EQ(minihost::missingReadingFile(&problem), QStringLiteral("/chosen/Pinyin.dic"));
        EXPECT_EQ(problem,
                  QStringLiteral("the dictionary Pinyin.dic of the tagging library is missing: the "
                                 "host program chose this directory"));
    } else {
        EXPECT_EQ(missing, dictionaries + QStringLiteral("/Pinyin.dic"));
        EXPECT_TRUE(problem.endsWith(
            QStringLiteral(": build it (cmake --build BUILD --target zphonetic_dictionaries) or "
                           "reinstall zphonetic, or set "
                           "ZPHONETIC_DICT_DIR to the directory that holds it")))
            << problem.toStdString();
    }
}
