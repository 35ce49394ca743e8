// SPDX-License-Identifier: MIT
#include "minihost/nvolite/webhost.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QPointer>
#include <QTimer>
#include <QUrl>
#include <memory>

#include "minihost/nvolite/bridgechannel.h"
#include "minihost/nvolite/zxcommonwebwidget_p.h"
#include "minihost/nvolite/zxwebviewcontainer_p.h"

namespace {

bool& rendering() {
    static bool on = true;
    return on;
}

bool& offTheRecord() {
    static bool on = false;
    return on;
}

QList<nvolite::ZxCommonWebWidget*>& liveWidgets() {
    static QList<nvolite::ZxCommonWebWidget*> widgets;
    return widgets;
}

}  // namespace

namespace nvolite {

void registerWebWidget(ZxCommonWebWidget* widget) {
    liveWidgets().append(widget);
}

void unregisterWebWidget(ZxCommonWebWidget* widget) {
    liveWidgets().removeAll(widget);
}

}  // namespace nvolite

namespace minihost {

void setWebRendering(bool on) {
    rendering() = on;
}

bool webRendering() {
    return rendering();
}

void setWebProfilesOffTheRecord(bool on) {
    offTheRecord() = on;
}

bool webProfilesOffTheRecord() {
    return offTheRecord();
}

QList<nvolite::ZxCommonWebWidget*> webWidgets() {
    return liveWidgets();
}

QString webWidgetUrl(const nvolite::ZxCommonWebWidget* widget) {
    return widget->webViewContainer()->d_func()->url.toString();
}

QWidget* webWidgetView(const nvolite::ZxCommonWebWidget* widget) {
    const nvolite::WebPage* page = widget->webViewContainer()->d_func()->page.get();
    return page ? page->view() : nullptr;
}

QUrl webPageUrl(const nvolite::ZxCommonWebWidget* widget) {
    const nvolite::WebPage* page = widget->webViewContainer()->d_func()->page.get();
    return page ? page->url() : QUrl();
}

QVariantMap callBridge(nvolite::ZxCommonWebWidget* widget, const QString& method,
                       const QString& argumentsJson) {
    BridgeChannel* bridge = widget->webViewContainer()->d_func()->bridge;
    if (!bridge)
        return QVariantMap{
            {QStringLiteral("ok"), false},
            {QStringLiteral("error"), QStringLiteral("%1: the page has no bridge").arg(method)}};
    return bridge->call(method, argumentsJson);
}

QVariant runPageScript(nvolite::ZxCommonWebWidget* widget, const QString& script, int timeoutMs,
                       bool* ok) {
    if (ok) *ok = false;
    nvolite::WebPage* page = widget->webViewContainer()->d_func()->page.get();
    if (!page) return QVariant();
    // The callback may come after this function gave up waiting: it must not write to our stack.
    auto answer = std::make_shared<std::pair<bool, QVariant>>(false, QVariant());
    QEventLoop loop;
    QPointer<QEventLoop> waiting(&loop);
    page->runScript(script, [answer, waiting](const QVariant& value) {
        *answer = {true, value};
        if (waiting) waiting->quit();
    });
    QTimer::singleShot(timeoutMs, &loop, &QEventLoop::quit);
    if (!answer->first) loop.exec();
    if (ok) *ok = answer->first;
    return answer->second;
}

bool waitForPageAttribute(nvolite::ZxCommonWebWidget* widget, const QString& name,
                          const QString& value, int timeoutMs) {
    QPointer<nvolite::ZxCommonWebWidget> guard(widget);
    const QString script =
        QStringLiteral(
            "document.documentElement ? document.documentElement.getAttribute(%1) : null")
            .arg(QStringLiteral("'") +
                 QString(name).replace(QLatin1Char('\''), QStringLiteral("\\'")) +
                 QStringLiteral("'"));
    QElapsedTimer clock;
    clock.start();
    while (guard && clock.elapsed() < timeoutMs) {
        bool ok = false;
        const QVariant current =
            runPageScript(guard, script, qMax(1, timeoutMs - int(clock.elapsed())), &ok);
        if (!guard || !ok) return false;
        if (current.toString() == value) return true;
        QEventLoop pause;
        QTimer::singleShot(50, &pause, &QEventLoop::quit);
        pause.exec();
    }
    return false;
}

}  // namespace minihost
