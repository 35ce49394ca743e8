// SPDX-License-Identifier: MIT
// The text of one text frame, read and edited in place in its p:txBody element.
//
// Positions count UTF-16 units from 0 over the frame's text as get_Text shows it: the runs' text,
// "\v" (U+000B) for a line break (a:br), the cached text of a field (a:fld), and "\r" (U+000D)
// between paragraphs. A field is indivisible and a surrogate pair is never split: a position
// inside either moves to its end (its start, for the start of a removal).
#pragma once

#include <QString>
#include <functional>
#include <pugixml.hpp>
#include <string>
#include <utility>
#include <vector>

namespace minihost {

class TextBody {
public:
    explicit TextBody(pugi::xml_node txBody);

    QString text() const;
    int length() const { return m_length; }

    // Inserts `text` at `pos` (clamped to the text) and returns the position used. New runs copy
    // the properties of the character before the position (of the first character after it at a
    // paragraph's start, of the paragraph's end properties when it is empty), without the
    // spelling flag. "\r" in `text` splits the paragraph, "\v" makes a line break.
    int insert(int pos, const QString& text);
    // Removes [pos, pos + len), widened to whole fields and pairs; returns the start and the
    // length actually removed. Removing a paragraph break joins the two paragraphs.
    std::pair<int, int> remove(int pos, int len);
    // Replaces [pos, pos + len) (widened as remove() widens it) by `text`, which takes the
    // format of the first character it replaces; when nothing is replaced, as insert() says.
    // The removal started at `at`; the new text is at [pos, pos + inserted).
    struct Replacement {
        int at, removed, pos, inserted;
    };
    Replacement replace(int pos, int len, const QString& text);
    // Calls `edit` on the run properties (created when missing) of every run, line break and
    // field in [pos, pos + len), splitting runs at both ends. For an empty range in an empty
    // paragraph it edits that paragraph's end properties, which text typed there takes up.
    void format(int pos, int len, const std::function<void(pugi::xml_node)>& edit);
    // The properties the character at `pos` shows (at the end: those of the last character, or
    // the last paragraph's end properties); an empty node when nothing is set there.
    pugi::xml_node propertiesAt(int pos) const;
    // The paragraphs' texts, in order (each with its line breaks as "\v").
    std::vector<QString> paragraphs() const;
    // Where each paragraph starts.
    std::vector<int> paragraphStarts() const;
    // The a:p elements, in order (none for a body without paragraphs).
    const std::vector<pugi::xml_node>& paragraphNodes() const { return m_paragraphs; }

    // A run, line break or field: where its text is and the run properties it carries (an
    // empty node when it has none). Paragraph ends are not pieces.
    struct Piece {
        int start;
        int length;
        pugi::xml_node properties;
        pugi::xml_node paragraph;
    };
    std::vector<Piece> pieces() const;

private:
    enum class Kind { Run, Break, Field, ParagraphEnd };
    struct Segment {
        Kind kind;
        pugi::xml_node node;       // the a:r, a:br, a:fld, or the paragraph that ends
        pugi::xml_node paragraph;  // the paragraph holding it
        int start;
        int length;
        int end() const { return start + length; }
    };

    void scan();
    pugi::xml_node ensureParagraph();
    int snapForward(int pos) const;
    int snapBackward(int pos) const;
    void splitRunAt(int pos);
    pugi::xml_node runProperties(pugi::xml_node node) const;

    pugi::xml_node m_body;
    std::string m_prefix;  // of the DrawingML elements, "a:" as a rule
    std::vector<Segment> m_segments;
    std::vector<pugi::xml_node> m_paragraphs;
    QString m_text;
    int m_length = 0;
};

}  // namespace minihost
