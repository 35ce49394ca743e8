// SPDX-License-Identifier: MIT
// What a web view container holds: the page in its view (absent while the host does not render
// pages), the object the page's channel publishes, and the page's bridge.
#pragma once

#include <QUrl>
#include <memory>

#include "minihost/nvolite/webpart.h"
#include "nvolite/zxcommonwebwidget.h"

class BridgeChannel;
namespace nvolite {
class ZxCommonJsApi;
}

class ZxWebViewContainerPrivate {
public:
    QUrl url;                                 // the URL the page was opened on
    nvolite::ZxCommonJsApi* jsApi = nullptr;  // owned (child of the container)
    BridgeChannel* bridge = nullptr;          // owned (child of the container)
    std::unique_ptr<nvolite::WebPage> page;   // null while not rendering
};
