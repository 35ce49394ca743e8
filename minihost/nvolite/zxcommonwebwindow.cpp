// SPDX-License-Identifier: MIT
#include <QMouseEvent>
#include <QWindow>

#include "minihost/nvolite/descendantevents.h"
#include "minihost/nvolite/zxcommonwebwidget_p.h"
#include "nvolite/zxcommonwebwidget.h"

// The frame a frameless window lacks: resizing by its edges, and centring at the first show.
class WindowFrameHandler : public QObject {
public:
    WindowFrameHandler(nvolite::ZxCommonWebWindow* window, nvolite::ZxCommonWebWindowPrivate* d)
        : QObject(window), m_window(window), m_d(d) {
        watchDescendants(window, this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        watchNewChild(event, this);
        if (watched == m_window && event->type() == QEvent::Show && m_d->centerOnParent &&
            !m_d->centred) {
            m_d->centred = true;
            ZxLocateHelpFunc::adjustToRelatedMainWindow(m_window, 0, true, true);
        }
        if (m_d->resizable && watched->isWidgetType())
            return resize(static_cast<QWidget*>(watched), event);
        return false;
    }

private:
    Qt::Edges edgesAt(const QPoint& pos) const {
        Qt::Edges edges;
        const int margin = m_d->resizeMargin;
        if (pos.x() < margin) edges |= Qt::LeftEdge;
        if (pos.x() >= m_window->width() - margin) edges |= Qt::RightEdge;
        if (pos.y() < margin) edges |= Qt::TopEdge;
        if (pos.y() >= m_window->height() - margin) edges |= Qt::BottomEdge;
        return edges;
    }

    // Consumes the presses and moves that resize, so the page does not see them as its own.
    bool resize(QWidget* watched, QEvent* event) {
        if (event->type() == QEvent::MouseButtonPress) {
            auto* mouse = static_cast<QMouseEvent*>(event);
            m_edges = edgesAt(watched->mapTo(m_window, mouse->pos()));
            if (mouse->button() != Qt::LeftButton || !m_edges) return false;
            QWindow* handle = m_window->windowHandle();
            if (handle && handle->startSystemResize(m_edges)) {
                m_edges = {};
                return true;
            }
            m_pressGlobal = mouse->globalPos();
            m_geometryAtPress = m_window->geometry();
            return true;
        }
        if (event->type() == QEvent::MouseMove && m_edges) {
            const QPoint moved = static_cast<QMouseEvent*>(event)->globalPos() - m_pressGlobal;
            QRect geometry = m_geometryAtPress;
            const QSize minimum = m_window->minimumSize().expandedTo(
                QSize(2 * m_d->resizeMargin, 2 * m_d->resizeMargin));
            if (m_edges & Qt::LeftEdge)
                geometry.setLeft(
                    qMin(geometry.left() + moved.x(), geometry.right() - minimum.width() + 1));
            if (m_edges & Qt::RightEdge)
                geometry.setRight(
                    qMax(geometry.right() + moved.x(), geometry.left() + minimum.width() - 1));
            if (m_edges & Qt::TopEdge)
                geometry.setTop(
                    qMin(geometry.top() + moved.y(), geometry.bottom() - minimum.height() + 1));
            if (m_edges & Qt::BottomEdge)
                geometry.setBottom(
                    qMax(geometry.bottom() + moved.y(), geometry.top() + minimum.height() - 1));
            m_window->setGeometry(geometry);
            return true;
        }
        if (event->type() == QEvent::MouseButtonRelease && m_edges) {
            m_edges = {};
            return true;
        }
        return false;
    }

    nvolite::ZxCommonWebWindow* m_window;
    nvolite::ZxCommonWebWindowPrivate* m_d;
    Qt::Edges m_edges;
    QPoint m_pressGlobal;
    QRect m_geometryAtPress;
};

namespace nvolite {

ZxCommonWebWindow::ZxCommonWebWindow(QWidget* parent, bool resizable, bool showInTaskbar,
                                     int resizeMargin)
    : ZxCommonWebDragableWidget(parent), d(std::make_unique<ZxCommonWebWindowPrivate>()) {
    d->resizable = resizable;
    d->resizeMargin = qMax(0, resizeMargin);
    // A tool window stays out of the task bar.
    setWindowFlags((showInTaskbar ? Qt::Window : Qt::Tool) | Qt::FramelessWindowHint);
    d->handler = new WindowFrameHandler(this, d.get());
}

ZxCommonWebWindow::~ZxCommonWebWindow() {
    delete d->handler;
}

void ZxCommonWebWindow::setCenterOnParent(bool on) {
    d->centerOnParent = on;
}

void ZxCommonWebWindow::setLocalContentOnly(bool on) {
    nvolite::setLocalContentOnly(*this, on);
}

bool ZxCommonWebWindow::centerOnParent() const {
    return d->centerOnParent;
}

bool ZxCommonWebWindow::localContentOnly() const {
    return ZxCommonWebWidget::d_func()->localContentOnly;
}

}  // namespace nvolite
