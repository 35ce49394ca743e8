// SPDX-License-Identifier: MIT
// The web engine's side of the web framework. It lives in a module of its own
// (libnvolite_web.so, beside libnvolite) that libnvolite loads the first time a page is to be
// rendered, so a process that never renders a page (the command line, the benchmarks, most
// tests) never maps the web engine and everything under it. This header is the whole contract
// between the two: the module exports one function, nvoliteWebPart(), and everything else
// goes through these classes' virtual functions.
#pragma once

#include <QString>
#include <QUrl>
#include <QVariant>
#include <functional>
#include <memory>

class QObject;
class QWebEngineUrlRequestInterceptor;
class QWidget;

namespace nvolite {

// file:, qrc:, data:, blob: and about: URLs: content that never leaves the machine.
inline bool isLocalUrl(const QUrl& url) {
    const QString scheme = url.scheme();
    return scheme == QLatin1String("file") || scheme == QLatin1String("qrc") ||
           scheme == QLatin1String("data") || scheme == QLatin1String("blob") ||
           scheme == QLatin1String("about");
}

// What a page is shown with.
struct WebPageSetup {
    QWidget* container = nullptr;  // the view goes into its layout and fills it
    QUrl url;                      // loaded at once
    QString profileName;           // one profile per name and process
    bool offTheRecord = false;     // the profile keeps nothing on disk (read at its first use)
    QObject* bridge = nullptr;     // the one object the page's channel publishes (not owned)
    // Asked about each request the page's own filter lets through; owned by the page from now on.
    QWebEngineUrlRequestInterceptor* interceptor = nullptr;
    // Local content only: requests only for files under the page's own directory (and data:,
    // blob:, qrc:, about:), and no navigation away from its document.
    bool localContentOnly = false;
    bool navigationAllowed = true;  // false: the page stays on its document (fragments aside)
    bool transparent = false;       // the page's background shows what is behind the view
    std::function<void()> closeRequested;  // the page called window.close()
};

// One page in its view. Destroying it tears the page down before the view.
class WebPage {
public:
    virtual ~WebPage() = default;
    // The view, a child of the setup's container.
    virtual QWidget* view() const = 0;
    // The URL the page shows now.
    virtual QUrl url() const = 0;
    virtual void setLocalContentOnly(bool on) = 0;
    // Runs `script` in the page; `done` gets its value later, on the GUI thread, once (or never,
    // when the page goes first).
    virtual void runScript(const QString& script, std::function<void(const QVariant&)> done) = 0;
};

class WebPart {
public:
    virtual ~WebPart() = default;
    // A new page for `setup`, loading its URL.
    virtual std::unique_ptr<WebPage> showPage(const WebPageSetup& setup) = 0;
};

}  // namespace nvolite

// The module's one export: its web part, made on the first call and alive until the process
// ends.
extern "C" nvolite::WebPart* nvoliteWebPart();
