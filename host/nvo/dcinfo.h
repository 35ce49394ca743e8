// SPDX-License-Identifier: MIT
// The host's usage-data collector.
#pragma once

#include <QHash>
#include <QString>
#include <memory>

#include "hostexport.h"

enum ZDcProbability {
    ZDcProbabilityNever = 0,
    ZDcProbabilityAlways = 1,
};

class ZDcInfoCPrivate;

class ZHOST_API ZDcInfoC {
public:
    ZDcInfoC();
    ~ZDcInfoC();
    ZDcInfoC(const ZDcInfoC&) = delete;
    ZDcInfoC& operator=(const ZDcInfoC&) = delete;

    // Records one event named `name` with its parameters. `reserved1` and `reserved2` are 0;
    // `probability` is the share of events kept (ZDcProbabilityAlways keeps every one);
    // `immediate` asks for the event to be stored at once. True when the event was kept.
    bool postGeneralEvent(const QString& name, const QHash<QString, QString>& parameters,
                          unsigned int reserved1, unsigned int reserved2,
                          ZDcProbability probability, bool immediate);

    ZDcInfoCPrivate* d_func() const { return d.get(); }

private:
    std::unique_ptr<ZDcInfoCPrivate> d;
};
