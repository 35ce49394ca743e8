// SPDX-License-Identifier: MIT
// A laid-out text's positions for a person editing it: which line a position is on, the place
// between characters nearest to a point, the cursor, and moves by line.
#include <algorithm>
#include <cmath>

#include "minihost/slxcore/textlayout.h"
#include "minihost/slxcore/textscripts_p.h"

namespace minihost {
namespace {

// Whether the line wrapped into the next one (rather than ending at a break).
bool wraps(const std::vector<TextLine>& lines, std::size_t index) {
    return index + 1 < lines.size() && lines[index + 1].paragraph == lines[index].paragraph &&
           lines[index + 1].start == lines[index].end;
}

// Where the cursor at `pos` on `line` stands.
double cursorX(const std::vector<CharPlace>& places, const TextLine& line, int pos) {
    if (pos >= line.start && pos < line.end) return places[static_cast<std::size_t>(pos)].left;
    if (line.end > line.start) return places[static_cast<std::size_t>(line.end - 1)].right;
    return line.left;
}

}  // namespace

int TextLayout::lineOf(int pos) const {
    if (m_lines.empty()) return 0;
    return m_places[static_cast<std::size_t>(std::clamp(pos, 0, m_length))].line;
}

CharPlace TextLayout::place(int pos) const {
    if (m_lines.empty()) return {};
    return m_places[static_cast<std::size_t>(std::clamp(pos, 0, m_length))];
}

int TextLayout::lineStart(int pos) const {
    if (m_lines.empty()) return 0;
    return m_lines[static_cast<std::size_t>(lineOf(pos))].start;
}

int TextLayout::lineEnd(int pos) const {
    if (m_lines.empty()) return 0;
    const std::size_t index = static_cast<std::size_t>(lineOf(pos));
    const TextLine& line = m_lines[index];
    // Before the space it wrapped at: after it is the next line's start.
    if (wraps(m_lines, index) && line.end > line.start &&
        isBreakingSpace(m_text[line.end - 1].unicode()))
        return line.end - 1;
    return line.end;
}

int TextLayout::positionAt(const QPointF& point) const {
    if (m_lines.empty()) return 0;
    // The line nearest to the point vertically, then the nearest place on it.
    std::size_t best = 0;
    double bestDistance = 0;
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        const TextLine& line = m_lines[i];
        const double top = line.baseline - line.ascent, bottom = line.baseline + line.descent;
        const double distance = point.y() < top      ? top - point.y()
                                : point.y() > bottom ? point.y() - bottom
                                                     : 0.0;
        if (i == 0 || distance < bestDistance) {
            best = i;
            bestDistance = distance;
        }
    }
    const TextLine& line = m_lines[best];
    const int last = lineEnd(line.start);
    int nearest = line.start;
    for (int pos = line.start; pos <= last; ++pos) {
        // Never between the halves of a pair.
        if (pos > line.start && pos < m_length && m_text[pos].isLowSurrogate()) continue;
        if (std::abs(cursorX(m_places, line, pos) - point.x()) <
            std::abs(cursorX(m_places, line, nearest) - point.x()))
            nearest = pos;
    }
    return nearest;
}

QLineF TextLayout::cursorLine(int pos) const {
    if (m_lines.empty()) return QLineF(m_box.topLeft(), m_box.topLeft() + QPointF(0, 18));
    pos = std::clamp(pos, 0, m_length);
    const TextLine& line = m_lines[static_cast<std::size_t>(lineOf(pos))];
    const double x = cursorX(m_places, line, pos);
    return QLineF(x, line.baseline - line.ascent, x, line.baseline + line.descent);
}

int TextLayout::verticalMove(int pos, int lines) const {
    if (m_lines.empty()) return pos;
    const int target = lineOf(pos) + lines;
    if (target < 0 || target >= static_cast<int>(m_lines.size())) return pos;
    const TextLine& to = m_lines[static_cast<std::size_t>(target)];
    const double x = cursorLine(pos).x1();
    return positionAt(QPointF(x, to.baseline));
}

}  // namespace minihost
