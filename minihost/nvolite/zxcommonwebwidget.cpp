// SPDX-License-Identifier: MIT
#include "nvolite/zxcommonwebwidget.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTimer>
#include <QVBoxLayout>

#include "minihost/nvolite/bridgechannel.h"
#include "minihost/nvolite/webhost.h"
#include "minihost/nvolite/webpart.h"
#include "minihost/nvolite/webpartloader.h"
#include "minihost/nvolite/zxcommonwebwidget_p.h"
#include "minihost/nvolite/zxwebviewcontainer_p.h"
#include "nvo/zapplication.h"
#include "nvolite/zxcommonjsapi.h"

namespace nvolite {

namespace {

const unsigned int kErrorMessage = ZxApplication::IconError | ZxApplication::ButtonsOk;

// Tells the user, through the host's message box, that the page cannot be shown, and closes the
// window the widget is (a widget inside another window leaves it open). Queued: whoever asked
// for the page finishes first, as it would have shown it.
void reportPageNotShown(ZxCommonWebWidget* widget, const QString& url, const QString& why) {
    const QString text = QStringLiteral("The page %1 cannot be shown: %2.").arg(url, why);
    QPointer<ZxCommonWebWidget> guard(widget);
    QTimer::singleShot(0, [guard, text] {
        if (auto* application = qobject_cast<ZxApplication*>(QCoreApplication::instance()))
            application->messageBox(text, kErrorMessage);
        if (guard && guard->isWindow()) guard->close();
    });
}

}  // namespace

ZxCommonWebWidget::ZxCommonWebWidget(QWidget* parent)
    : QWidget(parent), d(std::make_unique<ZxCommonWebWidgetPrivate>()) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    d->container = new ZxWebViewContainer(this);
    layout->addWidget(d->container);
}

ZxCommonWebWidget::~ZxCommonWebWidget() {
    unregisterWebWidget(this);
    delete d->container;
}

bool ZxCommonWebWidget::init(const QString& url, const QString& name, bool transparent) {
    if (d->initialised) return false;
    // The web engine is loaded here, by the first page a process renders.
    WebPart* part = nullptr;
    if (minihost::webRendering()) {
        QString why;
        part = webPart(&why);
        if (!part) {
            reportPageNotShown(this, url, why);
            return false;
        }
    }
    ZxCommonJsApi* api = createJsApi();
    if (api && !api->init()) {
        delete api;
        return false;
    }
    ZxWebViewContainerPrivate* c = d->container->d_func();
    c->url = QUrl(url);
    c->jsApi = api;
    c->bridge = new BridgeChannel(d->container);
    if (part) {
        WebPageSetup setup;
        setup.container = d->container;
        setup.url = c->url;
        setup.profileName = name;
        setup.offTheRecord = minihost::webProfilesOffTheRecord();
        setup.bridge = c->bridge;
        setup.interceptor = createUrlRequestInterceptor();
        setup.localContentOnly = d->localContentOnly;
        setup.navigationAllowed = !api || api->allowNavigation();
        setup.transparent = transparent;
        // The page lives inside this widget, so it never outlives it.
        setup.closeRequested = [this] { window()->close(); };
        if (transparent) setAttribute(Qt::WA_TranslucentBackground);
        c->page = part->showPage(setup);
    }
    d->initialised = true;
    registerWebWidget(this);
    return true;
}

ZxCommonJsApi* ZxCommonWebWidget::createJsApi() {
    return new ZxCommonJsApi(d->container);
}

QWebEngineUrlRequestInterceptor* ZxCommonWebWidget::createUrlRequestInterceptor() {
    return nullptr;
}

ZxWebViewContainer* ZxCommonWebWidget::webViewContainer() const {
    return d->container;
}

void setLocalContentOnly(ZxCommonWebWidget& widget, bool on) {
    widget.d_func()->localContentOnly = on;
    if (WebPage* page = widget.webViewContainer()->d_func()->page.get())
        page->setLocalContentOnly(on);
}

}  // namespace nvolite
