// SPDX-License-Identifier: MIT
#include "nvolite/zxcommonwebwidget.h"

#include <QFile>
#include <QVBoxLayout>
#include <QWebChannel>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineView>

#include "minihost/nvolite/bridgechannel.h"
#include "minihost/nvolite/localcontent.h"
#include "minihost/nvolite/webhost.h"
#include "minihost/nvolite/webprofiles.h"
#include "minihost/nvolite/zxcommonwebwidget_p.h"
#include "minihost/nvolite/zxwebviewcontainer_p.h"
#include "nvolite/zxcommonjsapi.h"

namespace nvolite {

namespace {

QString resourceText(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return QString();
    return QString::fromUtf8(file.readAll());
}

// qwebchannel.js and the adapter run as one function, so the page gets window.zxHost and none
// of the channel's names.
QWebEngineScript hostAdapterScript() {
    QWebEngineScript script;
    script.setName(QStringLiteral("zxhost"));
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setRunsOnSubFrames(false);
    script.setSourceCode(
        QStringLiteral("(function () {\n") +
        resourceText(QStringLiteral(":/qtwebchannel/qwebchannel.js")) + QStringLiteral("\n") +
        resourceText(QStringLiteral(":/nvolite/zxhostadapter.js")) + QStringLiteral("\n})();\n"));
    return script;
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
    // The page (inside the container) uses the interceptor until it is gone.
    delete d->container;
    delete d->interceptor;
}

bool ZxCommonWebWidget::init(const QString& url, const QString& name, bool transparent) {
    if (d->initialised) return false;
    ZxCommonJsApi* api = createJsApi();
    if (api && !api->init()) {
        delete api;
        return false;
    }
    ZxWebViewContainerPrivate* c = d->container->d_func();
    c->url = QUrl(url);
    c->jsApi = api;
    c->bridge = new BridgeChannel(d->container);
    d->interceptor = createUrlRequestInterceptor();
    if (minihost::webRendering()) {
        c->view = new QWebEngineView(d->container);
        d->container->layout()->addWidget(c->view);
        c->page = new BridgedPage(webProfile(name), c->view);
        c->requestFilter = new PageRequestFilter(d->interceptor, c->page);
        c->requestFilter->setLocalOnly(d->localContentOnly);
        c->page->setUrlRequestInterceptor(c->requestFilter);
        c->page->setRequestFilter(c->requestFilter);
        c->page->setHome(c->url);
        c->page->setNavigationAllowed(!api || api->allowNavigation());
        if (transparent) {
            setAttribute(Qt::WA_TranslucentBackground);
            c->page->setBackgroundColor(Qt::transparent);
        }
        c->channel = new QWebChannel;
        c->channel->registerObject(QStringLiteral("zxBridge"), c->bridge);
        c->page->setWebChannel(c->channel);
        c->page->scripts().insert(hostAdapterScript());
        // The page's window.close() closes the window it is shown in.
        connect(c->page, &QWebEnginePage::windowCloseRequested, this,
                [this] { window()->close(); });
        c->view->setPage(c->page);
        c->page->load(c->url);
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
    if (PageRequestFilter* filter = widget.webViewContainer()->d_func()->requestFilter)
        filter->setLocalOnly(on);
}

}  // namespace nvolite
