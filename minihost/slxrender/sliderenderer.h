// SPDX-License-Identifier: MIT
// Drawing a slide of a deck: the one renderer of every program (the studio's slide view and
// thumbnails, `zphonetic render`, screenshots and benchmarks), so a slide looks the same wherever
// it is shown.
#pragma once

#include <QImage>
#include <QPainter>
#include <QRectF>

#include "minihost/slxcore/deck.h"

namespace minihost {

// Paints slide `slide` (from 1) of `deck` into `target`, scaled to fill it (the caller keeps the
// slide's proportions): background, what the master and layout draw, shapes in z order, their
// text, pictures, and a labelled outline for what is not drawn. Nothing for a slide that does not
// exist.
void paintSlide(QPainter& painter, const Deck& deck, int slide, const QRectF& target);

// Slide `slide` (from 1) drawn `width` pixels wide, as high as the slide's proportions make it
// (at least 1 pixel); a null image for a slide that does not exist or a width below 1.
QImage renderSlide(const Deck& deck, int slide, int width);

}  // namespace minihost
