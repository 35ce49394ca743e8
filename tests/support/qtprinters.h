// SPDX-License-Identifier: MIT
// GoogleTest shows Qt strings as text, not as arrays of 16-bit units.
#pragma once

#include <QString>
#include <QStringList>
#include <ostream>

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QStringList& list, std::ostream* out) {
    *out << '{';
    for (int i = 0; i < list.size(); ++i)
        *out << (i ? ", " : "") << '"' << list[i].toStdString() << '"';
    *out << '}';
}
