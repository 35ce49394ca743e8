// SPDX-License-Identifier: MIT
#include "minihost/nvo/hostconfig.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QMap>
#include <cstring>
#include <optional>

#include "minihost/nvo/hoststore.h"

#include "nvo/platform.h"
#include "nvo/zlitestyle.h"

namespace minihost {
namespace {

// The host runs on its GUI thread only, like the add-on; no locking.
struct Config {
    QHash<std::uint32_t, bool> features;
    QMap<int, QString> directories;
    std::optional<double> scale;
    // The settings' word on the tagging library, read once: the add-on asks for every text it
    // tags (for every character of a text whose readings it lists), and reading the settings
    // file each time took most of the time of a long text. Read again after this process changed
    // a setting (hostSettingChanges) or the features were reset.
    std::optional<bool> taggingLibrarySetting;
    unsigned readAfterChanges = 0;
};

Config& config() {
    static Config instance;
    return instance;
}

// Where directory `dirId` (2 or 27) comes from, in the order directory() asks.
enum class DirectorySource { Program, Environment, Settings, BesidePrograms };

const char* environmentVariable(int dirId) {
    return dirId == ZDirTaggingLibrary ? "ZPHONETIC_TAGGER_DIR"
           : dirId == ZDirDictionaries ? "ZPHONETIC_DICT_DIR"
                                       : nullptr;
}

QString settingKey(int dirId) {
    return dirId == ZDirTaggingLibrary ? QStringLiteral("directories/tagger")
                                       : QStringLiteral("directories/dictionaries");
}

DirectorySource directorySource(int dirId) {
    if (config().directories.contains(dirId)) return DirectorySource::Program;
    if (!qEnvironmentVariableIsEmpty(environmentVariable(dirId)))
        return DirectorySource::Environment;
    if (!hostSetting(settingKey(dirId)).toString().isEmpty()) return DirectorySource::Settings;
    return DirectorySource::BesidePrograms;
}

// "<what> is missing ...: <fix>" for the file `path` of directory `dirId`, or "" when it is there.
QString checkFile(int dirId, const QString& path, const QString& what, const QString& target) {
    const QFileInfo file(path);
    if (file.isFile() && file.isReadable()) return QString();
    const QString missing = what + QStringLiteral(" is missing");
    switch (directorySource(dirId)) {
        case DirectorySource::Program:
            return missing + QStringLiteral(": the host program chose this directory");
        case DirectorySource::Environment: {
            const QString variable = QLatin1String(environmentVariable(dirId));
            return missing + QStringLiteral(
                                 " (set by %1): point %1 at the directory that holds it, "
                                 "or unset it")
                                 .arg(variable);
        }
        case DirectorySource::Settings:
            return missing + QStringLiteral(
                                 " (host setting \"%1\" in %2): correct the setting, or "
                                 "remove it")
                                 .arg(settingKey(dirId), commonSettingsPath());
        case DirectorySource::BesidePrograms:
            break;
    }
    return missing + QStringLiteral(
                         ": build it (cmake --build BUILD --target %1) or reinstall "
                         "zphonetic, or set %2 to the directory that holds it")
                         .arg(target, QLatin1String(environmentVariable(dirId)));
}

QString besideHostPrograms(const char* relative) {
    const QString bin =
        QCoreApplication::instance() ? QCoreApplication::applicationDirPath() : QDir::currentPath();
    return QDir::cleanPath(bin + QLatin1String("/../") + QLatin1String(relative));
}

}  // namespace

void setFeatureState(std::uint32_t featureId, bool on) {
    config().features.insert(featureId, on);
}

bool featureState(std::uint32_t featureId) {
    const auto set = config().features.constFind(featureId);
    if (set != config().features.cend()) return *set;
    if (featureId != ZFeatureTaggingLibrary) return false;
    Config& c = config();
    if (!c.taggingLibrarySetting || c.readAfterChanges != hostSettingChanges()) {
        const QVariant setting = hostSetting(QStringLiteral("features/taggingLibrary"));
        c.taggingLibrarySetting = setting.isValid() ? setting.toBool() : true;
        c.readAfterChanges = hostSettingChanges();
    }
    return *c.taggingLibrarySetting;
}

void resetFeatureStates() {
    config().features.clear();
    config().taggingLibrarySetting.reset();
}

void setDirectory(int dirId, const QString& path) {
    config().directories.insert(dirId, path);
}

QString directory(int dirId) {
    const auto set = config().directories.constFind(dirId);
    if (set != config().directories.cend()) return *set;
    const char* variable = environmentVariable(dirId);
    if (!variable) return QString();
    const QString fromEnvironment = qEnvironmentVariable(variable);
    if (!fromEnvironment.isEmpty()) return fromEnvironment;
    const QString fromSettings = hostSetting(settingKey(dirId)).toString();
    if (!fromSettings.isEmpty()) return fromSettings;
    return besideHostPrograms(dirId == ZDirTaggingLibrary ? "lib/zphonetic"
                                                          : "share/zphonetic/dict");
}

void resetDirectories() {
    config().directories.clear();
}

QString missingReadingFile(QString* problem) {
    const auto inDirectory = [](int dirId, const char* name) {
        return QDir::cleanPath(directory(dirId) + QLatin1Char('/') + QLatin1String(name));
    };
    if (featureState(ZFeatureTaggingLibrary)) {
        const QString library = inDirectory(ZDirTaggingLibrary, "libPinyinTagger.so");
        *problem = checkFile(ZDirTaggingLibrary, library, QStringLiteral("the tagging library"),
                             QStringLiteral("PinyinTagger"));
        if (!problem->isEmpty()) return library;
    }
    for (const char* name : {"Pinyin.dic", "firrule.dic", "secrule.dic"}) {
        const QString dictionary = inDirectory(ZDirDictionaries, name);
        *problem = checkFile(
            ZDirDictionaries, dictionary,
            QStringLiteral("the dictionary %1 of the tagging library").arg(QLatin1String(name)),
            QStringLiteral("zphonetic_dictionaries"));
        if (!problem->isEmpty()) return dictionary;
    }
    return QString();
}

void setScaleFactor(double factor) {
    config().scale = factor;
}

double scaleFactor() {
    if (config().scale) return *config().scale;
    bool ok = false;
    const double fromSettings = hostSetting(QStringLiteral("ui/scaleFactor")).toDouble(&ok);
    return ok && fromSettings > 0 ? fromSettings : 1.0;
}

void resetScaleFactor() {
    config().scale.reset();
}

}  // namespace minihost

extern "C" int _nvo_QueryFeatureState(std::uint32_t featureId) {
    return minihost::featureState(featureId) ? 1 : 0;
}

extern "C" HRESULT _nvo_GetDirInfo(std::int32_t dirId, std::int32_t, std::int32_t, char16_t* buffer,
                                   std::int32_t capacity, std::int32_t) {
    if (!buffer || capacity <= 0) return E_POINTER;
    const QString path = minihost::directory(dirId);
    if (path.isEmpty() || path.size() >= capacity) return E_FAIL;
    std::memcpy(buffer, path.utf16(), static_cast<std::size_t>(path.size()) * sizeof(char16_t));
    buffer[path.size()] = 0;
    return S_OK;
}

double ZLiteStyle::dpiScaled(double value) {
    return value * minihost::scaleFactor();
}
