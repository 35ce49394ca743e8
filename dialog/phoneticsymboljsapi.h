// SPDX-License-Identifier: MIT
// The dialog page's bridge. Its five methods, in this order: getPhoneticText (the readings
// document), setPhoneticText (write the confirmed readings, then close), changeSize (fit the
// window to the page), onOpenPromeBrowser (the page's help link, raised through
// zxHost.openBrowser) and onGetIsEnterprise (the edition flag).
#pragma once

#include "nvolite/zxcommonjsapi.h"

class ZPhoneticSymbolJsApi : public nvolite::ZxCommonJsApi {
    Q_OBJECT
public:
    // Connects the base's openPromeBrowser signal to onOpenPromeBrowser.
    explicit ZPhoneticSymbolJsApi(ZxWebViewContainer* container);
    ~ZPhoneticSymbolJsApi() override;

    // The dialog's page is local and stays where it was opened: both answer false.
    bool allowRemoteOrigin() override;
    bool allowNavigation() override;

private slots:
    // Result: the text of {"callstatus":"ok","result":<readings document or null>}; with
    // {"text": ...} the document of that text instead of the selection's.
    void getPhoneticText(ZxWebViewJSContext& context);
    // {"styleType", "bracketType", "phonetic": "<JSON array text>"}: applies the valid items
    // (if any) to the slide, answers {"callstatus":"ok"}, and closes the window in every case.
    void setPhoneticText(ZxWebViewJSContext& context);
    // {"width", "height"}: with both non-zero and the dialog open, the dialog becomes
    // width + 1 by height + 1 (scaled, truncated). No result.
    void changeSize(ZxWebViewJSContext& context);
    // Opens `url` + "&app_type=client&app_name=...&app_version=...&app_dist=" in the browser. The
    // first URL is kept for the whole process: later calls open it again whatever they carry.
    // An empty url is ignored.
    void onOpenPromeBrowser(const QString& url);
    // Result: the text {"isEnterprise":1} or {"isEnterprise":0}.
    void onGetIsEnterprise(ZxWebViewJSContext& context);
};
