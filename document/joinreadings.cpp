// SPDX-License-Identifier: MIT
#include "document/joinreadings.h"

QString joinReadings(const QStringList& readings) {
    QString joined;
    if (readings.isEmpty()) return joined;
    for (int i = 0; i + 1 < readings.size(); ++i) {
        if (readings[i].isEmpty()) continue;
        joined += readings[i];
        joined += QLatin1Char(' ');
    }
    joined += readings.last();
    return joined;
}
