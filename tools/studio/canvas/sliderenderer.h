// SPDX-License-Identifier: MIT
// Drawing a slide of a deck: used by the slide view, the thumbnails, screenshots and benchmarks.
#pragma once

#include <QPainter>
#include <QRectF>

#include "minihost/slxcore/deck.h"

// Paints slide `slide` (from 1) of `deck` into `target`, scaled to fill it (the caller keeps the
// slide's proportions): background, shapes in z order, their text, pictures, and a labelled
// outline for what is not drawn. Nothing for a slide that does not exist.
void paintSlide(QPainter& painter, const minihost::Deck& deck, int slide, const QRectF& target);
