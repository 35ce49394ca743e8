// SPDX-License-Identifier: MIT
// Widgets that show a web page with a script bridge: the plain web widget, the one dragged by
// its title-bar area, and the frameless window.
#pragma once

#include <QRect>
#include <QString>
#include <QWidget>
#include <memory>

#include "hostexport.h"

class QWebEngineUrlRequestInterceptor;
class ZxWebViewContainerPrivate;

// The widget that holds a page's web view and its bridge.
class ZHOST_API ZxWebViewContainer : public QWidget {
    Q_OBJECT
public:
    explicit ZxWebViewContainer(QWidget* parent = nullptr);
    ~ZxWebViewContainer() override;

    ZxWebViewContainerPrivate* d_func() const { return d.get(); }

private:
    std::unique_ptr<ZxWebViewContainerPrivate> d;
};

namespace nvolite {

class ZxCommonJsApi;
class ZxCommonWebWidgetPrivate;
class ZxCommonWebDragableWidgetPrivate;
class ZxCommonWebWindowPrivate;

class ZHOST_API ZxCommonWebWidget : public QWidget {
    Q_OBJECT
public:
    explicit ZxCommonWebWidget(QWidget* parent = nullptr);
    ~ZxCommonWebWidget() override;

    // Creates the web view in a profile named `name` and loads `url`; the bridge comes from
    // createJsApi(). With `transparent` true the page's background shows through. False when
    // already initialised or when the bridge refuses to initialise.
    virtual bool init(const QString& url, const QString& name, bool transparent);
    // The bridge for the page; the widget owns it. The default has no methods of its own.
    virtual ZxCommonJsApi* createJsApi();
    // An interceptor for the page's requests (the widget owns it), or null for none.
    virtual QWebEngineUrlRequestInterceptor* createUrlRequestInterceptor();

    ZxWebViewContainer* webViewContainer() const;

    ZxCommonWebWidgetPrivate* d_func() const { return d.get(); }

private:
    std::unique_ptr<ZxCommonWebWidgetPrivate> d;
};

// A web widget that moves its window when the title-bar rectangle is dragged.
class ZHOST_API ZxCommonWebDragableWidget : public ZxCommonWebWidget {
    Q_OBJECT
public:
    explicit ZxCommonWebDragableWidget(QWidget* parent = nullptr);
    ~ZxCommonWebDragableWidget() override;

    using ZxCommonWebWidget::init;
    // init(url, name, false).
    bool init(const QString& url, const QString& name);
    // The draggable area, in the widget's coordinates.
    void setTitleBarRect(const QRect& rect);
    QRect titleBarRect() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::unique_ptr<ZxCommonWebDragableWidgetPrivate> d;
};

// A frameless top-level window showing a page. It adds no signals or slots, so it has no meta
// object of its own: a window derived from it has ZxCommonWebDragableWidget as its superclass.
class ZHOST_API ZxCommonWebWindow : public ZxCommonWebDragableWidget {
public:
    // `resizable`: the user may resize it by its edges (`resizeMargin` pixels wide);
    // `showInTaskbar`: it appears in the task bar as a window of its own.
    ZxCommonWebWindow(QWidget* parent, bool resizable, bool showInTaskbar, int resizeMargin);
    ~ZxCommonWebWindow() override;

    // Centre the window over its parent's window when it is first shown.
    void setCenterOnParent(bool on);
    // Let the page load only local files: no network requests, no navigation elsewhere.
    void setLocalContentOnly(bool on);
    bool centerOnParent() const;
    bool localContentOnly() const;

private:
    std::unique_ptr<ZxCommonWebWindowPrivate> d;
};

}  // namespace nvolite

// Placement helpers for windows related to the main window.
class ZHOST_API ZxLocateHelpFunc {
public:
    // Places `widget` relative to the main window of its parent (or the current main window):
    // `position` 0 = centred. `horizontally`/`vertically` choose the axes adjusted; the widget
    // is kept on the screen.
    static void adjustToRelatedMainWindow(QWidget* widget, int position, bool horizontally,
                                          bool vertically);
};
