// SPDX-License-Identifier: MIT
// A bridge and a window for the framework's tests: slots that echo, stay silent, close, and one
// the page must not reach.
#pragma once

#include <QJsonDocument>
#include <QStringList>

#include "nvolite/zxcommonjsapi.h"
#include "nvolite/zxcommonwebwidget.h"

class EchoApi : public nvolite::ZxCommonJsApi {
    Q_OBJECT
public:
    using nvolite::ZxCommonJsApi::ZxCommonJsApi;
    QStringList calls;        // method names, in order
    QStringList browserUrls;  // what openPromeBrowser carried
    bool refuseInit = false;
    bool remoteAllowed = true;
    bool navigationAllowed = true;

    bool init() override { return !refuseInit; }
    bool allowRemoteOrigin() override { return remoteAllowed; }
    bool allowNavigation() override { return navigationAllowed; }

public slots:
    // Answers the arguments as parsed, as compact JSON text.
    void echo(ZxWebViewJSContext& context) {
        calls << context.method();
        setResult(context, QString::fromUtf8(QJsonDocument::fromVariant(parseContextArgs(context))
                                                 .toJson(QJsonDocument::Compact)));
    }
    // Sets no result: the page receives null.
    void silent(ZxWebViewJSContext& context) { calls << context.method(); }
    // Answers, then closes the window.
    void closeMe(ZxWebViewJSContext& context) {
        calls << context.method();
        setResult(context, QStringLiteral("closing"));
        closeWindow();
    }
    // Not callable by the page: it does not take the call's context.
    void plain() { calls << QStringLiteral("plain"); }
    void recordBrowser(const QString& url) { browserUrls << url; }

private slots:
    // Private slots are callable too: a bridge's methods are usually private.
    void hidden(ZxWebViewJSContext& context) {
        calls << context.method();
        setResult(context, 7);
    }
};

class EchoWindow : public nvolite::ZxCommonWebWindow {
    Q_OBJECT
public:
    explicit EchoWindow(QWidget* parent = nullptr, bool resizable = false, int margin = 0)
        : nvolite::ZxCommonWebWindow(parent, resizable, false, margin) {}
    EchoApi* api = nullptr;
    bool refuseInit = false;
    bool remoteAllowed = true;
    bool navigationAllowed = true;

    nvolite::ZxCommonJsApi* createJsApi() override {
        api = new EchoApi(webViewContainer());
        api->refuseInit = refuseInit;
        api->remoteAllowed = remoteAllowed;
        api->navigationAllowed = navigationAllowed;
        connect(api, SIGNAL(openPromeBrowser(QString)), api, SLOT(recordBrowser(QString)));
        return api;
    }
};
