// SPDX-License-Identifier: MIT
#include "usage/usageevents.h"

#include <QHash>

#include "common/hostapplication.h"
#include "entry/addonresources.h"
#include "nvo/dcinfo.h"

void postUsageEvent(const QString& key, const QString& value) {
    ZxApplication* app = hostApplication();
    ZDcInfoC* collector = app ? app->coreApplication()->getDcInfo() : nullptr;
    if (!collector) return;
    const QString tab = ribbonTabName(currentRibbonTab());
    // Commands started elsewhere in the user interface are not counted.
    if (tab.isEmpty()) return;
    const QHash<QString, QString> parameters{{key, value}};
    collector->postGeneralEvent(QStringLiteral("nvo_phoneticsymbol_") + tab, parameters, 0, 0,
                                static_cast<ZDcProbability>(1), true);
}
