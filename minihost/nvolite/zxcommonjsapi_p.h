// SPDX-License-Identifier: MIT
// Private halves of the script bridge and of one call's context, and the dispatch of a page call.
#pragma once

#include <QString>
#include <QVariant>
#include <QVariantMap>

#include "nvolite/zxcommonjsapi.h"

class ZxWebViewJSContextPrivate {
public:
    QString method;
    QString argumentsJson;
    QVariant result;
    bool hasResult = false;
};

namespace nvolite {

class ZxCommonJsApiPrivate {
public:
    ZxWebViewContainer* container = nullptr;
};

// Runs one call of the page on `api`: the slot named `method` taking `ZxWebViewJSContext&`,
// invoked directly; "openPromeBrowser" with {"url": ...} raises that signal instead, for an http
// or https address (or an empty one) only. The reply is what the page's adapter receives:
// {"ok": true, "result": <the slot's result or null>} or {"ok": false, "error": <why>} (unknown
// method, a bridge that refuses remote pages, or "openPromeBrowser: not a web address: <url>").
QVariantMap dispatchBridgeCall(ZxCommonJsApi& api, const QString& method,
                               const QString& argumentsJson, bool fromRemotePage);

}  // namespace nvolite
