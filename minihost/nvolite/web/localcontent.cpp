// SPDX-License-Identifier: MIT
#include "minihost/nvolite/web/localcontent.h"

#include <QDir>
#include <QWebEngineUrlRequestInfo>

#include "minihost/nvolite/webpart.h"

namespace {

// The host opens pages as "file:///" + an absolute path (four slashes) while the engine reports
// them with three: a local file is the same file whatever the number of leading slashes. The
// path is also cleaned of "." and ".." steps, so that a request cannot climb out of a directory.
QString filePath(const QUrl& url) {
    QString path = url.path();
    while (path.startsWith(QLatin1String("//"))) path.remove(0, 1);
    return QDir::cleanPath(path);
}

QString fileDirectory(const QUrl& url) {
    QString directory = filePath(url);
    directory.truncate(directory.lastIndexOf(QLatin1Char('/')) + 1);
    return directory;
}

QString documentKey(const QUrl& url) {
    QUrl document = url.adjusted(QUrl::RemoveFragment);
    if (document.scheme() == QLatin1String("file")) document.setPath(filePath(document));
    return document.toString();
}

bool sameDocument(const QUrl& a, const QUrl& b) {
    return documentKey(a) == documentKey(b);
}

}  // namespace

PageRequestFilter::PageRequestFilter(const QUrl& home, QWebEngineUrlRequestInterceptor* next,
                                     QObject* parent)
    : QWebEngineUrlRequestInterceptor(parent),
      m_next(next),
      m_host(home.host()),
      m_directory(home.scheme() == QLatin1String("file") ? fileDirectory(home) : QString()) {}

bool PageRequestFilter::allowedWhenLocalOnly(const QUrl& url) const {
    if (!nvolite::isLocalUrl(url)) return false;
    if (url.scheme() != QLatin1String("file")) return true;
    // A page that is not a file itself has no directory of its own to read from.
    return !m_directory.isEmpty() && url.host() == m_host && filePath(url).startsWith(m_directory);
}

void PageRequestFilter::interceptRequest(QWebEngineUrlRequestInfo& info) {
    if (m_localOnly && !allowedWhenLocalOnly(info.requestUrl())) {
        info.block(true);
        return;
    }
    if (m_next) m_next->interceptRequest(info);
}

BridgedPage::BridgedPage(QWebEngineProfile* profile, QObject* parent)
    : QWebEnginePage(profile, parent) {}

bool BridgedPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) {
    const bool localOnly = m_filter && m_filter->localOnly();
    if (m_navigationAllowed && !localOnly) return true;
    if (localOnly && !nvolite::isLocalUrl(url)) return false;
    if (m_navigationAllowed) return true;
    return sameDocument(url, m_home);
}
