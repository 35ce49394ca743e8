// SPDX-License-Identifier: MIT
// A shape's text laid out as a presentation program lays it out: where each line breaks, where
// each character sits and how tall each line is. The one measure of text in the host: the
// studio's canvas draws and edits with it, the deck fits shapes that follow their text with it,
// and placement reads where the characters are from it.
//
// Input: a DrawnShape (Deck::drawing(), or Deck::textLayout() for one shape), whose fonts, sizes,
// character spacing, paragraph properties and frame properties are already resolved through
// placeholders, layout, master and the deck's defaults. Output, in points on the slide (the
// shape's box unrotated: a drawing turns it about the box's centre):
//   - lines(): every line with its paragraph, its text positions, its top, baseline, ascent,
//     descent and height, and the left and right of its text;
//   - place(pos): for every text position, its line and the left and right of its character;
//   - what the canvas needs: draw(), positionAt(), cursorLine(), lineStart(), lineEnd(),
//     verticalMove().
// Text positions are the deck's: UTF-16 units over the frame's text, "\r" between paragraphs,
// "\v" for a line break, from 0 to length().
//
// How text is measured (chosen by measuring LibreOffice's rendering, see tests/slxcore/
// textlayout_libreoffice_test.cpp for the figures):
//   - Scripts: each character is East Asian (isEastAsian), Latin, or weak (spaces, general
//     punctuation such as “ ” — …, symbols); a weak character takes the script of the text before
//     it (at a paragraph's start, of the text after it). East Asian text is drawn with the run's
//     East Asian typeface, Latin text with its Latin typeface; a typeface that is not installed is
//     replaced as the system's font configuration replaces it (an East Asian one, or one without
//     ideographs, by the system's typeface for Chinese; see typefaces.h).
//     Text is shaped with HarfBuzz told its language, East Asian text as Chinese (full-width
//     quotes and dashes), with pair kerning.
//   - Where East Asian and Latin text meet on a line, 0.24 em of the character before the border
//     is left between them.
//   - Character spacing (TextFormat::characterSpacing) follows every character, the last of a
//     line included; only at a paragraph's end is it left out, both when the line is aligned and
//     when its last character is fitted in the line.
//   - Single line height is 1.2 times the largest size on the line: the baseline lies 1.0 size
//     below the line's top and 0.2 above its bottom, whatever the typeface. Line spacing as a
//     multiple above 1 adds the room above the text; below 1 the line is that share of single
//     height and its ascent at most 0.8 of it; exact spacing makes the line that high, the
//     difference taken above the text. Spacing before the first paragraph and after the last is
//     not laid out.
//   - A frame that shrinks its text (Autofit::ShrinkText) scales every size by fontScale and
//     takes lineSpacingReduction off every multiple line spacing (1.5 less 0.2 is 1.3); exact
//     spacing, character spacing, paragraph spacing and indents are not scaled.
//   - A bullet hangs at the first line's indent, in the first character's format with the
//     bullet's own typeface, colour and size; the first line's text starts at the left margin,
//     or after the bullet when the bullet reaches past it.
//   - Lines wrap in the box's width less its insets, the paragraph's left margin, its first-line
//     indent (or a bullet's hanging indent) and its right margin. Latin text breaks at spaces, and
//     a word longer than a line breaks where it must; East Asian text breaks between any two
//     characters, and between East Asian and Latin text, except that no line starts with closing
//     punctuation (、。，．：；？！）」』】》〉］｝〕〗 ” ’ · and their Latin forms , . : ; ? ! ) ]
//     }, small kana, ...) and none ends with opening punctuation (（「『【《〈［｛〔〖 “ ‘ and ( [
//     {), and a doubled dash or ellipsis (—— ……) stays together. Spaces where a line wraps hang
//     past its end; at a paragraph's end they count. Justified lines widen their spaces (East Asian
//     text without spaces: the gaps between its characters); a paragraph's last line is not
//     justified.
//   - Vertical anchoring (top, middle, bottom) places the text's height in the box less its
//     insets; text taller than its box overflows it. A shape that follows its text
//     (Autofit::ShapeFollowsText) is as high as its text plus its insets, grown away from its
//     anchor (down, both ways or up); one that also does not wrap is as wide as its widest line,
//     grown from the side its first paragraph is aligned to.
// Not laid out: vertical text, columns, tab stops other than every inch, right-to-left text.
//
// Laying text out needs fonts, so a QGuiApplication must exist; like everything of the deck, the
// layout is made and used on the thread that runs it.
#pragma once

#include <QColor>
#include <QFont>
#include <QLineF>
#include <QPainter>
#include <QPointF>
#include <QRawFont>
#include <QRectF>
#include <QString>
#include <cstdint>
#include <vector>

#include "hostexport.h"
#include "minihost/slxcore/slidedrawing.h"
#include "minihost/slxcore/typefaces.h"

namespace minihost {

// Whether `c` is East Asian text: CJK ideographs (and their radicals, strokes and compatibility
// forms), kana, Hangul, bopomofo, Yi, CJK symbols and punctuation, enclosed and compatibility
// CJK characters, vertical forms, and full- and half-width forms. The one definition of East
// Asian text in the host: the layout picks typefaces, the space between scripts and line breaks
// by it. (Which characters get a reading is narrower: the add-on's, see containsChinese in
// placement.h.)
// Example: 中, 。, （, Ａ (U+FF21), か and U+20BB7 are; A, ā, 1, “ and the space are not.
ZHOST_API bool isEastAsian(char32_t c);

// How far a line's text reaches below its baseline, in sizes of its largest text: the layout's
// lines and the readings placed over them alike.
constexpr double kLineDescent = 0.2;

struct TextLine {
    int paragraph = 0;  // its index in the frame's paragraphs
    // The text positions on it: [start, end). A "\v" or paragraph end that closes the line is not
    // on it (it is at `end`); spaces at which the line wrapped are.
    int start = 0;
    int end = 0;
    double top = 0;  // where its room starts: the previous line's bottom, after paragraph spacing
    double baseline = 0;  // top + ascent, adjusted by line spacing
    double ascent = 0;    // of its text: its largest size (scaled by autofit)
    double descent = 0;   // kLineDescent of its largest size
    double height = 0;    // of its room, line spacing applied: the next line's top is top + height
    // Its text as aligned: from the left of its first character to the right of its last one,
    // spaces at a wrap and the character spacing after a paragraph's last character not counted.
    // An empty line has left == right where its text would start.
    double left = 0;
    double right = 0;
};

// Where a text position's character is. `left` and `right` bound its advance with its character
// spacing (and not the space between East Asian and Latin text). A position without a character
// of its own (a "\v", a paragraph end, the text's end, the second unit of a surrogate pair) has
// left == right at the end of the character before it on its line (or at the line's start).
struct CharPlace {
    int line = 0;
    double left = 0;
    double right = 0;
};

class ZHOST_API TextLayout {
public:
    // Lays out `shape`'s text frame (an empty layout for a shape without one: no lines, length 0,
    // and its box).
    explicit TextLayout(const DrawnShape& shape);

    // The shape's box as drawn: its own, or for a shape that follows its text the one its text
    // needs (see above). Points on the slide.
    QRectF box() const { return m_box; }
    int length() const { return m_length; }

    // Every line in order, paragraph after paragraph; every paragraph has one at least.
    const std::vector<TextLine>& lines() const { return m_lines; }
    // The line of text position `pos` (clamped to [0, length()]): the line holding its
    // character, the line a "\v" or paragraph end closes, the last line for length(). 0 for a
    // layout without lines.
    int lineOf(int pos) const;
    // Where position `pos` (clamped to [0, length()]) is; all zero for a layout without lines.
    CharPlace place(int pos) const;

    // Draws the text in points on the slide; [selStart, selStart + selLength) gets a `highlight`
    // background behind it.
    void draw(QPainter& painter, int selStart = 0, int selLength = 0,
              const QColor& highlight = QColor()) const;
    // The position nearest to `point`: on the line nearest to it vertically, the nearest place
    // between characters (never after the space or break that ends a line, see lineEnd()).
    int positionAt(const QPointF& point) const;
    // The text cursor at `pos`: a vertical line from its line's ascent to its descent (18 pt at
    // the box's top left corner for a layout without lines).
    QLineF cursorLine(int pos) const;
    // The position `lines` lines below (above, when negative) `pos`, nearest to its x; `pos` itself
    // when there is no such line.
    int verticalMove(int pos, int lines) const;
    // Where the line holding `pos` starts, and where it ends before its line break or paragraph
    // end or the space at which it wrapped.
    int lineStart(int pos) const;
    int lineEnd(int pos) const;

private:
    // Text of one format and script as drawn: as the glyphs it was shaped into in its typeface,
    // each with its text position and its x from the run's start, or (a typeface lacking a glyph
    // of it, a bullet) as a string in its font.
    struct Run {
        QFont font;
        std::uint32_t rgb = 0;
        Typeface typeface;  // null when drawn as a string
        // The typeface's raw font, found when the run is first drawn (finding it goes through
        // Qt's font database, which measuring never uses); invalid when Qt has not that face.
        mutable QRawFont rawFont;
        mutable bool rawFontFound = false;
        std::vector<quint32> glyphs;
        std::vector<int> glyphPositions;
        std::vector<double> glyphX;
    };
    // Consecutive characters of one run on one line.
    struct Piece {
        int start = 0;
        int end = 0;
        int run = 0;      // in m_runs
        double runX = 0;  // where its first character is in its run
        double x = 0;     // and on the slide
        double baseline = 0;
    };
    struct Bullet {
        QString text;
        int run = 0;
        QPointF origin;  // left end of its baseline
    };
    friend class LayoutBuilder;
    void drawPiece(QPainter& painter, const Piece& piece) const;

    QRectF m_box;
    int m_length = 0;
    QString m_text;  // the frame's text, "\r" between paragraphs
    std::vector<TextLine> m_lines;
    std::vector<CharPlace> m_places;  // one per position, length() included
    std::vector<Run> m_runs;
    std::vector<Piece> m_pieces;
    std::vector<Bullet> m_bullets;
};

}  // namespace minihost
