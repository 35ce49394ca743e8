// SPDX-License-Identifier: MIT
// Laying a text frame out: each paragraph is measured in segments of one format and script,
// broken into lines, then (once the box is known, which a shape that follows its text takes from
// its lines) aligned and placed.
#include "minihost/slxcore/textlayout.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>
#include <limits>

#include "minihost/slxcore/textfonts_p.h"
#include "minihost/slxcore/textscripts_p.h"

namespace minihost {
namespace {

// Between East Asian and Latin text on a line LibreOffice leaves a fifth of the line height
// of the text before the border (1.2 em): 0.24 em.
constexpr double kScriptGap = 0.24;
// Single line height, in sizes (the baseline kLineDescent above its bottom).
constexpr double kSingleLine = 1.2;
// A line of reduced spacing keeps at most this share of its height above the baseline.
constexpr double kReducedAscent = 0.8;
// Default tab stops: every inch from the left of the text area (the box less its inset).
constexpr double kTabStop = 72.0;
// How much wider than its room a line may be and still fit: positions are rounded to a
// hundredth of a millimetre by the programs we compare with.
constexpr double kFitTolerance = 0.05;
constexpr double kEndless = std::numeric_limits<double>::infinity();

}  // namespace

class LayoutBuilder {
public:
    LayoutBuilder(TextLayout& out, const DrawnShape& shape) : m_out(out), m_frame(shape.text) {
        m_out.m_box = shape.box;
        const bool shrinks = m_frame.autofit == Autofit::ShrinkText;
        m_scale = shrinks ? m_frame.fontScale : 1.0;
        m_reduction = shrinks ? m_frame.lineSpacingReduction : 0.0;
    }

    void build() {
        if (m_frame.paragraphs.isEmpty()) return;
        for (int i = 0; i < m_frame.paragraphs.size(); ++i)
            m_out.m_text += (i > 0 ? QStringLiteral("\r") : QString()) + m_frame.paragraphs[i].text;
        m_out.m_length = static_cast<int>(m_out.m_text.size());
        m_out.m_places.assign(static_cast<std::size_t>(m_out.m_length) + 1, CharPlace{});
        const QMarginsF insets = m_frame.insets;
        const double room =
            m_frame.wrap ? std::max(1.0, m_out.m_box.width() - insets.left() - insets.right())
                         : kEndless;
        double height = 0, widest = 0;
        for (int i = 0; i < m_frame.paragraphs.size(); ++i) layParagraph(i, room, height, widest);
        fitBox(height, widest);
        place(height);
    }

private:
    // One UTF-16 unit of a paragraph.
    // There is one for every unit of the text, so what a unit's own measures are kept in floats
    // (a millionth of its size is well below what is drawn); what is summed over a line or a run,
    // which may be millions of points long, stays double.
    struct Unit {
        double runX = 0;    // where it is in its run
        double left = 0;    // on its line, from where the line's text starts
        float advance = 0;  // with its character spacing; a tab's is set on its line
        float gap = 0;      // left after it when the next unit is of the other script
        float size = 0;     // scaled
        float spacing = 0;  // its character spacing
        int run = -1;       // drawn in m_out.m_runs[run]; -1 for "\v" and tabs
    };
    // A line before it is aligned: positions relative to the paragraph's start.
    struct Pending {
        int paragraph = 0;
        int start = 0, end = 0;  // in the paragraph
        bool closed = false;     // by "\v" or the paragraph's end (else it wrapped)
        double indent = 0;       // where its text starts, from the room's left
        double width = 0;        // of its text as aligned
        double ascent = 0, descent = 0, height = 0, baselineFromTop = 0, top = 0;
    };

    // The formats of a paragraph's positions, asked for in increasing order: its runs (in text
    // order) are walked once, not once a position, which would be quadratic in a paragraph of many
    // runs.
    class FormatCursor {
    public:
        explicit FormatCursor(const TextParagraph& para) : m_para(para) {}
        const TextFormat& at(int i) {
            const QList<TextRun>& runs = m_para.runs;
            while (m_run < runs.size() &&
                   runs[m_run].start - m_para.start + runs[m_run].length <= i)
                ++m_run;
            if (m_run < runs.size() && runs[m_run].start - m_para.start <= i)
                return runs[m_run].format;
            return m_para.endFormat;
        }

    private:
        const TextParagraph& m_para;
        int m_run = 0;
    };

    // Measures paragraph `index`, breaks it into lines, and stacks them below `height`.
    void layParagraph(int index, double room, double& height, double& widest) {
        const TextParagraph& para = m_frame.paragraphs[index];
        const QString& text = para.text;
        const int n = static_cast<int>(text.size());
        m_units.push_back(measure(para));
        std::vector<Unit>& units = m_units.back();
        const std::vector<bool> breaks = breaksOf(text);
        const bool bulleted = !para.bullet.isEmpty() && n > 0;
        if (index > 0) height += para.spaceBefore;

        // The bullet in its format (the first character's, with the bullet's own typeface,
        // colour and size); its width pushes the first line's text right when it does not fit
        // in the hanging indent.
        TextFormat bulletFormat;
        double bulletRight = 0;
        if (bulleted) {
            bulletFormat = FormatCursor(para).at(0);
            if (!para.bulletFont.isEmpty()) bulletFormat.latinFont = para.bulletFont;
            if (para.bulletColored) bulletFormat.rgb = para.bulletRgb;
            bulletFormat.size *= para.bulletScale;
            bulletRight = para.marginLeft + para.indent +
                          QFontMetricsF(fontFor(bulletFormat, Script::Latin, m_scale).font)
                                  .horizontalAdvance(para.bullet) /
                              kUnits;
        }

        int start = 0;
        for (bool first = true;; first = false) {
            Pending line;
            line.paragraph = index;
            line.start = start;
            // A bullet hangs at the indent; the text of its first line starts at the margin, or
            // after the bullet when the bullet reaches past the margin.
            line.indent = para.marginLeft + (first && !bulleted ? para.indent : 0.0);
            if (first && bulleted) line.indent = std::max(line.indent, bulletRight);
            const double lineRoom = room - line.indent - para.marginRight;
            double x = 0;
            int end = n;
            for (int i = start; i < n; ++i) {
                if (text[i] == QChar('\v')) {
                    end = i;
                    break;
                }
                Unit& u = units[static_cast<std::size_t>(i)];
                if (text[i] == QChar('\t'))
                    u.advance = static_cast<float>(
                        kTabStop * (std::floor((line.indent + x) / kTabStop) + 1) -
                        (line.indent + x));
                // The spacing after a paragraph's last character does not have to fit.
                const double needs = u.advance - (i == n - 1 ? u.spacing : 0.0);
                if (!isBreakingSpace(text[i].unicode()) && i > start &&
                    x + needs > lineRoom + kFitTolerance) {
                    int at = i;
                    while (at > start && !breaks[static_cast<std::size_t>(at)]) --at;
                    // No place to break: the word breaks where it must.
                    end = at > start ? at : i;
                    break;
                }
                u.left = x;
                x += u.advance + (i + 1 < n ? u.gap : 0.0);
            }
            line.end = end;
            line.closed = end == n || text[end] == QChar('\v');
            // Spaces at a wrap hang; the spacing after a paragraph's last character is not aligned.
            int last = end - 1;
            if (!line.closed)
                while (last >= start && isBreakingSpace(text[last].unicode())) --last;
            if (last >= start) {
                const Unit& u = units[static_cast<std::size_t>(last)];
                line.width = u.left + u.advance - (last == n - 1 ? u.spacing : 0.0);
            }
            widest = std::max(widest, line.indent + line.width + para.marginRight);
            stack(line, para, units, height);
            m_pending.push_back(line);
            if (end >= n) break;
            start = line.closed ? end + 1 : end;
        }
        if (index + 1 < m_frame.paragraphs.size()) height += para.spaceAfter;
        if (bulleted) {
            m_bullets.push_back({index, para.bullet, bulletFormat});
        }
    }

    // The units of a paragraph with their advances, script gaps and sizes.
    std::vector<Unit> measure(const TextParagraph& para) {
        const QString& text = para.text;
        const int n = static_cast<int>(text.size());
        std::vector<Unit> units(static_cast<std::size_t>(n));
        const std::vector<Script> scripts = scriptsOf(text);
        FormatCursor formats(para);
        for (int i = 0; i < n;) {
            const TextFormat& format = formats.at(i);
            const bool alone = text[i] == QChar('\v') || text[i] == QChar('\t');
            int end = i + 1;
            while (!alone && end < n && text[end] != QChar('\v') && text[end] != QChar('\t') &&
                   scripts[end] == scripts[i] && &formats.at(end) == &format)
                ++end;
            if (!alone) {
                TextLayout::Run run;
                const TextFont font = fontFor(format, scripts[i], m_scale);
                run.font = font.font;
                run.rgb = format.rgb;
                ShapedText shaped = shapeText(text.mid(i, end - i), font, scripts[i]);
                if (shaped.inTypeface) run.typeface = font.typeface;
                run.glyphs = std::move(shaped.glyphs);
                run.glyphX = std::move(shaped.glyphX);
                run.glyphPositions.reserve(shaped.glyphUnits.size());
                for (int unit : shaped.glyphUnits)
                    run.glyphPositions.push_back(para.start + i + unit);
                shaped.glyphUnits = std::vector<int>();
                m_out.m_runs.push_back(std::move(run));
                for (int k = i; k < end; ++k) {
                    Unit& u = units[static_cast<std::size_t>(k)];
                    u.advance =
                        static_cast<float>(shaped.offsets[k - i + 1] - shaped.offsets[k - i]);
                    u.run = static_cast<int>(m_out.m_runs.size()) - 1;
                    u.runX = shaped.offsets[k - i];
                }
            }
            for (int k = i; k < end; ++k) {
                Unit& u = units[static_cast<std::size_t>(k)];
                u.size = static_cast<float>(format.size * m_scale);
                u.spacing = static_cast<float>(format.characterSpacing);
            }
            i = end;
        }
        for (int i = 0; i + 1 < n; ++i)
            if (text[i] != QChar('\v') && text[i + 1] != QChar('\v') &&
                scripts[i] != scripts[i + 1])
                units[static_cast<std::size_t>(i)].gap =
                    static_cast<float>(kScriptGap * units[i].size);
        return units;
    }

    // The line's height from its largest size and its paragraph's line spacing, below `height`.
    void stack(Pending& line, const TextParagraph& para, const std::vector<Unit>& units,
               double& height) const {
        double size = 0;
        // A "\v" closing the line is text of it too.
        const bool broken = line.closed && line.end < static_cast<int>(units.size());
        for (int i = line.start; i < line.end + (broken ? 1 : 0); ++i)
            size = std::max(size, static_cast<double>(units[static_cast<std::size_t>(i)].size));
        if (size == 0) size = para.endFormat.size * m_scale;
        line.ascent = size;
        line.descent = kLineDescent * size;
        const double single = kSingleLine * size;
        line.height = single;
        line.baselineFromTop = line.ascent;
        if (para.lineSpacingPoints > 0) {
            line.height = para.lineSpacingPoints;
            line.baselineFromTop += para.lineSpacingPoints - single;
        } else {
            const double multiple = std::max(0.0, para.lineSpacing - m_reduction);
            line.height = single * multiple;
            if (multiple < 1)
                line.baselineFromTop = std::min(line.ascent, line.height * kReducedAscent);
            else
                line.baselineFromTop += line.height - single;
        }
        line.top = height;
        height += line.height;
    }

    // A shape that follows its text takes the height (and without wrapping the width) it needs.
    void fitBox(double height, double widest) {
        if (m_frame.autofit != Autofit::ShapeFollowsText) return;
        QRectF& box = m_out.m_box;
        const QMarginsF insets = m_frame.insets;
        const double grown = height + insets.top() + insets.bottom() - box.height();
        box.setHeight(box.height() + grown);
        if (m_frame.anchor == TextAnchor::Middle) box.translate(0, -grown / 2);
        if (m_frame.anchor == TextAnchor::Bottom) box.translate(0, -grown);
        if (m_frame.wrap) return;
        const double wider = widest + insets.left() + insets.right() - box.width();
        box.setWidth(box.width() + wider);
        const TextAlign align = m_frame.paragraphs.first().align;
        if (align == TextAlign::Center) box.translate(-wider / 2, 0);
        if (align == TextAlign::Right) box.translate(-wider, 0);
    }

    // Aligns every line in the box and writes lines, places and pieces.
    void place(double height) {
        const QRectF box = m_out.m_box;
        const QMarginsF insets = m_frame.insets;
        const double room = box.width() - insets.left() - insets.right();
        const double free = box.height() - insets.top() - insets.bottom() - height;
        const double top = box.top() + insets.top() +
                           (m_frame.anchor == TextAnchor::Middle   ? free / 2
                            : m_frame.anchor == TextAnchor::Bottom ? free
                                                                   : 0.0);
        const double left = box.left() + insets.left();
        for (std::size_t k = 0; k < m_pending.size(); ++k) {
            const Pending& p = m_pending[k];
            std::vector<Unit>& units = m_units[static_cast<std::size_t>(p.paragraph)];
            const TextParagraph& para = m_frame.paragraphs[p.paragraph];
            const double lineRoom = room - p.indent - para.marginRight;
            double offset = p.indent;
            if (para.align == TextAlign::Center) offset += (lineRoom - p.width) / 2;
            if (para.align == TextAlign::Right) offset += lineRoom - p.width;
            double width = p.width;
            if (para.align == TextAlign::Justify && !p.closed) width = justify(p, units, lineRoom);

            TextLine line;
            line.paragraph = p.paragraph;
            line.start = para.start + p.start;
            line.end = para.start + p.end;
            line.top = top + p.top;
            line.baseline = line.top + p.baselineFromTop;
            line.ascent = p.ascent;
            line.descent = p.descent;
            line.height = p.height;
            line.left = left + offset;
            line.right = line.left + width;
            const int index = static_cast<int>(m_out.m_lines.size());
            m_out.m_lines.push_back(line);

            double end = line.left;
            for (int i = p.start; i < p.end; ++i) {
                const Unit& u = units[static_cast<std::size_t>(i)];
                CharPlace& at = m_out.m_places[static_cast<std::size_t>(para.start + i)];
                at = {index, line.left + u.left, line.left + u.left + u.advance};
                end = at.right;
                addToPiece(para.start + i, u, at.left, line.baseline,
                           para.align == TextAlign::Justify && !p.closed);
            }
            // The "\v" or paragraph end closing the line sits after its text.
            if (p.closed)
                m_out.m_places[static_cast<std::size_t>(para.start + p.end)] = {index, end, end};
            m_lastRun = -1;
        }
        for (const auto& [index, text, format] : m_bullets) {
            // A lambda may not capture a structured binding (C++17): it gets a copy.
            const auto paragraph = index;
            const auto first =
                std::find_if(m_out.m_lines.begin(), m_out.m_lines.end(),
                             [paragraph](const TextLine& l) { return l.paragraph == paragraph; });
            const TextParagraph& para = m_frame.paragraphs[index];
            TextLayout::Run run;
            run.font = fontFor(format, Script::Latin, m_scale).font;
            run.rgb = format.rgb;
            m_out.m_runs.push_back(std::move(run));
            m_out.m_bullets.push_back(
                {text, static_cast<int>(m_out.m_runs.size()) - 1,
                 QPointF(left + para.marginLeft + para.indent, first->baseline)});
        }
    }

    // Widens the spaces of a wrapped line (without spaces, the gaps between its characters) to
    // fill `room`; returns its width.
    double justify(const Pending& p, std::vector<Unit>& units, double room) const {
        const QString& text = m_frame.paragraphs[p.paragraph].text;
        int last = p.end - 1;
        while (last >= p.start && isBreakingSpace(text[last].unicode())) --last;
        if (last <= p.start || p.width >= room) return p.width;
        int spaces = 0;
        for (int i = p.start; i < last; ++i)
            if (isBreakingSpace(text[i].unicode())) ++spaces;
        const int gaps = spaces > 0 ? spaces : last - p.start;
        const double extra = (room - p.width) / gaps;
        double shift = 0;
        for (int i = p.start; i <= last; ++i) {
            units[static_cast<std::size_t>(i)].left += shift;
            if (spaces == 0 || isBreakingSpace(text[i].unicode())) shift += extra;
        }
        return room;
    }

    // Adds unit `pos` at `x` to the piece drawn before it, or starts a new one. Units of a
    // justified line are drawn one by one, at their widened places.
    void addToPiece(int pos, const Unit& u, double x, double baseline, bool alone) {
        if (u.run < 0) {
            m_lastRun = -1;
            return;
        }
        if (!alone && m_lastRun == u.run && m_out.m_pieces.back().end == pos) {
            m_out.m_pieces.back().end = pos + 1;
            return;
        }
        m_out.m_pieces.push_back({pos, pos + 1, u.run, u.runX, x, baseline});
        m_lastRun = u.run;
    }

    TextLayout& m_out;
    const TextFrame& m_frame;
    double m_scale = 1, m_reduction = 0;
    std::vector<Pending> m_pending;
    std::vector<std::vector<Unit>> m_units;  // of each paragraph
    struct PendingBullet {
        int paragraph;
        QString text;
        TextFormat format;
    };
    std::vector<PendingBullet> m_bullets;
    int m_lastRun = -1;
};

TextLayout::TextLayout(const DrawnShape& shape) {
    LayoutBuilder(*this, shape).build();
}

}  // namespace minihost
