// SPDX-License-Identifier: MIT
// The host's translation manager.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <memory>

#include "hostexport.h"

namespace zrt {

class ZAppTranslatorsPrivate;

class ZHOST_API ZAppTranslators : public QObject {
    Q_OBJECT
public:
    explicit ZAppTranslators(QObject* parent = nullptr);
    ~ZAppTranslators() override;

    // Loads each of `files` from `directory`/<ui language>/, falling back to `directory` itself,
    // and installs the translators found under the key `directory`. True when at least one file
    // was loaded. Installing a directory twice installs it twice.
    bool installTranslation(const QString& directory, const QStringList& files);
    // Removes every translator installed under `directory`; unknown directories are ignored.
    void uninstallTranslation(const QString& directory);

    ZAppTranslatorsPrivate* d_func() const { return d.get(); }

private:
    std::unique_ptr<ZAppTranslatorsPrivate> d;
};

}  // namespace zrt
