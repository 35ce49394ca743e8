// SPDX-License-Identifier: MIT
#include "minihost/nvolite/web/webprofiles.h"

#include <QCoreApplication>
#include <QHash>
#include <QPointer>
#include <QWebEngineProfile>

QWebEngineProfile* webProfile(const QString& name, bool offTheRecord) {
    // Profiles outlive every page shown in them: the application object owns them.
    static QHash<QString, QPointer<QWebEngineProfile>> profiles;
    QPointer<QWebEngineProfile>& profile = profiles[name];
    if (!profile) {
        profile = offTheRecord ? new QWebEngineProfile(QCoreApplication::instance())
                               : new QWebEngineProfile(name, QCoreApplication::instance());
    }
    return profile;
}
