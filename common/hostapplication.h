// SPDX-License-Identifier: MIT
// The running host application, as the add-on reaches it.
#pragma once

#include <QCoreApplication>

#include "nvo/zapplication.h"

// The application object taken as the host's ZxApplication; null outside a host.
inline ZxApplication* hostApplication() {
    return qobject_cast<ZxApplication*>(QCoreApplication::instance());
}
