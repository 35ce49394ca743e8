// SPDX-License-Identifier: MIT
// The client information record: collector settings and client identity, filled once per
// process from the host's registry, settings, product and user-information queries.
#pragma once

#include <QString>

struct ClientInfo {
    // Registry "ICNotSend" (0 when absent); 1 when the product disables collection.
    int notSend = 0;
    QString collectServer;  // the host's collection server address
    QString clientId;       // "infoGUID" without "-", "{", "}" (registry, else common settings;
                            // empty when the registry cannot be opened)
    QString reserved1;      // always empty
    QString reserved2;      // always empty
    QString appVersion;     // the host's version text; empty when unavailable
    QString appDist;        // always empty, deliberately: the page's URL carries "&app_dist="
    QString reserved3;      // always empty
    QString language;       // the user-interface language, format 1 ("zh_CN")

    // The record, filled by collect() on first use (once, even under concurrent first calls)
    // and never refreshed; destroyed at process exit.
    static const ClientInfo& instance();
    // Reads a fresh record, field by field. Every failing host query leaves its field empty or
    // zero; reading never fails as a whole.
    static ClientInfo collect();
};

// `id` without its "-", "{" and "}", built from no more than its first 1023 units (the rest is
// dropped): "{A1B2-C3D4}" gives "A1B2C3D4".
QString cleanClientId(const QString& id);
