// SPDX-License-Identifier: MIT
#include "framelayout.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QHash>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

namespace zstudio {
namespace {

// Text is laid out at this many units per point: font pixel sizes are whole numbers, and a
// tenth of a point keeps sizes such as 10.5 pt and the advances of small text exact enough.
constexpr double kUnits = 10.0;
// How far a frame that does not wrap may run: far beyond any slide.
constexpr double kNoWrapWidth = 100000.0;
// Default tab stops of presentation programs: every inch.
constexpr double kTabStop = 72.0;

// The family the system draws for `family`: itself when installed, else what the font
// configuration puts in its place (as other presentation programs do), not the next family of
// a list, which would draw Latin text with the East Asian typeface.
QString installedFamily(const QString& family) {
    static QHash<QString, QString> known;  // the GUI thread's only
    auto it = known.find(family);
    if (it == known.end()) it = known.insert(family, QFontInfo(QFont(family)).family());
    return *it;
}

QFont fontFor(const minihost::TextFormat& format, double scale) {
    QFont font(format.latinFont);
    // Ideographs come from the East Asian typeface; Latin text from the Latin one.
    QStringList families{installedFamily(format.latinFont)};
    if (!format.eastAsianFont.isEmpty()) families << format.eastAsianFont;
    font.setFamilies(families);
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(format.size * scale * kUnits))));
    font.setBold(format.bold);
    font.setItalic(format.italic);
    font.setUnderline(format.underline);
    font.setStrikeOut(format.strike);
    // Hinting would round advances at the layout size, not at the size the slide is shown at.
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

QTextCharFormat charFormat(const minihost::TextFormat& format, double scale) {
    QTextCharFormat f;
    f.setFont(fontFor(format, scale));
    f.setForeground(QColor::fromRgb(format.rgb));
    // Not carried over by setFont().
    f.setFontUnderline(format.underline);
    f.setFontStrikeOut(format.strike);
    return f;
}

// The extent above and below the baseline of text in `format`: its Latin typeface's, which
// presentation programs use for the line even when ideographs on it come from another font.
std::pair<double, double> extentOf(const minihost::TextFormat& format, double scale) {
    QFont font(format.latinFont);
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(format.size * scale * kUnits))));
    font.setBold(format.bold);
    font.setItalic(format.italic);
    const QFontMetricsF metrics(font);
    // Single spacing is at least 1.2 times the size, as presentation programs space lines
    // (LibreOffice's lines of substituted fonts measure so too); the room goes below the text.
    const double single = 1.2 * format.size * scale * kUnits;
    return {metrics.ascent(), std::max(metrics.descent(), single - metrics.ascent())};
}

// Ideographs, kana, CJK punctuation and fullwidth forms.
bool isEastAsian(QChar c) {
    const ushort u = c.unicode();
    return (u >= 0x2E80 && u <= 0x9FFF) || (u >= 0xF900 && u <= 0xFAFF) ||
           (u >= 0xFF00 && u <= 0xFFEF) || c.isSurrogate();
}

// Where East Asian and Latin text meet, a quarter of an em apart, as the presentation program
// we compare with (LibreOffice) draws them: after the last character before each such border.
void spaceScripts(const QString& text, const minihost::TextParagraph& para, double scale,
                  QVector<QTextLayout::FormatRange>& formats) {
    for (int i = 0; i + 1 < text.size(); ++i) {
        const QChar a = text[i], b = text[i + 1];
        if (a.isSpace() || b.isSpace() || isEastAsian(a) == isEastAsian(b)) continue;
        float size = para.endFormat.size;
        for (const minihost::TextRun& run : para.runs)
            if (run.start - para.start <= i && i < run.start - para.start + run.length)
                size = run.format.size;
        QTextCharFormat gap;
        gap.setFontLetterSpacingType(QFont::AbsoluteSpacing);
        gap.setFontLetterSpacing(size * scale * kUnits / 4);
        formats.append({i, 1, gap});
    }
}

Qt::Alignment alignmentOf(minihost::TextAlign align) {
    switch (align) {
        case minihost::TextAlign::Center:
            return Qt::AlignHCenter;
        case minihost::TextAlign::Right:
            return Qt::AlignRight;
        case minihost::TextAlign::Justify:
            return Qt::AlignJustify;
        case minihost::TextAlign::Left:
            break;
    }
    return Qt::AlignLeft;
}

}  // namespace

FrameLayout::FrameLayout(const minihost::DrawnShape& shape) : m_box(shape.box) {
    const minihost::TextFrame& frame = shape.text;
    const bool shrinks = frame.autofit == minihost::Autofit::ShrinkText;
    const double scale = shrinks ? frame.fontScale : 1.0;
    const double spacingFactor = shrinks ? 1.0 - frame.lineSpacingReduction : 1.0;
    const bool follows = frame.autofit == minihost::Autofit::ShapeFollowsText;
    const QMarginsF insets = frame.insets;
    const double room =
        frame.wrap ? std::max(1.0, m_box.width() - insets.left() - insets.right()) : kNoWrapWidth;

    double y = 0, widest = 0;
    for (int i = 0; i < frame.paragraphs.size(); ++i) {
        const minihost::TextParagraph& para = frame.paragraphs[i];
        const minihost::TextFormat& first =
            para.runs.isEmpty() ? para.endFormat : para.runs.first().format;
        QString text = para.text;
        text.replace(QChar('\v'), QChar::LineSeparator);
        Paragraph laid;
        laid.start = para.start;
        laid.layout = std::make_unique<QTextLayout>(text, fontFor(first, scale));
        QVector<QTextLayout::FormatRange> formats;
        for (const minihost::TextRun& run : para.runs)
            formats.append({run.start - para.start, run.length, charFormat(run.format, scale)});
        spaceScripts(text, para, scale, formats);
        laid.layout->setFormats(formats);
        // A frame that does not wrap aligns its lines itself, once its width is known.
        QTextOption option(frame.wrap ? alignmentOf(para.align) : Qt::AlignLeft);
        option.setWrapMode(frame.wrap ? QTextOption::WrapAtWordBoundaryOrAnywhere
                                      : QTextOption::NoWrap);
        option.setTabStopDistance(kTabStop * kUnits);
        laid.layout->setTextOption(option);
        laid.layout->setCacheEnabled(true);

        if (i > 0) y += para.spaceBefore;
        const bool bulleted = !para.bullet.isEmpty() && !para.text.isEmpty();
        laid.layout->beginLayout();
        for (bool firstLine = true;; firstLine = false) {
            QTextLine line = laid.layout->createLine();
            if (!line.isValid()) break;
            // A bullet hangs at the indent; the text of its first line starts at the margin.
            const double left = para.marginLeft + (firstLine && !bulleted ? para.indent : 0.0);
            line.setLineWidth(std::max(1.0, room - left) * kUnits);
            // The largest text on the line sets its height.
            std::pair<double, double> extent{0, 0};
            const int from = line.textStart(), to = line.textStart() + line.textLength();
            for (const minihost::TextRun& run : para.runs) {
                const int runStart = run.start - para.start;
                if (runStart + run.length <= from || runStart >= std::max(to, from + 1)) continue;
                const auto e = extentOf(run.format, scale);
                extent = {std::max(extent.first, e.first), std::max(extent.second, e.second)};
            }
            if (extent.first == 0) extent = extentOf(first, scale);
            laid.extents.push_back(extent);
            const double height = (extent.first + extent.second) / kUnits;
            const double step = para.lineSpacingPoints > 0
                                    ? para.lineSpacingPoints
                                    : height * para.lineSpacing * spacingFactor;
            // Spacing other than single adds (or takes) room above the line's text. Qt draws
            // the baseline at the line's own ascent, taller where a fallback font is.
            const double baseline = (y + step - height) * kUnits + extent.first;
            line.setPosition(QPointF(left * kUnits, baseline - line.ascent()));
            widest = std::max(widest, left + line.naturalTextWidth() / kUnits);
            if (firstLine && bulleted) {
                laid.bullet = std::make_unique<QTextLayout>(para.bullet, fontFor(first, scale));
                laid.bullet->setFormats(
                    {{0, static_cast<int>(para.bullet.size()), charFormat(first, scale)}});
                laid.bullet->beginLayout();
                QTextLine mark = laid.bullet->createLine();
                mark.setLineWidth(kNoWrapWidth);
                mark.setPosition(QPointF((para.marginLeft + para.indent) * kUnits,
                                         line.y() + line.ascent() - mark.ascent()));
                laid.bullet->endLayout();
            }
            y += step;
        }
        laid.layout->endLayout();
        y += para.spaceAfter;
        m_paragraphs.push_back(std::move(laid));
    }
    m_length =
        frame.paragraphs.isEmpty()
            ? 0
            : frame.paragraphs.last().start + static_cast<int>(frame.paragraphs.last().text.size());

    if (follows) {
        // It grows away from where its text is anchored: down, both ways, or up.
        const double grown = y + insets.top() + insets.bottom() - m_box.height();
        m_box.setHeight(m_box.height() + grown);
        if (frame.anchor == minihost::TextAnchor::Middle) m_box.translate(0, -grown / 2);
        if (frame.anchor == minihost::TextAnchor::Bottom) m_box.translate(0, -grown);
        // A frame that neither wraps nor keeps its width grows (or shrinks) about its centre.
        if (!frame.wrap) {
            const double centre = m_box.center().x();
            m_box.setWidth(widest + insets.left() + insets.right());
            m_box.moveLeft(centre - m_box.width() / 2);
        }
    }
    if (!frame.wrap) {
        const double room = m_box.width() - insets.left() - insets.right();
        for (int i = 0; i < frame.paragraphs.size(); ++i) {
            const Qt::Alignment align = alignmentOf(frame.paragraphs[i].align);
            if (align != Qt::AlignHCenter && align != Qt::AlignRight) continue;
            QTextLayout& layout = *m_paragraphs[static_cast<std::size_t>(i)].layout;
            for (int n = 0; n < layout.lineCount(); ++n) {
                QTextLine line = layout.lineAt(n);
                const double free = room - (line.x() + line.naturalTextWidth()) / kUnits;
                const double shift = align == Qt::AlignRight ? free : free / 2;
                line.setPosition(line.position() + QPointF(std::max(0.0, shift) * kUnits, 0));
            }
        }
    }
    const double free = m_box.height() - insets.top() - insets.bottom() - y;
    const double anchor = frame.anchor == minihost::TextAnchor::Middle   ? free / 2
                          : frame.anchor == minihost::TextAnchor::Bottom ? free
                                                                         : 0.0;
    const QPointF origin(m_box.left() + insets.left(), m_box.top() + insets.top() + anchor);
    for (Paragraph& p : m_paragraphs) p.origin = origin;
}

FrameLayout::~FrameLayout() = default;

void FrameLayout::draw(QPainter& painter, int selStart, int selLength,
                       const QColor& highlight) const {
    for (const Paragraph& p : m_paragraphs) {
        QVector<QTextLayout::FormatRange> selections;
        const int from = std::max(selStart, p.start) - p.start;
        const int to = std::min(selStart + selLength, p.start + p.layout->text().size()) - p.start;
        if (selLength > 0 && to > from) {
            QTextCharFormat marked;
            marked.setBackground(highlight);
            selections.append({from, to - from, marked});
        }
        painter.save();
        painter.translate(p.origin);
        painter.scale(1 / kUnits, 1 / kUnits);
        p.layout->draw(&painter, QPointF(), selections);
        if (p.bullet) p.bullet->draw(&painter, QPointF());
        painter.restore();
    }
}

const FrameLayout::Paragraph* FrameLayout::paragraphFor(int pos) const {
    const Paragraph* found = m_paragraphs.empty() ? nullptr : &m_paragraphs.front();
    for (const Paragraph& p : m_paragraphs)
        if (p.start <= pos) found = &p;
    return found;
}

int FrameLayout::positionAt(const QPointF& point) const {
    // The line nearest to the point vertically, then the nearest place on it.
    const Paragraph* best = nullptr;
    QTextLine bestLine;
    double bestDistance = 0;
    for (const Paragraph& p : m_paragraphs) {
        const QPointF local = (point - p.origin) * kUnits;
        for (int i = 0; i < p.layout->lineCount(); ++i) {
            const QTextLine line = p.layout->lineAt(i);
            const auto [top, bottom] = band(p, i);
            const double distance = local.y() < top      ? top - local.y()
                                    : local.y() > bottom ? local.y() - bottom
                                                         : 0.0;
            if (!best || distance < bestDistance) {
                best = &p;
                bestLine = line;
                bestDistance = distance;
            }
        }
    }
    if (!best) return 0;
    const double x = (point.x() - best->origin.x()) * kUnits;
    return best->start + bestLine.xToCursor(x, QTextLine::CursorBetweenCharacters);
}

QLineF FrameLayout::cursorLine(int pos) const {
    const Paragraph* p = paragraphFor(pos);
    if (!p || p->layout->lineCount() == 0) {
        const QPointF corner = m_box.topLeft();
        return QLineF(corner, corner + QPointF(0, 18));
    }
    const int local = std::clamp(pos - p->start, 0, static_cast<int>(p->layout->text().size()));
    QTextLine line = p->layout->lineForTextPosition(local);
    if (!line.isValid()) line = p->layout->lineAt(p->layout->lineCount() - 1);
    const double x = line.cursorToX(local);
    const auto [top, bottom] = band(*p, line.lineNumber());
    return QLineF(p->origin + QPointF(x, top) / kUnits, p->origin + QPointF(x, bottom) / kUnits);
}

std::pair<double, double> FrameLayout::band(const Paragraph& p, int index) {
    const QTextLine line = p.layout->lineAt(index);
    const double baseline = line.y() + line.ascent();
    const auto& extent = p.extents.at(static_cast<std::size_t>(index));
    return {baseline - extent.first, baseline + extent.second};
}

int FrameLayout::verticalMove(int pos, int lines) const {
    const QLineF cursor = cursorLine(pos);
    const double height = cursor.y2() - cursor.y1();
    const double y = lines < 0 ? cursor.y1() - height * 0.5 : cursor.y2() + height * 0.5;
    const int target = positionAt(QPointF(cursor.x1(), y));
    // positionAt finds the nearest line: past the first or the last, that is the line itself.
    const QLineF moved = cursorLine(target);
    return std::abs(moved.y1() - cursor.y1()) < 1e-6 ? pos : target;
}

int FrameLayout::lineStart(int pos) const {
    const Paragraph* p = paragraphFor(pos);
    if (!p) return 0;
    const QTextLine line = p->layout->lineForTextPosition(pos - p->start);
    return line.isValid() ? p->start + line.textStart() : pos;
}

int FrameLayout::lineEnd(int pos) const {
    const Paragraph* p = paragraphFor(pos);
    if (!p) return 0;
    const QTextLine line = p->layout->lineForTextPosition(pos - p->start);
    if (!line.isValid()) return pos;
    int end = line.textStart() + line.textLength();
    // Before the line break or the space the line was wrapped at, not after it.
    const QString& text = p->layout->text();
    if (end > line.textStart() && end <= text.size() &&
        (text[end - 1] == QChar::LineSeparator || (end < text.size() && text[end - 1].isSpace())))
        --end;
    return p->start + end;
}

}  // namespace zstudio
