// SPDX-License-Identifier: MIT
#include "minihost/slxrender/fillpainting.h"

#include <QImage>
#include <algorithm>
#include <cmath>

namespace minihost {
namespace {

QColor colorOf(std::uint32_t rgb, double alpha) {
    QColor color = QColor::fromRgb(rgb);
    color.setAlphaF(std::clamp(alpha, 0.0, 1.0));
    return color;
}

// The Qt pattern nearest in ink to a preset pattern: how much of the area is the foreground.
Qt::BrushStyle patternStyle(const QString& preset) {
    const int percent = preset.startsWith(QLatin1String("pct")) ? preset.mid(3).toInt() : 0;
    if (percent > 0) {
        if (percent <= 10) return Qt::Dense7Pattern;
        if (percent <= 25) return Qt::Dense6Pattern;
        if (percent <= 40) return Qt::Dense5Pattern;
        if (percent <= 60) return Qt::Dense4Pattern;
        if (percent <= 75) return Qt::Dense3Pattern;
        return Qt::Dense2Pattern;
    }
    if (preset.contains(QLatin1String("Horz"))) return Qt::HorPattern;
    if (preset.contains(QLatin1String("Vert"))) return Qt::VerPattern;
    if (preset.contains(QLatin1String("Diag")) && preset.contains(QLatin1String("up")))
        return Qt::BDiagPattern;
    if (preset.contains(QLatin1String("Diag"))) return Qt::FDiagPattern;
    if (preset.contains(QLatin1String("Cross")) || preset.contains(QLatin1String("Grid")))
        return Qt::CrossPattern;
    return Qt::Dense4Pattern;
}

}  // namespace

QGradient gradientOf(const Fill& fill, const QRectF& box) {
    QGradient gradient;
    if (fill.path.isEmpty()) {
        // Along the angle, from the box's corner behind it to the corner ahead of it.
        const double radians = fill.angle * M_PI / 180;
        const QPointF direction(std::cos(radians), std::sin(radians));
        const double half =
            std::abs(box.width() / 2 * direction.x()) + std::abs(box.height() / 2 * direction.y());
        gradient =
            QLinearGradient(box.center() - direction * half, box.center() + direction * half);
    } else {
        // From the focus outward to the farthest corner.
        const QPointF centre(box.left() + fill.focus.center().x() * box.width(),
                             box.top() + fill.focus.center().y() * box.height());
        double radius = 1;
        for (const QPointF& corner :
             {box.topLeft(), box.topRight(), box.bottomLeft(), box.bottomRight()})
            radius = std::max(radius, std::hypot(corner.x() - centre.x(), corner.y() - centre.y()));
        gradient = QRadialGradient(centre, radius);
    }
    for (const GradientStop& stop : fill.stops)
        gradient.setColorAt(stop.position, colorOf(stop.rgb, stop.alpha));
    return gradient;
}

void paintFill(QPainter& painter, const QPainterPath& path, const QRectF& box, const Fill& fill,
               PictureStore& pictures) {
    switch (fill.kind) {
        case Fill::Kind::None:
            return;
        case Fill::Kind::Solid:
            painter.fillPath(path, colorOf(fill.rgb, fill.alpha));
            return;
        case Fill::Kind::Gradient:
            painter.fillPath(path, QBrush(gradientOf(fill, box)));
            return;
        case Fill::Kind::Pattern:
            painter.fillPath(path, QColor::fromRgb(fill.patternBackground));
            painter.fillPath(path, QBrush(QColor::fromRgb(fill.rgb), patternStyle(fill.pattern)));
            return;
        case Fill::Kind::Picture: {
            painter.save();
            painter.setClipPath(path, Qt::IntersectClip);
            if (fill.tile) {
                // At its own size: a pixel of it is 0.75 pt, as at 96 dots an inch.
                const QImage whole = pictures.picture(fill.picture, QSize(1024, 1024));
                if (!whole.isNull()) {
                    QBrush brush(whole);
                    QTransform scale;
                    scale.translate(box.left(), box.top());
                    scale.scale(0.75, 0.75);
                    brush.setTransform(scale);
                    painter.fillPath(path, brush);
                }
            } else {
                const QSize pixels = painter.deviceTransform().mapRect(box).size().toSize();
                const QImage image = pictures.picture(fill.picture, pixels);
                if (!image.isNull()) painter.drawImage(box, image);
            }
            painter.restore();
            return;
        }
    }
}

}  // namespace minihost
