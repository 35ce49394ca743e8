// SPDX-License-Identifier: MIT
// Drawing a chart from the values its part caches: its title, bars, lines, areas, pie slices,
// scatter points or radar lines in their series' colours over light gridlines, and a legend of
// the series. Axis labels are not drawn.
#pragma once

#include <QPainter>
#include <QRectF>

#include "minihost/slxcore/slidedrawing.h"

namespace minihost {

// Paints `chart` in `box` (points on the slide). A chart of a kind not drawn shows its title.
void paintChart(QPainter& painter, const ChartDrawing& chart, const QRectF& box);

}  // namespace minihost
