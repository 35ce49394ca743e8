// SPDX-License-Identifier: MIT
#include "reporterror.h"

#include <cstdio>

int reportError(const QString& subject, const QString& what) {
    std::fprintf(stderr, "zphonetic: %s: %s\n", subject.toLocal8Bit().constData(),
                 what.toLocal8Bit().constData());
    return 1;
}

int reportFileError(const QString& path, const QString& error) {
    const QString prefix = path + QStringLiteral(": ");
    return reportError(path, error.startsWith(prefix) ? error.mid(prefix.size()) : error);
}
