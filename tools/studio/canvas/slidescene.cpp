// SPDX-License-Identifier: MIT
#include "slidescene.h"

#include <QImage>
#include <QPainterPath>
#include <algorithm>

namespace zstudio {
namespace {

const QStringList kDrawnGeometries{QStringLiteral("rect"),     QStringLiteral("roundRect"),
                                   QStringLiteral("ellipse"),  QStringLiteral("line"),
                                   QStringLiteral("triangle"), QStringLiteral("diamond")};

// The outline of a plain shape in `box`; empty for a geometry not drawn.
QPainterPath outlineOf(const QString& geometry, const QRectF& box) {
    QPainterPath path;
    if (geometry == QLatin1String("rect")) {
        path.addRect(box);
    } else if (geometry == QLatin1String("roundRect")) {
        // The preset's default corner: a sixth of the shorter side.
        const double r = std::min(box.width(), box.height()) / 6;
        path.addRoundedRect(box, r, r);
    } else if (geometry == QLatin1String("ellipse")) {
        path.addEllipse(box);
    } else if (geometry == QLatin1String("line")) {
        path.moveTo(box.topLeft());
        path.lineTo(box.bottomRight());
    } else if (geometry == QLatin1String("triangle")) {
        path.moveTo(box.center().x(), box.top());
        path.lineTo(box.bottomRight());
        path.lineTo(box.bottomLeft());
        path.closeSubpath();
    } else if (geometry == QLatin1String("diamond")) {
        path.moveTo(box.center().x(), box.top());
        path.lineTo(box.right(), box.center().y());
        path.lineTo(box.center().x(), box.bottom());
        path.lineTo(box.left(), box.center().y());
        path.closeSubpath();
    }
    return path;
}

// Where something is that is not drawn: a dashed outline with its name and kind.
void paintPlaceOf(QPainter& painter, const minihost::DrawnShape& shape, const QRectF& box) {
    painter.setBrush(Qt::NoBrush);
    QPen pen(QColor(0x80, 0x80, 0x80), 1.0, Qt::DashLine);
    pen.setCosmetic(true);
    painter.setPen(pen);
    painter.drawRect(box);
    QFont font(QStringLiteral("Noto Sans"));
    font.setPixelSize(std::max(6, static_cast<int>(std::min(12.0, box.height() / 3))));
    painter.setFont(font);
    painter.setPen(QColor(0x60, 0x60, 0x60));
    const QString label = QStringLiteral("%1 (%2)").arg(shape.name, shape.kind);
    painter.drawText(box.adjusted(4, 2, -4, -2), Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
                     label);
}

}  // namespace

SlideScene::SlideScene(const minihost::Deck& deck, int slide)
    : m_size(deck.slideSize()), m_drawing(deck.drawing(slide)), m_pictures(deck.pictures()) {
    for (const minihost::DrawnShape& shape : m_drawing.shapes)
        if (shape.hasText && shape.boxKnown) m_text.emplace(shape.id, minihost::TextLayout(shape));
    for (int i = 0; i < m_drawing.behind.size(); ++i)
        if (m_drawing.behind[i].hasText && m_drawing.behind[i].boxKnown)
            m_behindText.emplace(i, minihost::TextLayout(m_drawing.behind[i]));
}

QTransform SlideScene::toTarget(const QRectF& target) const {
    QTransform t;
    t.translate(target.left(), target.top());
    t.scale(target.width() / std::max(1.0, m_size.width()),
            target.height() / std::max(1.0, m_size.height()));
    return t;
}

void SlideScene::paint(QPainter& painter, int textShape, int selStart, int selLength) const {
    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                           QPainter::SmoothPixmapTransform);
    painter.fillRect(QRectF(QPointF(), m_size), QColor::fromRgb(m_drawing.background));
    for (int i = 0; i < m_drawing.behind.size(); ++i) {
        const auto text = m_behindText.find(i);
        const minihost::TextLayout* layout = text == m_behindText.end() ? nullptr : &text->second;
        const minihost::DrawnShape& shape = m_drawing.behind[i];
        paintShape(painter, shape, layout ? layout->box() : shape.box, layout, false, 0, 0);
    }
    for (const minihost::DrawnShape& shape : m_drawing.shapes) {
        const bool selected = shape.id == textShape;
        paintShape(painter, shape, boxOf(shape.id), text(shape.id), true, selected ? selStart : 0,
                   selected ? selLength : 0);
    }
    painter.restore();
}

void SlideScene::paintShape(QPainter& painter, const minihost::DrawnShape& shape, const QRectF& box,
                            const minihost::TextLayout* text, bool ofSlide, int selStart,
                            int selLength) const {
    if (!shape.boxKnown || shape.kind == QLatin1String("group")) return;
    painter.save();
    if (shape.rotation != 0 || shape.flipH || shape.flipV) {
        painter.translate(box.center());
        painter.rotate(shape.rotation);
        painter.scale(shape.flipH ? -1 : 1, shape.flipV ? -1 : 1);
        painter.translate(-box.center());
    }
    if (!shape.picture.isEmpty()) {
        // Decoded (once, shared by every view of the deck) at the size it is drawn here.
        const QSize pixels = painter.deviceTransform().mapRect(box).size().toSize();
        const QImage image = m_pictures->picture(shape.picture, pixels);
        if (image.isNull() && ofSlide)
            paintPlaceOf(painter, shape, box);
        else
            painter.drawImage(box, image);
        if (shape.outlined)
            painter.strokePath(outlineOf(QStringLiteral("rect"), box),
                               QPen(QColor::fromRgb(shape.line), std::max(0.25f, shape.lineWidth)));
    } else if (kDrawnGeometries.contains(shape.geometry)) {
        const QPainterPath path = outlineOf(shape.geometry, box);
        if (shape.filled && shape.geometry != QLatin1String("line"))
            painter.fillPath(path, QColor::fromRgb(shape.fill));
        if (shape.outlined) {
            QPen pen(QColor::fromRgb(shape.line), std::max(0.25f, shape.lineWidth));
            painter.strokePath(path, pen);
        }
    } else if (ofSlide) {
        paintPlaceOf(painter, shape, box);
    }
    if (shape.rotation != 0 || shape.flipH || shape.flipV) {
        // Text turns with its shape but is never mirrored.
        painter.restore();
        painter.save();
        painter.translate(box.center());
        painter.rotate(shape.rotation);
        painter.translate(-box.center());
    }
    if (text) text->draw(painter, selStart, selLength, QColor(0x99, 0xC2, 0xF0));
    painter.restore();
}

const minihost::DrawnShape* SlideScene::shape(int id) const {
    for (const minihost::DrawnShape& s : m_drawing.shapes)
        if (s.id == id) return &s;
    return nullptr;
}

QRectF SlideScene::boxOf(int id) const {
    if (const minihost::TextLayout* layout = text(id)) return layout->box();
    const minihost::DrawnShape* s = shape(id);
    return s && s->boxKnown ? s->box : QRectF();
}

int SlideScene::shapeAt(const QPointF& point) const {
    for (auto it = m_drawing.shapes.crbegin(); it != m_drawing.shapes.crend(); ++it) {
        if (!it->boxKnown || it->kind == QLatin1String("group")) continue;
        // A line is hit near it, anything else within its box (margins make thin ones hittable).
        const QRectF box = boxOf(it->id).normalized().adjusted(-3, -3, 3, 3);
        if (box.contains(point)) return it->id;
    }
    return 0;
}

const minihost::TextLayout* SlideScene::text(int id) const {
    const auto it = m_text.find(id);
    return it == m_text.end() ? nullptr : &it->second;
}

}  // namespace zstudio
