// SPDX-License-Identifier: MIT
#include "minihost/slxrender/presetgeometry.h"

#include <QPolygonF>
#include <QTransform>
#include <algorithm>
#include <cmath>

namespace minihost {
namespace {

constexpr double kPercent = 100000.0;

// An adjust value as a share of the shorter side (as the presets measure corners and arrow
// heads), or `fallback` (in the format's units) when the shape gives none.
double adjust(const DrawnShape& shape, const char* name, double fallback) {
    return shape.adjustments.value(QString::fromLatin1(name), fallback) / kPercent;
}

QPainterPath polygon(const QRectF& box, std::initializer_list<QPointF> unit) {
    QPolygonF points;
    for (const QPointF& p : unit)
        points << QPointF(box.left() + p.x() * box.width(), box.top() + p.y() * box.height());
    QPainterPath path;
    path.addPolygon(points);
    path.closeSubpath();
    return path;
}

QPainterPath star(const QRectF& box, int points, double inner) {
    QPolygonF outline;
    for (int i = 0; i < points * 2; ++i) {
        const double angle = -M_PI / 2 + i * M_PI / points;
        const double r = i % 2 ? inner : 1.0;
        outline << QPointF(box.center().x() + r * box.width() / 2 * std::cos(angle),
                           box.center().y() + r * box.height() / 2 * std::sin(angle));
    }
    QPainterPath path;
    path.addPolygon(outline);
    path.closeSubpath();
    return path;
}

// A block arrow pointing right in `box` (others are this one turned): a shaft `shaft` of the
// height, a head `head` of the shorter side long.
QPainterPath rightArrow(const QRectF& box, double shaft, double head) {
    const double h = box.height();
    const double headLength = std::min(box.width(), head * std::min(box.width(), h));
    const double top = box.top() + h * (1 - shaft) / 2;
    const double bottom = box.bottom() - h * (1 - shaft) / 2;
    const double neck = box.right() - headLength;
    const QVector<QPointF> p{
        {box.left(), top},    {neck, top},    {neck, box.top()},   {box.right(), box.center().y()},
        {neck, box.bottom()}, {neck, bottom}, {box.left(), bottom}};
    QPainterPath path;
    path.addPolygon(QPolygonF(p));
    path.closeSubpath();
    return path;
}

// `path` made in a box of `size` turned by `degrees` about its centre onto `box`.
QPainterPath turned(const QRectF& box, double degrees,
                    QPainterPath (*make)(const QRectF&, double, double), double a, double b) {
    const bool sideways = std::fmod(std::abs(degrees), 180.0) == 90.0;
    const QSizeF size = sideways ? box.size().transposed() : box.size();
    const QRectF local(QPointF(-size.width() / 2, -size.height() / 2), size);
    QTransform t;
    t.translate(box.center().x(), box.center().y());
    t.rotate(degrees);
    return t.map(make(local, a, b));
}

QPainterPath leftRightArrow(const QRectF& box, double shaft, double head) {
    const double headLength = std::min(box.width() / 2, head * std::min(box.width(), box.height()));
    const double top = box.top() + box.height() * (1 - shaft) / 2;
    const double bottom = box.bottom() - box.height() * (1 - shaft) / 2;
    const QVector<QPointF> p{
        {box.left(), box.center().y()},           {box.left() + headLength, box.top()},
        {box.left() + headLength, top},           {box.right() - headLength, top},
        {box.right() - headLength, box.top()},    {box.right(), box.center().y()},
        {box.right() - headLength, box.bottom()}, {box.right() - headLength, bottom},
        {box.left() + headLength, bottom},        {box.left() + headLength, box.bottom()}};
    QPainterPath path;
    path.addPolygon(QPolygonF(p));
    path.closeSubpath();
    return path;
}

// A callout's body with its pointer to (adj1, adj2): offsets from the centre in shares of the
// box.
QPainterPath withPointer(const DrawnShape& shape, const QRectF& box, QPainterPath body) {
    const QPointF tip(box.center().x() + adjust(shape, "adj1", -20833) * box.width(),
                      box.center().y() + adjust(shape, "adj2", 62500) * box.height());
    if (box.contains(tip)) return body;
    const QPointF c = box.center();
    const QPointF side =
        std::abs(tip.x() - c.x()) / box.width() > std::abs(tip.y() - c.y()) / box.height()
            ? QPointF(0, box.height() / 8)
            : QPointF(box.width() / 8, 0);
    QPainterPath pointer;
    pointer.addPolygon(QPolygonF(QVector<QPointF>{c - side, tip, c + side}));
    pointer.closeSubpath();
    return body.united(pointer);
}

}  // namespace

bool isOpenGeometry(const QString& geometry) {
    return geometry == QLatin1String("line") || geometry.contains(QLatin1String("Connector")) ||
           geometry == QLatin1String("arc") || geometry.endsWith(QLatin1String("Bracket")) ||
           geometry.endsWith(QLatin1String("Brace"));
}

QPainterPath outlineOf(const DrawnShape& shape, const QRectF& box) {
    const QString& g = shape.geometry;
    QPainterPath path;
    if (g.isEmpty()) return path;
    const double shorter = std::min(box.width(), box.height());
    if (g == QLatin1String("custom")) {
        QTransform t;
        t.translate(box.left(), box.top());
        t.scale(box.width(), box.height());
        return t.map(shape.customPath);
    }
    if (isOpenGeometry(g)) {
        // Straight, bent and curved connectors alike: from corner to corner (flips turn them).
        path.moveTo(box.topLeft());
        path.lineTo(box.bottomRight());
        return path;
    }
    if (g == QLatin1String("ellipse") || g == QLatin1String("flowChartConnector") ||
        g == QLatin1String("teardrop") || g == QLatin1String("pie") ||
        g == QLatin1String("chord") || g == QLatin1String("donut")) {
        path.addEllipse(box);
        return path;
    }
    if (g == QLatin1String("wedgeEllipseCallout") || g == QLatin1String("cloudCallout") ||
        g == QLatin1String("cloud")) {
        path.addEllipse(box);
        return g == QLatin1String("cloud") ? path : withPointer(shape, box, path);
    }
    if (g == QLatin1String("roundRect") || g == QLatin1String("flowChartAlternateProcess") ||
        g == QLatin1String("wedgeRoundRectCallout") || g == QLatin1String("round2SameRect") ||
        g == QLatin1String("round1Rect")) {
        const double r = adjust(shape, "adj", 16667) * shorter;
        path.addRoundedRect(box, r, r);
        return g == QLatin1String("wedgeRoundRectCallout") ? withPointer(shape, box, path) : path;
    }
    if (g == QLatin1String("flowChartTerminator")) {
        path.addRoundedRect(box, shorter / 2, shorter / 2);
        return path;
    }
    if (g == QLatin1String("triangle") || g == QLatin1String("flowChartExtract")) {
        const double top = adjust(shape, "adj", 50000);
        return polygon(box, {{top, 0}, {1, 1}, {0, 1}});
    }
    if (g == QLatin1String("flowChartMerge")) return polygon(box, {{0, 0}, {1, 0}, {0.5, 1}});
    if (g == QLatin1String("rtTriangle")) return polygon(box, {{0, 0}, {1, 1}, {0, 1}});
    if (g == QLatin1String("diamond") || g == QLatin1String("flowChartDecision"))
        return polygon(box, {{0.5, 0}, {1, 0.5}, {0.5, 1}, {0, 0.5}});
    if (g == QLatin1String("parallelogram") || g == QLatin1String("flowChartInputOutput")) {
        const double a = std::min(1.0, adjust(shape, "adj", 25000) * shorter / box.width());
        return polygon(box, {{a, 0}, {1, 0}, {1 - a, 1}, {0, 1}});
    }
    if (g == QLatin1String("trapezoid")) {
        const double a = std::min(0.5, adjust(shape, "adj", 25000) * shorter / box.width());
        return polygon(box, {{a, 0}, {1 - a, 0}, {1, 1}, {0, 1}});
    }
    if (g == QLatin1String("pentagon") && shape.adjustments.isEmpty())
        return polygon(box, {{0.5, 0}, {1, 0.38}, {0.82, 1}, {0.18, 1}, {0, 0.38}});
    if (g == QLatin1String("homePlate") || g == QLatin1String("pentagon")) {
        const double a = std::min(1.0, adjust(shape, "adj", 50000) * shorter / box.width());
        return polygon(box, {{0, 0}, {1 - a, 0}, {1, 0.5}, {1 - a, 1}, {0, 1}});
    }
    if (g == QLatin1String("chevron")) {
        const double a = std::min(0.5, adjust(shape, "adj", 50000) * shorter / box.width());
        return polygon(box, {{0, 0}, {1 - a, 0}, {1, 0.5}, {1 - a, 1}, {0, 1}, {a, 0.5}});
    }
    if (g == QLatin1String("hexagon") || g == QLatin1String("flowChartPreparation")) {
        const double a = std::min(0.5, adjust(shape, "adj", 25000) * shorter / box.width());
        return polygon(box, {{a, 0}, {1 - a, 0}, {1, 0.5}, {1 - a, 1}, {a, 1}, {0, 0.5}});
    }
    if (g == QLatin1String("octagon")) {
        const double a = adjust(shape, "adj", 29289) * shorter;
        const double x = a / box.width(), y = a / box.height();
        return polygon(
            box, {{x, 0}, {1 - x, 0}, {1, y}, {1, 1 - y}, {1 - x, 1}, {x, 1}, {0, 1 - y}, {0, y}});
    }
    if (g == QLatin1String("plus") || g == QLatin1String("mathPlus")) {
        const double a = adjust(shape, "adj", 25000) * shorter;
        const double x = a / box.width(), y = a / box.height();
        return polygon(box, {{x, 0},
                             {1 - x, 0},
                             {1 - x, y},
                             {1, y},
                             {1, 1 - y},
                             {1 - x, 1 - y},
                             {1 - x, 1},
                             {x, 1},
                             {x, 1 - y},
                             {0, 1 - y},
                             {0, y},
                             {x, y}});
    }
    if (g == QLatin1String("snip1Rect")) {
        const double a = adjust(shape, "adj", 16667) * shorter;
        return polygon(box,
                       {{0, 0}, {1 - a / box.width(), 0}, {1, a / box.height()}, {1, 1}, {0, 1}});
    }
    if (g == QLatin1String("star5")) return star(box, 5, 0.382);
    if (g == QLatin1String("star4")) return star(box, 4, 0.25);
    if (g == QLatin1String("star6")) return star(box, 6, 0.577);
    if (g == QLatin1String("star8")) return star(box, 8, 0.7);
    const double shaft = adjust(shape, "adj1", 50000);
    const double head = adjust(shape, "adj2", 50000);
    if (g == QLatin1String("rightArrow")) return rightArrow(box, shaft, head);
    if (g == QLatin1String("leftArrow")) return turned(box, 180, rightArrow, shaft, head);
    if (g == QLatin1String("downArrow")) return turned(box, 90, rightArrow, shaft, head);
    if (g == QLatin1String("upArrow")) return turned(box, -90, rightArrow, shaft, head);
    if (g == QLatin1String("leftRightArrow")) return leftRightArrow(box, shaft, head);
    if (g == QLatin1String("wedgeRectCallout")) {
        path.addRect(box);
        return withPointer(shape, box, path);
    }
    // Rectangles, flowchart processes, text boxes and every preset not drawn more closely.
    path.addRect(box);
    return path;
}

}  // namespace minihost
