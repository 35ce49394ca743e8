// SPDX-License-Identifier: MIT
#include "minihost/nvolite/localcontent.h"

#include <QWebEngineUrlRequestInfo>

bool isLocalUrl(const QUrl& url) {
    const QString scheme = url.scheme();
    return scheme == QLatin1String("file") || scheme == QLatin1String("qrc") ||
           scheme == QLatin1String("data") || scheme == QLatin1String("blob") ||
           scheme == QLatin1String("about");
}

PageRequestFilter::PageRequestFilter(QWebEngineUrlRequestInterceptor* next, QObject* parent)
    : QWebEngineUrlRequestInterceptor(parent), m_next(next) {}

void PageRequestFilter::interceptRequest(QWebEngineUrlRequestInfo& info) {
    if (m_localOnly && !isLocalUrl(info.requestUrl())) {
        info.block(true);
        return;
    }
    if (m_next) m_next->interceptRequest(info);
}

namespace {

// The host opens pages as "file:///" + an absolute path (four slashes) while the engine reports
// them with three: a local file is the same document whatever the number of leading slashes.
QString documentKey(const QUrl& url) {
    QUrl document = url.adjusted(QUrl::RemoveFragment);
    if (document.isLocalFile() || document.scheme() == QLatin1String("file")) {
        QString path = document.path();
        while (path.startsWith(QLatin1String("//"))) path.remove(0, 1);
        document.setPath(path);
    }
    return document.toString();
}

bool sameDocument(const QUrl& a, const QUrl& b) {
    return documentKey(a) == documentKey(b);
}

}  // namespace

BridgedPage::BridgedPage(QWebEngineProfile* profile, QObject* parent)
    : QWebEnginePage(profile, parent) {}

bool BridgedPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) {
    const bool localOnly = m_filter && m_filter->localOnly();
    if (m_navigationAllowed && !localOnly) return true;
    if (localOnly && !isLocalUrl(url)) return false;
    if (m_navigationAllowed) return true;
    return sameDocument(url, m_home);
}
