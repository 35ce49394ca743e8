// SPDX-License-Identifier: MIT
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include "minihost/nvo/hostjournal_p.h"
#include "minihost/nvo/translators_p.h"
#include "nvo/zrt.h"

namespace zrt {

int ZAppTranslatorsPrivate::installedCount(const QString& directory) const {
    const auto found = installed.find(directory);
    return found == installed.end() ? 0 : static_cast<int>(found->second.size());
}

ZAppTranslators::ZAppTranslators(QObject* parent)
    : QObject(parent), d(std::make_unique<ZAppTranslatorsPrivate>()) {}

ZAppTranslators::~ZAppTranslators() {
    for (auto& entry : d->installed)
        for (auto& translator : entry.second) QCoreApplication::removeTranslator(translator.get());
}

bool ZAppTranslators::installTranslation(const QString& directory, const QStringList& files) {
    minihost::noteHostCall(QStringLiteral("ZAppTranslators.installTranslation(%1, [%2])")
                               .arg(directory, files.join(QStringLiteral(", "))));
    const QDir dir(directory);
    const QString language = i18n::language(1, true);
    bool loadedAny = false;
    for (const QString& file : files) {
        QStringList tries;
        if (!language.isEmpty()) tries << dir.filePath(language + QLatin1Char('/') + file);
        tries << dir.filePath(file);
        for (const QString& path : tries) {
            if (!QFileInfo(path).isFile()) continue;
            auto translator = std::make_unique<QTranslator>();
            if (!translator->load(path)) continue;
            QCoreApplication::installTranslator(translator.get());
            d->installed[directory].push_back(std::move(translator));
            d->loadedFiles << path;
            loadedAny = true;
            break;
        }
    }
    return loadedAny;
}

void ZAppTranslators::uninstallTranslation(const QString& directory) {
    minihost::noteHostCall(
        QStringLiteral("ZAppTranslators.uninstallTranslation(%1)").arg(directory));
    const auto found = d->installed.find(directory);
    if (found == d->installed.end()) return;
    for (auto& translator : found->second) QCoreApplication::removeTranslator(translator.get());
    d->installed.erase(found);
}

}  // namespace zrt
