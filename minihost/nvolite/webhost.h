// SPDX-License-Identifier: MIT
// The stand-in host's own controls over its web framework, for host programs and tests: whether
// pages are rendered at all, which profiles they use, and driving a page's bridge from native
// code. (What "open in the browser" does in a headless host is ZxApplication's.)
#pragma once

#include <QList>
#include <QString>
#include <QVariant>
#include <QVariantMap>

#include "hostexport.h"

class QUrl;
class QWidget;
namespace nvolite {
class ZxCommonWebWidget;
}

namespace minihost {

// On (the default): web widgets show their page in the web engine, which the first of them loads
// into the process. Off: init() sets up the bridge and remembers the URL but creates no web
// view and loads no web engine, so a host without a display (the command line) drives dialogs
// through callBridge() alone. Read when a widget is initialised.
ZHOST_API void setWebRendering(bool on);
ZHOST_API bool webRendering();

// Off (the default): each profile name is a persistent profile under the host's data directory.
// On: profiles are off the record (nothing written to disk), as tests want. Read when a profile
// is first used.
ZHOST_API void setWebProfilesOffTheRecord(bool on);
ZHOST_API bool webProfilesOffTheRecord();

// The web widgets that are initialised and alive, oldest first.
ZHOST_API QList<nvolite::ZxCommonWebWidget*> webWidgets();
// The URL `widget` was initialised with (empty before init).
ZHOST_API QString webWidgetUrl(const nvolite::ZxCommonWebWidget* widget);
// The widget's web view (a QWebEngineView), or null (not initialised, or not rendering).
ZHOST_API QWidget* webWidgetView(const nvolite::ZxCommonWebWidget* widget);
// The URL the widget's rendered page shows now; empty when nothing is rendered.
ZHOST_API QUrl webPageUrl(const nvolite::ZxCommonWebWidget* widget);

// Calls the bridge of `widget` exactly as its page does with zxHost.call(method, args):
// `argumentsJson` is the JSON text of the arguments object. The reply is the one the page's
// adapter receives: {"ok": true, "result": <result or invalid QVariant>} or
// {"ok": false, "error": "<method>: <why>"}. Works whether or not the page is rendered;
// {"ok": false} with "no bridge" for a widget that is not initialised.
ZHOST_API QVariantMap callBridge(nvolite::ZxCommonWebWidget* widget, const QString& method,
                                 const QString& argumentsJson);

// Runs `script` in the rendered page of `widget` and waits (running the event loop) up to
// `timeoutMs` for its value. *ok false on timeout or when nothing is rendered.
ZHOST_API QVariant runPageScript(nvolite::ZxCommonWebWidget* widget, const QString& script,
                                 int timeoutMs, bool* ok = nullptr);
// Waits (running the event loop) until the attribute `name` of the page's <html> element is
// `value`; the page sets such an attribute when it has finished rendering. False on timeout or
// when the widget is closed or not rendered.
ZHOST_API bool waitForPageAttribute(nvolite::ZxCommonWebWidget* widget, const QString& name,
                                    const QString& value, int timeoutMs);

}  // namespace minihost
