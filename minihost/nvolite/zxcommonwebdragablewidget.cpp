// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QMouseEvent>
#include <QWindow>

#include "minihost/nvolite/descendantevents.h"
#include "minihost/nvolite/zxcommonwebwidget_p.h"
#include "nvolite/zxcommonwebwidget.h"

namespace nvolite {

ZxCommonWebDragableWidget::ZxCommonWebDragableWidget(QWidget* parent)
    : ZxCommonWebWidget(parent), d(std::make_unique<ZxCommonWebDragableWidgetPrivate>()) {
    // The page covers the whole widget, so the mouse reaches the web view's own widgets first.
    watchDescendants(this, this);
}

ZxCommonWebDragableWidget::~ZxCommonWebDragableWidget() = default;

bool ZxCommonWebDragableWidget::init(const QString& url, const QString& name) {
    return ZxCommonWebWidget::init(url, name, false);
}

void ZxCommonWebDragableWidget::setTitleBarRect(const QRect& rect) {
    d->titleBar = rect;
}

QRect ZxCommonWebDragableWidget::titleBarRect() const {
    return d->titleBar;
}

bool ZxCommonWebDragableWidget::eventFilter(QObject* watched, QEvent* event) {
    watchNewChild(event, this);
    if (!watched->isWidgetType()) return false;
    // The events are never consumed: the title bar's own buttons still get their clicks, and a
    // press only becomes a drag once it has moved beyond the drag distance.
    switch (event->type()) {
        case QEvent::MouseButtonPress: {
            auto* mouse = static_cast<QMouseEvent*>(event);
            const QPoint local = static_cast<QWidget*>(watched)->mapTo(this, mouse->pos());
            if (mouse->button() == Qt::LeftButton && d->titleBar.contains(local)) {
                d->pressed = true;
                d->dragging = false;
                d->pressGlobal = mouse->globalPos();
                d->windowAtPress = window()->pos();
            }
            break;
        }
        case QEvent::MouseMove: {
            auto* mouse = static_cast<QMouseEvent*>(event);
            if (!d->pressed || !(mouse->buttons() & Qt::LeftButton)) break;
            const QPoint moved = mouse->globalPos() - d->pressGlobal;
            if (!d->dragging && moved.manhattanLength() < QApplication::startDragDistance()) break;
            if (!d->dragging) {
                d->dragging = true;
                // The window system moves the window itself where it can; the offscreen platform
                // cannot, and then the window follows the mouse here.
                QWindow* handle = window()->windowHandle();
                if (handle && handle->startSystemMove()) {
                    d->pressed = false;
                    break;
                }
            }
            window()->move(d->windowAtPress + moved);
            break;
        }
        case QEvent::MouseButtonRelease:
            d->pressed = false;
            d->dragging = false;
            break;
        default:
            break;
    }
    return false;
}

}  // namespace nvolite
