// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QGuiApplication>
#include <QScreen>

#include "nvolite/zxcommonwebwidget.h"

void ZxLocateHelpFunc::adjustToRelatedMainWindow(QWidget* widget, int position, bool horizontally,
                                                 bool vertically) {
    if (!widget) return;
    // Only centring exists; any other position is placed as 0.
    (void)position;
    QWidget* mainWindow =
        widget->parentWidget() ? widget->parentWidget()->window() : QApplication::activeWindow();
    if (mainWindow == widget) mainWindow = nullptr;
    QScreen* screen = mainWindow ? mainWindow->screen() : widget->screen();
    if (!screen) screen = QGuiApplication::primaryScreen();
    const QRect area =
        mainWindow ? mainWindow->frameGeometry() : (screen ? screen->availableGeometry() : QRect());
    if (area.isEmpty()) return;
    // Before the window exists its frame geometry is not meaningful (one pixel short).
    const QSize size = widget->testAttribute(Qt::WA_WState_Created) ? widget->frameGeometry().size()
                                                                    : widget->size();
    QPoint target = widget->pos();
    if (horizontally) target.setX(area.x() + (area.width() - size.width()) / 2);
    if (vertically) target.setY(area.y() + (area.height() - size.height()) / 2);
    // Kept on the screen: the main window may hang partly off it.
    if (screen) {
        const QRect available = screen->availableGeometry();
        target.setX(qBound(available.left(), target.x(),
                           qMax(available.left(), available.right() - size.width() + 1)));
        target.setY(qBound(available.top(), target.y(),
                           qMax(available.top(), available.bottom() - size.height() + 1)));
    }
    widget->move(target);
}
