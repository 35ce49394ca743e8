// SPDX-License-Identifier: MIT
// The host's side of zrt::ZAppTranslators: what is installed, for tests and diagnostics.
#pragma once

#include <QString>
#include <QStringList>
#include <QTranslator>
#include <map>
#include <memory>
#include <vector>

#include "hostexport.h"
#include "nvo/translators.h"

namespace zrt {

class ZHOST_API ZAppTranslatorsPrivate {
public:
    // Translators installed under `directory` (the key exactly as it was given).
    int installedCount(const QString& directory) const;
    // Every file loaded since the manager was made, in order, as full paths.
    QStringList loadedFiles;

    std::map<QString, std::vector<std::unique_ptr<QTranslator>>> installed;
};

}  // namespace zrt
