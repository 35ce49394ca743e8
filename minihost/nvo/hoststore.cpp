// SPDX-License-Identifier: MIT
#include "minihost/nvo/hoststore.h"

#include <QDir>
#include <QSettings>
#include <QStandardPaths>

#include "nvo/zrt.h"

namespace minihost {
namespace {

QString& homeOverride() {
    static QString path;
    return path;
}

QString home() {
    if (!homeOverride().isEmpty()) return homeOverride();
    return qEnvironmentVariable("ZPHONETIC_HOME");
}

QString standardDirectory(QStandardPaths::StandardLocation location) {
    return QStandardPaths::writableLocation(location) + QLatin1String("/zphonetic");
}

}  // namespace

void setHomeDirectory(const QString& path) {
    homeOverride() = path;
}

QString configDirectory() {
    const QString root = home();
    return root.isEmpty() ? standardDirectory(QStandardPaths::GenericConfigLocation)
                          : QDir(root).filePath(QStringLiteral("config"));
}

QString dataDirectory() {
    const QString root = home();
    return root.isEmpty() ? standardDirectory(QStandardPaths::GenericDataLocation)
                          : QDir(root).filePath(QStringLiteral("data"));
}

QString commonSettingsPath() {
    return QDir(configDirectory()).filePath(QStringLiteral("common.ini"));
}

QVariant hostSetting(const QString& key) {
    const QSettings settings(commonSettingsPath(), QSettings::IniFormat);
    return settings.value(key);
}

namespace {
unsigned g_settingChanges = 0;  // the GUI thread's only
}  // namespace

unsigned hostSettingChanges() {
    return g_settingChanges;
}

void setHostSetting(const QString& key, const QVariant& value) {
    ++g_settingChanges;
    QSettings settings(commonSettingsPath(), QSettings::IniFormat);
    if (value.isValid())
        settings.setValue(key, value);
    else
        settings.remove(key);
    settings.sync();
}

}  // namespace minihost

namespace zrt {

// The same file as the host's own settings: the product shares one settings store.
ZUWPCommonSettings::ZUWPCommonSettings(QObject* parent)
    : QSettings(minihost::commonSettingsPath(), QSettings::IniFormat, parent) {}

ZUWPCommonSettings::~ZUWPCommonSettings() = default;

}  // namespace zrt
