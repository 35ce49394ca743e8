// SPDX-License-Identifier: MIT
#include "minihost/nvolite/webprofiles.h"

#include <QCoreApplication>
#include <QHash>
#include <QPointer>
#include <QWebEngineProfile>

#include "minihost/nvolite/webhost.h"

namespace {

bool& offTheRecord() {
    static bool on = false;
    return on;
}

}  // namespace

namespace minihost {

void setWebProfilesOffTheRecord(bool on) {
    offTheRecord() = on;
}

}  // namespace minihost

QWebEngineProfile* webProfile(const QString& name) {
    // Profiles outlive every page shown in them: the application object owns them.
    static QHash<QString, QPointer<QWebEngineProfile>> profiles;
    QPointer<QWebEngineProfile>& profile = profiles[name];
    if (!profile) {
        profile = offTheRecord() ? new QWebEngineProfile(QCoreApplication::instance())
                                 : new QWebEngineProfile(name, QCoreApplication::instance());
    }
    return profile;
}
