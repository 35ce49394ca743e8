// SPDX-License-Identifier: MIT
#include "minihost/nvo/hoststore.h"

#include <QDir>
#include <QSettings>
#include <QStandardPaths>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string>

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

// The common settings file, read once per path and kept: reading a setting then asks nothing
// of the file system, which matters because the add-on asks for its feature switch for every
// text it tags (for every character of a text whose readings it lists). Every QSettings of this
// process over the same file shares what this one holds.
QSettings& commonSettings() {
    static std::unique_ptr<QSettings> kept;
    const QString path = commonSettingsPath();
    if (!kept || kept->fileName() != path)
        kept = std::make_unique<QSettings>(path, QSettings::IniFormat);
    return *kept;
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
    // Asked for every setting read, so worked out again only when the home set here, or the
    // environment the home and the standard location come from, changed (compared without
    // allocating anything).
    static const char* const kInputs[] = {"ZPHONETIC_HOME", "XDG_CONFIG_HOME", "HOME"};
    static QString madeForHome;
    static std::string madeFor[std::size(kInputs)];
    static bool known = false;
    static QString path;
    bool same = known && madeForHome == homeOverride();
    for (std::size_t i = 0; same && i < std::size(kInputs); ++i) {
        const char* value = std::getenv(kInputs[i]);
        same = madeFor[i] == (value ? value : "");
    }
    if (!same) {
        madeForHome = homeOverride();
        for (std::size_t i = 0; i < std::size(kInputs); ++i) {
            const char* value = std::getenv(kInputs[i]);
            madeFor[i] = value ? value : "";
        }
        path = QDir(configDirectory()).filePath(QStringLiteral("common.ini"));
        known = true;
    }
    return path;
}

QVariant hostSetting(const QString& key) {
    return commonSettings().value(key);
}

void setHostSetting(const QString& key, const QVariant& value) {
    QSettings& settings = commonSettings();
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
