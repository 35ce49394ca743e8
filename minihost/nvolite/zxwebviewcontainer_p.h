// SPDX-License-Identifier: MIT
// What a web view container holds: the view and its page (absent while the host does not render
// pages), the web channel, the object it publishes, and the page's bridge.
#pragma once

#include <QUrl>

#include "nvolite/zxcommonwebwidget.h"

class BridgeChannel;
class BridgedPage;
class PageRequestFilter;
class QWebChannel;
class QWebEngineView;
namespace nvolite {
class ZxCommonJsApi;
}

class ZxWebViewContainerPrivate {
public:
    QUrl url;                                    // the URL the page was opened on
    nvolite::ZxCommonJsApi* jsApi = nullptr;     // owned (child of the container)
    BridgeChannel* bridge = nullptr;             // owned (child of the container)
    QWebChannel* channel = nullptr;              // owned; null while not rendering
    QWebEngineView* view = nullptr;              // owned (child widget); null while not rendering
    BridgedPage* page = nullptr;                 // owned by the view
    PageRequestFilter* requestFilter = nullptr;  // owned by the page
};
