// SPDX-License-Identifier: MIT
// "Open in the browser" for hosts without a display: QDesktopServices hands the URL to a
// recorder instead of a browser.
#include <QCoreApplication>
#include <QDesktopServices>
#include <QObject>
#include <QUrl>
#include <cstdio>

#include "minihost/nvolite/webhost.h"

namespace {

QStringList& recorded() {
    static QStringList urls;
    return urls;
}

class UrlRecorder : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    bool print = false;

public slots:
    void openUrl(const QUrl& url) {
        recorded().append(url.toString());
        if (print)
            std::fprintf(stderr, "open in browser: %s\n", url.toString().toUtf8().constData());
    }
};

UrlRecorder*& recorder() {
    static UrlRecorder* instance = nullptr;
    return instance;
}

}  // namespace

namespace minihost {

void recordOpenedUrls(bool print) {
    if (!recorder()) {
        // Owned by the application object; the handlers go with it.
        recorder() = new UrlRecorder(QCoreApplication::instance());
        QObject::connect(recorder(), &QObject::destroyed, [] {
            QDesktopServices::unsetUrlHandler(QStringLiteral("http"));
            QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
            recorder() = nullptr;
        });
        QDesktopServices::setUrlHandler(QStringLiteral("http"), recorder(), "openUrl");
        QDesktopServices::setUrlHandler(QStringLiteral("https"), recorder(), "openUrl");
    }
    recorder()->print = print;
}

QStringList openedUrls() { return recorded(); }

void clearOpenedUrls() { recorded().clear(); }

}  // namespace minihost

#include "urlrecorder.moc"
