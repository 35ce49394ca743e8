// SPDX-License-Identifier: MIT
// Private halves of the web widgets and the window, and the host's list of live web widgets.
#pragma once

#include <QPoint>
#include <QRect>

#include "nvolite/zxcommonwebwidget.h"

namespace nvolite {

class ZxCommonWebWidgetPrivate {
public:
    ZxWebViewContainer* container = nullptr;  // child widget filling the widget
    bool initialised = false;
    bool localContentOnly = false;  // set through ZxCommonWebWindow
};

class ZxCommonWebDragableWidgetPrivate {
public:
    QRect titleBar;
    bool pressed = false;   // left button went down inside the title bar
    bool dragging = false;  // the press has moved far enough to be a drag
    QPoint pressGlobal;
    QPoint windowAtPress;
};

// Keeps the widget's local-only request filter in step with the window's option.
void setLocalContentOnly(ZxCommonWebWidget& widget, bool on);

// The host's list of live, initialised web widgets (webhost.h).
void registerWebWidget(ZxCommonWebWidget* widget);
void unregisterWebWidget(ZxCommonWebWidget* widget);

}  // namespace nvolite

class WindowFrameHandler;

namespace nvolite {

class ZxCommonWebWindowPrivate {
public:
    bool resizable = false;
    int resizeMargin = 0;
    bool centerOnParent = false;
    bool centred = false;                   // centred once, at the first show
    WindowFrameHandler* handler = nullptr;  // owned by the window (QObject child)
};

}  // namespace nvolite
