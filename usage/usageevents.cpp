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
    QString name;
    switch (currentRibbonTab()) {
        case RibbonTab::Home:
            name = QStringLiteral("nvo_phoneticsymbol_home");
            break;
        case RibbonTab::TextTool:
            name = QStringLiteral("nvo_phoneticsymbol_texttool");
            break;
        case RibbonTab::Other:
            break;
    }
    // Commands started elsewhere in the user interface are not counted.
    if (name.isEmpty()) return;
    const QHash<QString, QString> parameters{{key, value}};
    collector->postGeneralEvent(name, parameters, 0, 0, static_cast<ZDcProbability>(1), true);
}
