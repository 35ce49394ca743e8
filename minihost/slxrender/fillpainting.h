// SPDX-License-Identifier: MIT
// Filling an area as the deck's drawing describes it: solid colours with their opacity,
// gradients along their angle or out from their centre, pictures stretched or tiled, patterns.
#pragma once

#include <QPainter>
#include <QPainterPath>

#include "minihost/slxcore/picturestore.h"
#include "minihost/slxcore/slidedrawing.h"

namespace minihost {

// Fills `path` with `fill`, laid over `box` (a gradient spans the box, a picture is stretched
// over it). Pictures come from `pictures`, decoded at the size they are drawn.
void paintFill(QPainter& painter, const QPainterPath& path, const QRectF& box, const Fill& fill,
               PictureStore& pictures);

// The gradient `fill` describes over `box` (linear at its angle, or radial from its focus).
QGradient gradientOf(const Fill& fill, const QRectF& box);

}  // namespace minihost
