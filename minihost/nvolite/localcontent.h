// SPDX-License-Identifier: MIT
// What a page may load and where it may go: the request filter that keeps a window's page to
// local content, and the page class that holds the navigation policy and closes its window when
// the page asks to.
#pragma once

#include <QPointer>
#include <QUrl>
#include <QWebEnginePage>
#include <QWebEngineUrlRequestInterceptor>
#include <atomic>

// file:, qrc:, data:, blob: and about: URLs: content that never leaves the machine.
bool isLocalUrl(const QUrl& url);

// Blocks every request for non-local content while local-only is on, then hands the request to
// the widget's own interceptor (if any).
class PageRequestFilter : public QWebEngineUrlRequestInterceptor {
    Q_OBJECT
public:
    PageRequestFilter(QWebEngineUrlRequestInterceptor* next, QObject* parent);
    void setLocalOnly(bool on) { m_localOnly = on; }
    bool localOnly() const { return m_localOnly; }
    void interceptRequest(QWebEngineUrlRequestInfo& info) override;

private:
    QPointer<QWebEngineUrlRequestInterceptor> m_next;
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
