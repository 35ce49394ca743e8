// SPDX-License-Identifier: MIT
// The "PhoneticSymbol" dialog: a frameless, window-modal web window of 627 by 669 design units,
// dragged by its top 40, showing the add-on's page on its pinyin view or its guide view.
#pragma once

#include "nvolite/zxcommonwebwidget.h"

class QCloseEvent;

class ZPhoneticSymbolWebWindow : public nvolite::ZxCommonWebWindow {
    Q_OBJECT
public:
    // Sizes (through the host's scale, truncated), title, centred on the parent, local content
    // only, object name "ZPhoneticSymbolWebWindow", flags Qt::Dialog | Qt::FramelessWindowHint,
    // window-modal. Shows nothing yet.
    explicit ZPhoneticSymbolWebWindow(QWidget* parent);
    ~ZPhoneticSymbolWebWindow() override;

    // Opens the page's pinyin view, then shows the window.
    void showPinyinPage();
    // Opens the page's guide view, centres the window on the main window, then shows it.
    void showGuidePage();

    // The page's bridge: a ZPhoneticSymbolJsApi on this window's web view container.
    nvolite::ZxCommonJsApi* createJsApi() override;
    // No request interceptor: the window's local-content option is all the filtering it needs.
    QWebEngineUrlRequestInterceptor* createUrlRequestInterceptor() override;

signals:
    // The window is closing (by the user, or by the page through the bridge).
    void signalClose();

protected:
    // Emits signalClose(), then closes as any widget.
    void closeEvent(QCloseEvent* event) override;
};
