// SPDX-License-Identifier: MIT
// Drawing a laid-out text: the selection's background, then each piece of text in its font and
// colour at the place the layout gave it, as the glyphs it was shaped into, then the bullets.
#include <QFontMetricsF>
#include <QGlyphRun>
#include <algorithm>

#include "minihost/slxcore/textfonts_p.h"
#include "minihost/slxcore/textlayout.h"

namespace minihost {
namespace {

// Paints in the layout's font units with the origin at the left end of a baseline (points on
// the slide): fonts are sized in tenths of a point (see textfonts_p.h).
class FontUnits {
public:
    FontUnits(QPainter& painter, const QPointF& origin, std::uint32_t rgb) : m_painter(painter) {
        m_painter.save();
        m_painter.translate(origin);
        m_painter.scale(1 / kUnits, 1 / kUnits);
        m_painter.setPen(QColor::fromRgb(rgb));
    }
    ~FontUnits() { m_painter.restore(); }
    FontUnits(const FontUnits&) = delete;
    FontUnits& operator=(const FontUnits&) = delete;

private:
    QPainter& m_painter;
};

}  // namespace

void TextLayout::drawPiece(QPainter& painter, const Piece& piece) const {
    const Run& run = m_runs[static_cast<std::size_t>(piece.run)];
    FontUnits units(painter, QPointF(piece.x, piece.baseline), run.rgb);
    if (!run.typeface.isNull() && !run.rawFontFound) {
        run.rawFont = drawingFont(run.typeface, run.font);
        run.rawFontFound = true;
    }
    if (!run.rawFont.isValid()) {
        painter.setFont(run.font);
        painter.drawText(QPointF(), m_text.mid(piece.start, piece.end - piece.start));
        return;
    }
    QVector<quint32> glyphs;
    QVector<QPointF> positions;
    // Shaped left to right, a run's glyphs are in text order: the piece's are found by a search,
    // not by a walk over the whole run (a text of a million characters has thousands of lines).
    const auto first =
        std::lower_bound(run.glyphPositions.begin(), run.glyphPositions.end(), piece.start);
    for (auto g = static_cast<std::size_t>(first - run.glyphPositions.begin());
         g < run.glyphs.size() && run.glyphPositions[g] < piece.end; ++g) {
        glyphs << run.glyphs[g];
        positions << QPointF((run.glyphX[g] - piece.runX) * kUnits, 0);
    }
    QGlyphRun glyphRun;
    glyphRun.setRawFont(run.rawFont);
    glyphRun.setGlyphIndexes(glyphs);
    glyphRun.setPositions(positions);
    painter.drawGlyphRun(QPointF(), glyphRun);
    if (!run.font.underline() && !run.font.strikeOut()) return;
    // Lines under and through the piece, from its first character to its last one's advance.
    const QFontMetricsF metrics(run.font);
    const double width =
        (m_places[static_cast<std::size_t>(piece.end - 1)].right - piece.x) * kUnits;
    const double thickness = std::max(1.0, metrics.lineWidth());
    const QColor colour = QColor::fromRgb(run.rgb);
    if (run.font.underline())
        painter.fillRect(QRectF(0, metrics.underlinePos(), width, thickness), colour);
    if (run.font.strikeOut())
        painter.fillRect(QRectF(0, -metrics.strikeOutPos(), width, thickness), colour);
}

void TextLayout::draw(QPainter& painter, int selStart, int selLength,
                      const QColor& highlight) const {
    if (selLength > 0) {
        for (const TextLine& line : m_lines) {
            const int from = std::max(selStart, line.start);
            const int to = std::min(selStart + selLength, line.end);
            if (to <= from) continue;
            const double left = m_places[static_cast<std::size_t>(from)].left;
            const double right = m_places[static_cast<std::size_t>(to - 1)].right;
            painter.fillRect(
                QRectF(left, line.baseline - line.ascent, right - left, line.ascent + line.descent),
                highlight);
        }
    }
    for (const Piece& piece : m_pieces) drawPiece(painter, piece);
    for (const Bullet& bullet : m_bullets) {
        const Run& run = m_runs[static_cast<std::size_t>(bullet.run)];
        FontUnits units(painter, bullet.origin, run.rgb);
        painter.setFont(run.font);
        painter.drawText(QPointF(), bullet.text);
    }
}

}  // namespace minihost
