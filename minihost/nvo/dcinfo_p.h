// SPDX-License-Identifier: MIT
// The host's side of the usage collector. It never sends anything anywhere: each kept event is
// appended as one JSON object per line to <data directory>/usage.log and kept in memory.
#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include "hostexport.h"
#include "minihost/nvo/hostcontrol.h"
#include "nvo/dcinfo.h"

class ZHOST_API ZDcInfoCPrivate {
public:
    // The log file events are appended to.
    static QString logPath();
    // Every event kept since the collector was made, oldest first.
    QList<UsageEvent> events;
    // False keeps events in memory only (nothing is written).
    bool writeLog = true;
};
