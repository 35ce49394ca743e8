// SPDX-License-Identifier: MIT
#include "minihost/slxrender/slidescene.h"

#include <QImage>
#include <QPainterPath>
#include <QPolygonF>
#include <algorithm>

#include "minihost/slxrender/chartpainting.h"
#include "minihost/slxrender/fillpainting.h"
#include "minihost/slxrender/presetgeometry.h"

namespace minihost {
namespace {

// The pen of an outline: its colour, width (at least a hair) and dash.
QPen penOf(std::uint32_t rgb, float width, const QString& dash) {
    QPen pen(QColor::fromRgb(rgb), std::max(0.25f, width));
    pen.setJoinStyle(Qt::MiterJoin);
    if (dash == QLatin1String("dash") || dash == QLatin1String("sysDash") ||
        dash == QLatin1String("lgDash"))
        pen.setStyle(Qt::DashLine);
    else if (dash == QLatin1String("dot") || dash == QLatin1String("sysDot"))
        pen.setStyle(Qt::DotLine);
    else if (dash.contains(QLatin1String("DashDotDot")))
        pen.setStyle(Qt::DashDotDotLine);
    else if (dash.contains(QLatin1String("DashDot")))
        pen.setStyle(Qt::DashDotLine);
    return pen;
}

// An arrowhead at `tip` of a line coming from `from`: a filled triangle three line widths wide.
void paintArrowhead(QPainter& painter, const QPointF& from, const QPointF& tip, const QPen& pen) {
    const QLineF line(tip, from);
    if (line.length() <= 0) return;
    const double size = std::max(3.0, pen.widthF() * 3);
    const QPointF unit = (from - tip) / line.length();
    const QPointF normal(-unit.y(), unit.x());
    const QPolygonF head(QVector<QPointF>{tip, tip + unit * size * 1.5 + normal * size,
                                          tip + unit * size * 1.5 - normal * size});
    painter.setPen(Qt::NoPen);
    painter.setBrush(pen.color());
    painter.drawPolygon(head);
}

// Where something is that is not drawn: a dashed outline with its name and kind.
void paintPlaceOf(QPainter& painter, const DrawnShape& shape, const QRectF& box) {
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

SlideScene::SlideScene(const Deck& deck, int slide)
    : m_size(deck.slideSize()), m_drawing(deck.drawing(slide)), m_pictures(deck.pictures()) {
    for (DrawnShape& shape : m_drawing.shapes) {
        if (shape.hasText && shape.boxKnown) m_text.emplace(shape.id, TextLayout(shape));
        if (!shape.cells.isEmpty()) layOutTable(shape);
        for (const DrawnShape& member : shape.members) m_memberText[shape.id].emplace_back(member);
    }
    for (int i = 0; i < m_drawing.behind.size(); ++i)
        if (m_drawing.behind[i].hasText && m_drawing.behind[i].boxKnown)
            m_behindText.emplace(i, TextLayout(m_drawing.behind[i]));
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
    const QRectF slide(QPointF(), m_size);
    QPainterPath whole;
    whole.addRect(slide);
    painter.fillRect(slide, Qt::white);
    paintFill(painter, whole, slide, m_drawing.backgroundFill, *m_pictures);
    for (int i = 0; i < m_drawing.behind.size(); ++i) {
        const auto text = m_behindText.find(i);
        const TextLayout* layout = text == m_behindText.end() ? nullptr : &text->second;
        const DrawnShape& shape = m_drawing.behind[i];
        paintShape(painter, shape, layout ? layout->box() : shape.box, layout, false, 0, 0);
    }
    for (const DrawnShape& shape : m_drawing.shapes) {
        const bool selected = shape.id == textShape;
        paintShape(painter, shape, boxOf(shape.id), text(shape.id), true, selected ? selStart : 0,
                   selected ? selLength : 0);
    }
    painter.restore();
}

void SlideScene::paintShape(QPainter& painter, const DrawnShape& shape, const QRectF& box,
                            const TextLayout* text, bool ofSlide, int selStart,
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
        // Decoded (once, shared by every view of the deck) at the size it is drawn here, with
        // what is cropped off.
        const QMarginsF& crop = shape.crop;
        const double shownWidth = std::max(0.01, 1 - crop.left() - crop.right());
        const double shownHeight = std::max(0.01, 1 - crop.top() - crop.bottom());
        const QSizeF drawn = painter.deviceTransform().mapRect(box).size();
        const QImage image = m_pictures->picture(
            shape.picture, QSizeF(drawn.width() / shownWidth, drawn.height() / shownHeight)
                               .toSize()
                               .boundedTo(QSize(8192, 8192)));
        if (image.isNull() && ofSlide) {
            paintPlaceOf(painter, shape, box);
        } else if (!image.isNull()) {
            const QRectF source(crop.left() * image.width(), crop.top() * image.height(),
                                shownWidth * image.width(), shownHeight * image.height());
            painter.drawImage(box, image, source);
        }
        if (shape.outlined) {
            painter.setBrush(Qt::NoBrush);
            painter.setPen(penOf(shape.line, shape.lineWidth, shape.dash));
            painter.drawRect(box);
        }
    } else if (!shape.members.isEmpty()) {
        const std::vector<TextLayout>& layouts = m_memberText.at(shape.id);
        for (int i = 0; i < shape.members.size(); ++i) {
            const DrawnShape& member = shape.members[i];
            const TextLayout& text = layouts[static_cast<std::size_t>(i)];
            paintShape(painter, member, text.box(), member.hasText ? &text : nullptr, false, 0, 0);
        }
    } else if (!shape.chart.type.isEmpty()) {
        paintChart(painter, shape.chart, box);
    } else if (!shape.cells.isEmpty()) {
        const std::vector<TextLayout>& layouts = m_cellText.at(shape.id);
        for (int i = 0; i < shape.cells.size(); ++i)
            paintCell(painter, shape.cells[i], layouts[static_cast<std::size_t>(i)]);
    } else if (!shape.geometry.isEmpty()) {
        const QPainterPath path = outlineOf(shape, box);
        if (!isOpenGeometry(shape.geometry))
            paintFill(painter, path, box, shape.fillStyle, *m_pictures);
        if (shape.outlined) {
            const QPen pen = penOf(shape.line, shape.lineWidth, shape.dash);
            painter.strokePath(path, pen);
            if (isOpenGeometry(shape.geometry) && path.elementCount() >= 2) {
                const QPointF start = path.elementAt(0);
                const QPointF end = path.elementAt(path.elementCount() - 1);
                if (!shape.headEnd.isEmpty() && shape.headEnd != QLatin1String("none"))
                    paintArrowhead(painter, end, start, pen);
                if (!shape.tailEnd.isEmpty() && shape.tailEnd != QLatin1String("none"))
                    paintArrowhead(painter, start, end, pen);
            }
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

void SlideScene::layOutTable(DrawnShape& table) {
    // A row is as high as its tallest text needs (with the cell's margins), as presentation
    // programs grow rows; the rows below move down by what it grew. Cells come row by row.
    std::vector<TextLayout>& layouts = m_cellText[table.id];
    double shift = 0;
    for (int first = 0; first < table.cells.size();) {
        const double top = table.cells[first].box.top();
        int end = first;
        double grow = 0;
        for (; end < table.cells.size() && table.cells[end].box.top() == top; ++end) {
            DrawnShape& cell = table.cells[end];
            cell.text.autofit = Autofit::ShapeFollowsText;
            cell.box.translate(0, shift);
            layouts.emplace_back(cell);
            grow = std::max(grow, layouts.back().box().height() - cell.box.height());
        }
        for (int i = first; i < end; ++i) {
            DrawnShape& cell = table.cells[i];
            cell.box.setHeight(cell.box.height() + grow);
            // Laid out again in the grown box, anchored as the cell says.
            cell.text.autofit = Autofit::None;
            layouts[static_cast<std::size_t>(i)] = TextLayout(cell);
        }
        shift += grow;
        first = end;
    }
    table.box.setHeight(table.box.height() + shift);
}

void SlideScene::paintCell(QPainter& painter, const DrawnShape& cell,
                           const TextLayout& text) const {
    QPainterPath area;
    area.addRect(cell.box);
    paintFill(painter, area, cell.box, cell.fillStyle, *m_pictures);
    const QRectF& b = cell.box;
    const QLineF sides[4] = {{b.topLeft(), b.bottomLeft()},
                             {b.topLeft(), b.topRight()},
                             {b.topRight(), b.bottomRight()},
                             {b.bottomLeft(), b.bottomRight()}};
    for (int side = 0; side < 4; ++side) {
        if (cell.borders[side].width <= 0) continue;
        painter.setPen(penOf(cell.borders[side].rgb, cell.borders[side].width, QString()));
        painter.drawLine(sides[side]);
    }
    text.draw(painter);
}

const DrawnShape* SlideScene::shape(int id) const {
    for (const DrawnShape& s : m_drawing.shapes)
        if (s.id == id) return &s;
    return nullptr;
}

QRectF SlideScene::boxOf(int id) const {
    if (const TextLayout* layout = text(id)) return layout->box();
    const DrawnShape* s = shape(id);
    return s && s->boxKnown ? s->box : QRectF();
}

int SlideScene::shapeAt(const QPointF& point) const {
    for (auto it = m_drawing.shapes.crbegin(); it != m_drawing.shapes.crend(); ++it) {
        if (!it->boxKnown || it->kind == QLatin1String("group")) continue;
        // A line is hit near it, anything else within its box (margins make thin ones hittable),
        // the point turned back by the shape's rotation and flips about the box's centre.
        const QRectF box = boxOf(it->id).normalized();
        QTransform drawn;
        drawn.translate(box.center().x(), box.center().y());
        drawn.rotate(it->rotation);
        drawn.scale(it->flipH ? -1 : 1, it->flipV ? -1 : 1);
        drawn.translate(-box.center().x(), -box.center().y());
        if (box.adjusted(-3, -3, 3, 3).contains(drawn.inverted().map(point))) return it->id;
    }
    return 0;
}

const TextLayout* SlideScene::text(int id) const {
    const auto it = m_text.find(id);
    return it == m_text.end() ? nullptr : &it->second;
}

}  // namespace minihost
