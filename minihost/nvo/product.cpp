// SPDX-License-Identifier: MIT
// The product, server and language queries, answered from the host settings.
#include <QLocale>

#include "minihost/nvo/hoststore.h"
#include "nvo/zrt.h"

namespace zrt {

bool product::isEnterprise() {
    return minihost::hostSetting(QStringLiteral("product/enterprise")).toBool();
}

bool product::isDisableGlobalInfocollect(bool defaultValue) {
    const QVariant setting = minihost::hostSetting(QStringLiteral("product/disableInfoCollect"));
    return setting.isValid() ? setting.toBool() : defaultValue;
}

// This host collects usage data locally and sends nothing: there is no server.
QString serverinfo::infoCollectSvr() {
    return QString();
}

QString i18n::language(int format, bool fallback) {
    QString name = minihost::hostSetting(QStringLiteral("ui/language")).toString();
    if (name.isEmpty()) name = qEnvironmentVariable("ZPHONETIC_UI_LANGUAGE");
    if (name.isEmpty() && fallback) name = QLocale::system().name();
    // Accept "zh-CN" and "zh_CN.UTF-8" as written by people and locales.
    name.replace(QLatin1Char('-'), QLatin1Char('_'));
    name = name.section(QLatin1Char('.'), 0, 0).section(QLatin1Char('@'), 0, 0);
    if (format == 0) return name.section(QLatin1Char('_'), 0, 0);
    return name;
}

}  // namespace zrt
