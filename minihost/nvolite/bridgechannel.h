// SPDX-License-Identifier: MIT
// The one object the web channel publishes to a page. It only delegates: the page's adapter
// (zxhostadapter.js) calls `call`, which runs the call on the container's bridge.
#pragma once

#include <QObject>
#include <QString>
#include <QVariantMap>

class ZxWebViewContainer;

class BridgeChannel : public QObject {
    Q_OBJECT
public:
    explicit BridgeChannel(ZxWebViewContainer* container);

    // The reply of nvolite::dispatchBridgeCall on the container's bridge, or {"ok": false, ...}
    // when the container has no bridge.
    Q_INVOKABLE QVariantMap call(const QString& method, const QString& argumentsJson);

private:
    ZxWebViewContainer* m_container;
};
