// SPDX-License-Identifier: MIT
// A shape's text frame laid out as the slide shows it: paragraphs wrapped in the box less its
// insets, with their alignment, indents, spacing and bullets, anchored at the top, middle or
// bottom, sizes scaled by a frame that shrinks its text. Everything is in points on the slide,
// so drawing, hit-testing and the text cursor agree.
//
// Text positions are those of the deck (UTF-16 units over the frame's text, "\r" between
// paragraphs, "\v" for a line break), from 0 to the text's length.
#pragma once

#include <QLineF>
#include <QPainter>
#include <QRectF>
#include <QVector>
#include <memory>
#include <vector>

#include "minihost/slxcore/slidedrawing.h"

class QTextLayout;

namespace zstudio {

class FrameLayout {
public:
    explicit FrameLayout(const minihost::DrawnShape& shape);
    ~FrameLayout();
    FrameLayout(const FrameLayout&) = delete;
    FrameLayout& operator=(const FrameLayout&) = delete;

    // The shape's box as drawn: a frame whose shape follows its text is as high as the text,
    // grown away from its anchor (and, when it does not wrap, as wide, about the same centre).
    QRectF box() const { return m_box; }
    int length() const { return m_length; }

    // Draws the text; [selStart, selStart + selLength) highlighted in `highlight`.
    void draw(QPainter& painter, int selStart = 0, int selLength = 0,
              const QColor& highlight = QColor()) const;
    // The position nearest to `point`.
    int positionAt(const QPointF& point) const;
    // The text cursor at `pos`: a vertical line as high as its text line.
    QLineF cursorLine(int pos) const;
    // The position one line up (`lines` < 0) or down from `pos`, at the same x; `pos` itself
    // when there is no such line.
    int verticalMove(int pos, int lines) const;
    // Where the text line holding `pos` starts or ends (before its line break).
    int lineStart(int pos) const;
    int lineEnd(int pos) const;

private:
    struct Paragraph {
        std::unique_ptr<QTextLayout> layout;
        std::unique_ptr<QTextLayout> bullet;
        int start = 0;
        QPointF origin;  // of the layout's coordinates, in points on the slide
        // Each line's extent above and below its baseline (layout units), as presentation
        // programs measure it: from the Latin typefaces of its text, not its fallback fonts.
        std::vector<std::pair<double, double>> extents;
    };
    // The line's band: from its ascent above the baseline to its descent below (layout units).
    static std::pair<double, double> band(const Paragraph& p, int line);
    const Paragraph* paragraphFor(int pos) const;

    std::vector<Paragraph> m_paragraphs;
    QRectF m_box;
    int m_length = 0;
};

}  // namespace zstudio
