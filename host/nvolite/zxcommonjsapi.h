// SPDX-License-Identifier: MIT
// The script bridge between a web page and native code.
//
// The page calls `window.zxHost.call(method, args)`. The framework routes the call to the slot
// named `method` of the page's ZxCommonJsApi, taking a `ZxWebViewJSContext&`, invoked directly
// on the GUI thread; a name with no such slot answers an error to the page. The slot reads the
// arguments with parseContextArgs() and answers with setResult(); the page's promise resolves
// with that result (null when the slot set none).
#pragma once

#include <QMap>
#include <QObject>
#include <QString>
#include <QVariant>
#include <memory>

#include "hostexport.h"

class ZxWebViewContainer;
class ZxWebViewJSContextPrivate;

// One call from the page: its method name, its arguments (JSON text of an object) and the result
// the slot sets.
class ZHOST_API ZxWebViewJSContext {
public:
    ZxWebViewJSContext(const QString& method, const QString& argumentsJson);
    ~ZxWebViewJSContext();
    ZxWebViewJSContext(const ZxWebViewJSContext&) = delete;
    ZxWebViewJSContext& operator=(const ZxWebViewJSContext&) = delete;

    QString method() const;
    QString argumentsJson() const;
    bool hasResult() const;
    QVariant result() const;

    ZxWebViewJSContextPrivate* d_func() const { return d.get(); }

private:
    std::unique_ptr<ZxWebViewJSContextPrivate> d;
};

namespace nvolite {

class ZxCommonJsApiPrivate;

class ZHOST_API ZxCommonJsApi : public QObject {
    Q_OBJECT
public:
    // A bridge for the page shown in `container`.
    explicit ZxCommonJsApi(ZxWebViewContainer* container);
    ~ZxCommonJsApi() override;

    // Called once by the framework after construction; false refuses the bridge.
    virtual bool init();
    // Whether pages from origins other than local files may call this bridge (default true).
    virtual bool allowRemoteOrigin();
    // Whether the page may navigate away from the URL it was opened on (default true).
    virtual bool allowNavigation();

    // The call's arguments: the members of its JSON object as variants (numbers as int when
    // integral, nested arrays and objects as lists and maps). An empty map for anything else.
    QMap<QString, QVariant> parseContextArgs(ZxWebViewJSContext& context);
    // Stores the result the page receives for this call.
    void setResult(ZxWebViewJSContext& context, const QVariant& result);
    // Closes the window showing the page, queued: the current call's reply still reaches the page.
    void closeWindow();

    ZxWebViewContainer* container() const;

signals:
    // Raised by the page (`window.zxHost.openBrowser(url)`) to open `url` in the user's browser.
    // The host raises it for web addresses only (http, https; or an empty url): the page's
    // promise is rejected for any other, and the signal is not raised.
    void openPromeBrowser(const QString& url);

private:
    std::unique_ptr<ZxCommonJsApiPrivate> d;
};

}  // namespace nvolite
