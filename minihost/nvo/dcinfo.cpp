// SPDX-License-Identifier: MIT
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include "minihost/nvo/dcinfo_p.h"
#include "minihost/nvo/hoststore.h"

namespace {

QByteArray toJsonLine(const UsageEvent& event) {
    QJsonObject parameters;
    for (auto it = event.parameters.cbegin(); it != event.parameters.cend(); ++it)
        parameters.insert(it.key(), it.value());
    QJsonObject line{{QStringLiteral("name"), event.name},
                     {QStringLiteral("parameters"), parameters},
                     {QStringLiteral("reserved1"), static_cast<qint64>(event.reserved1)},
                     {QStringLiteral("reserved2"), static_cast<qint64>(event.reserved2)},
                     {QStringLiteral("probability"), event.probability},
                     {QStringLiteral("immediate"), event.immediate}};
    return QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
}

}  // namespace

QString ZDcInfoCPrivate::logPath() {
    return QDir(minihost::dataDirectory()).filePath(QStringLiteral("usage.log"));
}

ZDcInfoC::ZDcInfoC() : d(std::make_unique<ZDcInfoCPrivate>()) {}

ZDcInfoC::~ZDcInfoC() = default;

bool ZDcInfoC::postGeneralEvent(const QString& name, const QHash<QString, QString>& parameters,
                                unsigned int reserved1, unsigned int reserved2,
                                ZDcProbability probability, bool immediate) {
    if (name.isEmpty() || probability == ZDcProbabilityNever) return false;
    const UsageEvent event{name, parameters, reserved1, reserved2, probability, immediate};
    d->events.append(event);
    if (!d->writeLog) return true;
    // A log that cannot be written loses the line, not the event: the collector stays quiet,
    // as a usage counter must never disturb the user's work.
    const QString path = ZDcInfoCPrivate::logPath();
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile log(path);
    if (log.open(QIODevice::Append)) log.write(toJsonLine(event));
    return true;
}
