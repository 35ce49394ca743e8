// SPDX-License-Identifier: MIT
#include "minihost/slxrender/sliderenderer.h"

#include <algorithm>
#include <cmath>

#include "minihost/slxrender/slidescene.h"

namespace minihost {

void paintSlide(QPainter& painter, const Deck& deck, int slide, const QRectF& target) {
    if (slide < 1 || slide > deck.slideCount()) return;
    const SlideScene scene(deck, slide);
    painter.save();
    painter.setTransform(scene.toTarget(target), true);
    scene.paint(painter);
    painter.restore();
}

QImage renderSlide(const Deck& deck, int slide, int width) {
    if (slide < 1 || slide > deck.slideCount() || width < 1) return {};
    const QSizeF size = deck.slideSize();
    const int height = std::max(
        1, static_cast<int>(std::lround(width * size.height() / std::max(1.0, size.width()))));
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    paintSlide(painter, deck, slide, QRectF(0, 0, width, height));
    return image;
}

}  // namespace minihost
