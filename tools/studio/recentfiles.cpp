// SPDX-License-Identifier: MIT
#include "recentfiles.h"

#include <QFileInfo>

#include "minihost/nvo/hoststore.h"

namespace {

const QString kKey = QStringLiteral("studio/recentFiles");

void store(const QStringList& paths) {
    minihost::setHostSetting(kKey, paths.isEmpty() ? QVariant() : QVariant(paths));
}

}  // namespace

namespace recentfiles {

QStringList list() {
    return minihost::hostSetting(kKey).toStringList();
}

void add(const QString& path) {
    const QString absolute = QFileInfo(path).absoluteFilePath();
    QStringList paths = list();
    paths.removeAll(absolute);
    paths.prepend(absolute);
    while (paths.size() > kLimit) paths.removeLast();
    store(paths);
}

void remove(const QString& path) {
    QStringList paths = list();
    paths.removeAll(QFileInfo(path).absoluteFilePath());
    store(paths);
}

}  // namespace recentfiles
