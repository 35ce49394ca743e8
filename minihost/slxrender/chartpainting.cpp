// SPDX-License-Identifier: MIT
#include "minihost/slxrender/chartpainting.h"

#include <QPainterPath>
#include <algorithm>
#include <cmath>

#include "minihost/slxcore/textlayout.h"

namespace minihost {
namespace {

// A text in the chart, laid out by the one text layout in a box that follows it: `box`'s width,
// from its top. Returns the height it took.
double paintText(QPainter& painter, const QString& text, const QRectF& box, float size, bool bold,
                 TextAlign align) {
    DrawnShape label;
    label.box = QRectF(box.left(), box.top(), box.width(), 1);
    label.boxKnown = true;
    label.hasText = true;
    label.text.autofit = Autofit::ShapeFollowsText;
    TextParagraph paragraph;
    paragraph.text = text;
    paragraph.align = align;
    TextFormat format;
    format.latinFont = QStringLiteral("Calibri");
    format.size = size;
    format.bold = bold;
    format.rgb = 0x404040;
    paragraph.endFormat = format;
    paragraph.runs << TextRun{0, static_cast<int>(text.size()), format};
    label.text.paragraphs << paragraph;
    const TextLayout layout(label);
    layout.draw(painter);
    return layout.box().height();
}

// A round step for a value axis: 1, 2, 2.5 or 5 times a power of ten at or above `value`.
double niceAbove(double value) {
    if (value <= 0) return 0;
    const double power = std::pow(10, std::floor(std::log10(value)));
    for (double step : {1.0, 2.0, 2.5, 5.0, 10.0})
        if (step * power >= value) return step * power;
    return 10 * power;
}

QColor colorOf(const ChartSeries& series, int point) {
    return QColor::fromRgb(series.pointColors.value(point, series.rgb));
}

void paintPie(QPainter& painter, const ChartDrawing& chart, const QRectF& plot) {
    if (chart.series.isEmpty()) return;
    const ChartSeries& series = chart.series.first();
    double total = 0;
    for (double v : series.values)
        if (std::isfinite(v) && v > 0) total += v;
    if (total <= 0) return;
    const double side = std::min(plot.width(), plot.height());
    const QRectF circle(plot.center().x() - side / 2, plot.center().y() - side / 2, side, side);
    // From twelve o'clock, clockwise (Qt's angles turn the other way, in sixteenths of a degree).
    double start = 90;
    painter.setPen(QPen(Qt::white, 0.75));
    for (int i = 0; i < series.values.size(); ++i) {
        const double v = series.values[i];
        if (!std::isfinite(v) || v <= 0) continue;
        const double span = -v / total * 360;
        painter.setBrush(colorOf(series, i));
        painter.drawPie(circle, static_cast<int>(std::lround(start * 16)),
                        static_cast<int>(std::lround(span * 16)));
        start += span;
    }
    if (chart.type == QLatin1String("doughnut")) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::white);
        painter.drawEllipse(circle.center(), side / 4, side / 4);
    }
}

void paintRadar(QPainter& painter, const ChartDrawing& chart, const QRectF& plot, double top) {
    const double radius = std::min(plot.width(), plot.height()) / 2;
    for (const ChartSeries& series : chart.series) {
        const int n = static_cast<int>(series.values.size());
        if (n < 3) continue;
        QPolygonF polygon;
        for (int i = 0; i < n; ++i) {
            const double v = std::isfinite(series.values[i]) ? series.values[i] : 0;
            const double angle = -M_PI / 2 + 2 * M_PI * i / n;
            const double r = top > 0 ? radius * v / top : 0;
            polygon << plot.center() + QPointF(r * std::cos(angle), r * std::sin(angle));
        }
        polygon << polygon.first();
        painter.setPen(QPen(QColor::fromRgb(series.rgb), 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawPolyline(polygon);
    }
}

// Bars, lines, areas and scatter points over a value axis from `bottom` to `top`.
void paintOnAxes(QPainter& painter, const ChartDrawing& chart, const QRectF& plot, double bottom,
                 double top) {
    const double range = top - bottom;
    if (range <= 0) return;
    // Along the value axis: y down the plot (x across it for horizontal bars).
    auto along = [&](double v) {
        return chart.horizontal ? plot.left() + (v - bottom) / range * plot.width()
                                : plot.bottom() - (v - bottom) / range * plot.height();
    };
    painter.setPen(QPen(QColor(0xD9, 0xD9, 0xD9), 0.75));
    const double step = niceAbove(range / 6);
    for (int i = 0; step > 0 && i <= 12 && bottom + step * i <= top + step / 2; ++i) {
        const double v = bottom + step * i;
        if (chart.horizontal)
            painter.drawLine(QPointF(along(v), plot.top()), QPointF(along(v), plot.bottom()));
        else
            painter.drawLine(QPointF(plot.left(), along(v)), QPointF(plot.right(), along(v)));
    }
    int count = static_cast<int>(chart.categories.size());
    for (const ChartSeries& series : chart.series)
        count = std::max(count, static_cast<int>(series.values.size()));
    if (count == 0) return;
    const double slot = (chart.horizontal ? plot.height() : plot.width()) / count;
    const int seriesCount = static_cast<int>(chart.series.size());
    if (chart.type == QLatin1String("bar")) {
        const int across = chart.stacked ? 1 : seriesCount;
        const double bar = slot / (across + chart.gapWidth);
        std::vector<double> stackedTo(static_cast<std::size_t>(count), 0);
        painter.setPen(Qt::NoPen);
        for (int s = 0; s < seriesCount; ++s) {
            const ChartSeries& series = chart.series[s];
            for (int i = 0; i < series.values.size(); ++i) {
                const double v = series.values[i];
                if (!std::isfinite(v)) continue;
                const double from = chart.stacked ? stackedTo[static_cast<std::size_t>(i)] : 0;
                const double to = from + v;
                if (chart.stacked) stackedTo[static_cast<std::size_t>(i)] = to;
                const double offset =
                    slot * i + bar * chart.gapWidth / 2 + (chart.stacked ? 0 : bar * s);
                const QRectF rect = chart.horizontal
                                        ? QRectF(QPointF(along(from), plot.bottom() - offset - bar),
                                                 QPointF(along(to), plot.bottom() - offset))
                                        : QRectF(QPointF(plot.left() + offset, along(to)),
                                                 QPointF(plot.left() + offset + bar, along(from)));
                painter.fillRect(rect.normalized(), colorOf(series, i));
            }
        }
        return;
    }
    for (const ChartSeries& series : chart.series) {
        QPolygonF line;
        for (int i = 0; i < series.values.size(); ++i) {
            if (!std::isfinite(series.values[i])) continue;
            double x = plot.left() + slot * (i + 0.5);
            if (chart.type == QLatin1String("scatter") && i < series.xValues.size()) {
                double low = series.xValues.first(), high = low;
                for (double vx : series.xValues) low = std::min(low, vx), high = std::max(high, vx);
                x = plot.left() +
                    (high > low ? (series.xValues[i] - low) / (high - low) : 0.5) * plot.width();
            }
            line << QPointF(x, along(series.values[i]));
        }
        if (line.isEmpty()) continue;
        const QColor color = QColor::fromRgb(series.rgb);
        if (chart.type == QLatin1String("area")) {
            QPolygonF area = line;
            area << QPointF(line.last().x(), plot.bottom())
                 << QPointF(line.first().x(), plot.bottom());
            painter.setPen(Qt::NoPen);
            painter.setBrush(color);
            painter.drawPolygon(area);
        } else if (chart.type == QLatin1String("scatter")) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(color);
            for (const QPointF& p : line) painter.drawEllipse(p, 2.5, 2.5);
        } else {
            painter.setPen(QPen(color, 2.25, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            painter.setBrush(Qt::NoBrush);
            painter.drawPolyline(line);
        }
    }
}

}  // namespace

void paintChart(QPainter& painter, const ChartDrawing& chart, const QRectF& box) {
    painter.save();
    painter.setClipRect(box, Qt::IntersectClip);
    QRectF plot = box.adjusted(box.width() * 0.05, box.height() * 0.05, -box.width() * 0.05,
                               -box.height() * 0.1);
    if (!chart.title.isEmpty()) {
        const double height =
            paintText(painter, chart.title, box.adjusted(0, 4, 0, 0), 18, true, TextAlign::Center);
        plot.setTop(box.top() + 4 + height + box.height() * 0.03);
    }
    const bool round =
        chart.type == QLatin1String("pie") || chart.type == QLatin1String("doughnut");
    if (chart.legend) {
        // The series (or a pie's slices) down the right side, each a square of its colour and
        // its name.
        const QRectF legend(box.right() - box.width() * 0.2, plot.top(), box.width() * 0.2,
                            plot.height());
        plot.setRight(legend.left() - box.width() * 0.02);
        const int entries = round && !chart.series.isEmpty()
                                ? static_cast<int>(chart.series.first().values.size())
                                : static_cast<int>(chart.series.size());
        double y = legend.center().y() - entries * 9;
        for (int i = 0; i < entries && y < legend.bottom(); ++i, y += 18) {
            const QColor color =
                round ? colorOf(chart.series.first(), i) : QColor::fromRgb(chart.series[i].rgb);
            painter.fillRect(QRectF(legend.left(), y + 4, 7, 7), color);
            const QString name = round ? chart.categories.value(i) : chart.series[i].name;
            paintText(painter, name, QRectF(legend.left() + 8, y, legend.width() - 8, 18), 10,
                      false, TextAlign::Left);
        }
    }
    if (round) {
        paintPie(painter, chart, plot);
    } else if (chart.type != QLatin1String("none") && !chart.type.isEmpty()) {
        // The value axis from the lowest value (or 0) to a round number above the highest; for
        // stacked series, of their sums per category.
        double low = 0, high = 0;
        std::vector<double> sums;
        for (const ChartSeries& series : chart.series)
            for (int i = 0; i < series.values.size(); ++i) {
                const double v = std::isfinite(series.values[i]) ? series.values[i] : 0;
                if (!chart.stacked) {
                    low = std::min(low, v);
                    high = std::max(high, v);
                    continue;
                }
                if (sums.size() <= static_cast<std::size_t>(i)) sums.resize(i + 1, 0);
                sums[static_cast<std::size_t>(i)] += v;
            }
        for (double sum : sums) {
            low = std::min(low, sum);
            high = std::max(high, sum);
        }
        // Gridlines every round step of about a sixth of the values' range.
        const double step = niceAbove((high - low) / 6);
        if (step > 0) {
            high = std::ceil(high / step) * step;
            low = std::floor(low / step) * step;
        }
        if (chart.type == QLatin1String("radar"))
            paintRadar(painter, chart, plot, high);
        else
            paintOnAxes(painter, chart, plot, low, high);
    }
    painter.restore();
}

}  // namespace minihost
