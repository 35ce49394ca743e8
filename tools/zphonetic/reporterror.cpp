// SPDX-License-Identifier: MIT
#include "reporterror.h"

#include <cstdio>

#include "minihost/nvo/printable.h"

int reportError(const QString& subject, const QString& what) {
    // The subject and what is wrong may quote a file: its name, a part, a relationship target.
    std::fprintf(stderr, "zphonetic: %s: %s\n",
                 minihost::printable(subject).toLocal8Bit().constData(),
                 minihost::printable(what).toLocal8Bit().constData());
    return 1;
}

int reportFileError(const QString& path, const QString& error) {
    const QString prefix = path + QStringLiteral(": ");
    return reportError(path, error.startsWith(prefix) ? error.mid(prefix.size()) : error);
}
