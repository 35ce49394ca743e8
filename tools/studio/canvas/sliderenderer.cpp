// SPDX-License-Identifier: MIT
#include "sliderenderer.h"

#include "slidescene.h"

void paintSlide(QPainter& painter, const minihost::Deck& deck, int slide, const QRectF& target) {
    if (slide < 1 || slide > deck.slideCount()) return;
    const zstudio::SlideScene scene(deck, slide);
    painter.save();
    painter.setTransform(scene.toTarget(target), true);
    scene.paint(painter);
    painter.restore();
}
