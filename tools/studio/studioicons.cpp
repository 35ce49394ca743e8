// SPDX-License-Identifier: MIT
#include "studioicons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <algorithm>

namespace {

const QColor kInk(0x1F, 0x4E, 0x8C);
const QColor kAccent(0xD9, 0x48, 0x2B);

// A character under a short reading mark, at `size` pixels; `bolt` adds the one-key stroke.
QPixmap paintGlyph(int size, bool bolt, bool tile) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal s = size;
    if (tile) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(kInk);
        painter.drawRoundedRect(QRectF(0, 0, s, s), s * 0.18, s * 0.18);
    }
    const QColor ink = tile ? Qt::white : kInk;
    // The reading: a line with a tone mark over it.
    painter.setPen(QPen(kAccent, s * 0.07, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(s * 0.28, s * 0.22), QPointF(s * 0.62, s * 0.22));
    painter.drawLine(QPointF(s * 0.42, s * 0.12), QPointF(s * 0.50, s * 0.05));
    // The character.
    QFont font(QStringLiteral("Noto Sans CJK SC"));
    font.setPixelSize(int(s * 0.62));
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(ink);
    painter.drawText(QRectF(0, s * 0.26, bolt ? s * 0.82 : s, s * 0.74), Qt::AlignCenter,
                     QString::fromUtf8("\xE6\x8B\xBC"));  // 拼
    if (bolt) {
        QPainterPath path;
        path.moveTo(s * 0.86, s * 0.30);
        path.lineTo(s * 0.70, s * 0.62);
        path.lineTo(s * 0.82, s * 0.62);
        path.lineTo(s * 0.74, s * 0.95);
        path.lineTo(s * 0.98, s * 0.52);
        path.lineTo(s * 0.85, s * 0.52);
        path.closeSubpath();
        painter.setPen(Qt::NoPen);
        painter.setBrush(kAccent);
        painter.drawPath(path);
    }
    return pixmap;
}

QIcon iconOf(bool bolt, bool tile) {
    QIcon icon;
    for (int size : {16, 24, 32, 48, 64, 128}) icon.addPixmap(paintGlyph(size, bolt, tile));
    return icon;
}

}  // namespace

namespace studioicons {

QIcon phoneticSymbol() {
    return iconOf(false, false);
}

QIcon phoneticOneKey() {
    return iconOf(true, false);
}

QIcon application() {
    return iconOf(false, true);
}

QIcon textBox() {
    QIcon icon;
    for (int size : {16, 24, 32, 48, 64}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        const qreal s = size;
        painter.setPen(QPen(kInk, std::max(1.0, s * 0.05), Qt::DashLine));
        painter.drawRect(QRectF(s * 0.1, s * 0.15, s * 0.8, s * 0.7));
        QFont font;
        font.setPixelSize(int(s * 0.55));
        font.setBold(true);
        painter.setFont(font);
        painter.setPen(kAccent);
        painter.drawText(QRectF(0, 0, s, s), Qt::AlignCenter, QStringLiteral("T"));
        icon.addPixmap(pixmap);
    }
    return icon;
}

}  // namespace studioicons
