// SPDX-License-Identifier: MIT
// One slide read from the deck and laid out: what to draw and where each shape and its text
// are, in points on the slide. A copy: the deck may change afterwards (make a new scene then).
#pragma once

#include <QPainter>
#include <QTransform>
#include <map>
#include <memory>
#include <vector>

#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/textlayout.h"

namespace minihost {

class SlideScene {
public:
    SlideScene(const Deck& deck, int slide);

    QSizeF size() const { return m_size; }
    const SlideDrawing& drawing() const { return m_drawing; }
    // Slide points onto `target` (the slide stretched to fill it).
    QTransform toTarget(const QRectF& target) const;

    // Paints the slide in slide points. `textShape`'s text gets [selStart, selStart + selLength)
    // highlighted.
    void paint(QPainter& painter, int textShape = 0, int selStart = 0, int selLength = 0) const;

    // The shape with id `id` (null when there is none) and its box as drawn.
    const DrawnShape* shape(int id) const;
    QRectF boxOf(int id) const;
    // The frontmost shape drawn at `point` (groups are not hit: their members are), or 0. A
    // rotated or flipped shape is hit where it is drawn.
    int shapeAt(const QPointF& point) const;
    // The text layout of shape `id`, null when it has no text frame.
    const TextLayout* text(int id) const;

private:
    // `ofSlide`: a shape of the slide, whose place is outlined when it is not drawn (what the
    // master and layout do not draw stays invisible).
    void paintShape(QPainter& painter, const DrawnShape& shape, const QRectF& box,
                    const TextLayout* text, bool ofSlide, int selStart, int selLength) const;

    // Grows the rows of a table to their text and lays the cells' text out (m_cellText).
    void layOutTable(DrawnShape& table);
    // A table cell: its fill, borders and text.
    void paintCell(QPainter& painter, const DrawnShape& cell, const TextLayout& text) const;

    QSizeF m_size;
    SlideDrawing m_drawing;
    std::shared_ptr<PictureStore> m_pictures;
    std::map<int, TextLayout> m_text;
    // The text of what the master and layout draw behind the slide, by index in `behind`.
    std::map<int, TextLayout> m_behindText;
    // The text of each table's cells, in the order of its cells, by the table's id.
    std::map<int, std::vector<TextLayout>> m_cellText;
    // The text of each diagram's shapes, in the order of its members, by the diagram's id.
    std::map<int, std::vector<TextLayout>> m_memberText;
};

}  // namespace minihost
