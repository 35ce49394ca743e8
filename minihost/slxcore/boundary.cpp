// SPDX-License-Identifier: MIT
#include "minihost/slxcore/boundary_p.h"

namespace minihost {

QString journalText(const QString& text) {
    QString out = QStringLiteral("\"");
    for (QChar c : text) {
        if (c == QLatin1Char('"') || c == QLatin1Char('\\'))
            out += QLatin1Char('\\') + QString(c);
        else if (c.unicode() < 0x20)
            out += QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
        else
            out += c;
    }
    return out + QLatin1Char('"');
}

}  // namespace minihost
