// SPDX-License-Identifier: MIT
// The web profiles pages are shown in: one per name and process, persistent under the host's
// data directory, or off the record when the host says so (tests).
#pragma once

#include <QString>

class QWebEngineProfile;

// The profile named `name`, created on first use (off the record when `offTheRecord` is true
// then) and owned by the application object.
QWebEngineProfile* webProfile(const QString& name, bool offTheRecord);
