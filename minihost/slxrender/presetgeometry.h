// SPDX-License-Identifier: MIT
// The outlines of the preset shapes real decks use (rectangles, rounded and snipped ones,
// ellipses, triangles, arrows, stars, callouts, flowchart symbols, lines and connectors), drawn in
// a box with the shape's adjust values; a shape's own free-form geometry mapped onto its box.
#pragma once

#include <QPainterPath>
#include <QRectF>

#include "minihost/slxcore/slidedrawing.h"

namespace minihost {

// The outline of `shape`'s geometry in `box`. A preset not known here is drawn as its box (its
// fill and outline, where nothing would be further from the slide); empty for shapes without a
// geometry (pictures, tables, charts, groups).
QPainterPath outlineOf(const DrawnShape& shape, const QRectF& box);

// Whether the geometry is a line (stroked, never filled: "line", connectors, arcs).
bool isOpenGeometry(const QString& geometry);

}  // namespace minihost
