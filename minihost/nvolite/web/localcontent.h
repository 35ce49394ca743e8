// SPDX-License-Identifier: MIT
// What a page may load and where it may go: the request filter that keeps a window's page to
// its own local content, and the page class that holds the navigation policy.
#pragma once

#include <QPointer>
#include <QUrl>
#include <QWebEnginePage>
#include <QWebEngineUrlRequestInterceptor>
#include <atomic>

// While local-only is on, lets through only the requests for files under the directory of the
// page's own document (`home`) and for data:, blob:, qrc: and about: URLs; every other request
// is blocked. What it lets through then goes to the widget's own interceptor (if any).
// Example: home file:////opt/page/index.html lets file:///opt/page/page.css and
// file:///opt/page/img/a.svg through, and blocks file:///etc/hostname and https://example.org/.
class PageRequestFilter : public QWebEngineUrlRequestInterceptor {
    Q_OBJECT
public:
    PageRequestFilter(const QUrl& home, QWebEngineUrlRequestInterceptor* next, QObject* parent);
    void setLocalOnly(bool on) { m_localOnly = on; }
    bool localOnly() const { return m_localOnly; }
    void interceptRequest(QWebEngineUrlRequestInfo& info) override;

private:
    bool allowedWhenLocalOnly(const QUrl& url) const;

    QPointer<QWebEngineUrlRequestInterceptor> m_next;
    const QString m_host;       // the home document's file host (normally empty)
    const QString m_directory;  // the home document's directory, ending in '/'
    std::atomic<bool> m_localOnly{false};
};

// The page of a web widget. Navigation is refused when it would leave the page's own document
// (another file, or anything non-local) and either the bridge refuses navigation or the window
// keeps to local content; moving between the document's views (its fragment) is always allowed.
class BridgedPage : public QWebEnginePage {
    Q_OBJECT
public:
    BridgedPage(QWebEngineProfile* profile, QObject* parent);
    void setHome(const QUrl& url) { m_home = url; }
    void setNavigationAllowed(bool on) { m_navigationAllowed = on; }
    void setRequestFilter(PageRequestFilter* filter) { m_filter = filter; }

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;

private:
    QUrl m_home;
    bool m_navigationAllowed = true;
    PageRequestFilter* m_filter = nullptr;
};
