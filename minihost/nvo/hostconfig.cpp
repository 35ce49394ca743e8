// SPDX-License-Identifier: MIT
#include "minihost/nvo/hostconfig.h"

#include <QCoreApplication>
#include <QDir>
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
};

Config& config() {
    static Config instance;
    return instance;
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
    if (featureId != kFeatureTaggingLibrary) return false;
    const QVariant setting = hostSetting(QStringLiteral("features/taggingLibrary"));
    return setting.isValid() ? setting.toBool() : true;
}

void resetFeatureStates() {
    config().features.clear();
}

void setDirectory(int dirId, const QString& path) {
    config().directories.insert(dirId, path);
}

QString directory(int dirId) {
    const auto set = config().directories.constFind(dirId);
    if (set != config().directories.cend()) return *set;
    const char* variable = dirId == kDirTaggingLibrary ? "ZPHONETIC_TAGGER_DIR"
                           : dirId == kDirDictionaries ? "ZPHONETIC_DICT_DIR"
                                                       : nullptr;
    if (!variable) return QString();
    const QString fromEnvironment = qEnvironmentVariable(variable);
    if (!fromEnvironment.isEmpty()) return fromEnvironment;
    const QString fromSettings =
        hostSetting(dirId == kDirTaggingLibrary ? QStringLiteral("directories/tagger")
                                                : QStringLiteral("directories/dictionaries"))
            .toString();
    if (!fromSettings.isEmpty()) return fromSettings;
    return besideHostPrograms(dirId == kDirTaggingLibrary ? "lib/zphonetic"
                                                          : "share/zphonetic/dict");
}

void resetDirectories() {
    config().directories.clear();
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
