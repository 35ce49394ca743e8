// SPDX-License-Identifier: MIT
#include "minihost/slxcore/textbody_p.h"

#include <algorithm>

#include <QStringList>

#include "minihost/slxcore/xmlnode_p.h"

namespace minihost {
namespace {

QString elementText(pugi::xml_node node) {
    return QString::fromUtf8(child(node, "t").text().get());
}

void setElementText(pugi::xml_node node, const QString& text) {
    child(node, "t").text().set(text.toUtf8().constData());
}

// Characters XML 1.0 cannot carry are dropped; a newline counts as a paragraph break.
QString storable(const QString& text) {
    QString result;
    result.reserve(text.size());
    for (QChar c : text) {
        const ushort u = c.unicode();
        if (u == '\n')
            result += QChar('\r');
        else if (u >= 0x20 || u == '\t' || u == '\r' || u == '\v')
            result += c;
    }
    return result;
}

// Replaces every attribute and child of `target` by those of `source`.
void replaceProperties(pugi::xml_node target, pugi::xml_node source) {
    while (target.first_attribute()) target.remove_attribute(target.first_attribute());
    while (target.first_child()) target.remove_child(target.first_child());
    for (pugi::xml_attribute a = source.first_attribute(); a; a = a.next_attribute())
        target.append_attribute(a.name()).set_value(a.value());
    for (pugi::xml_node c = source.first_child(); c; c = c.next_sibling()) target.append_copy(c);
    target.remove_attribute("err");
}

}  // namespace

TextBody::TextBody(pugi::xml_node txBody) : m_body(txBody) {
    pugi::xml_node first = child(m_body, "p");
    if (!first) first = child(m_body, "bodyPr");
    m_prefix = first ? prefixOf(first) : std::string("a:");
    scan();
}

void TextBody::scan() {
    m_segments.clear();
    m_paragraphs.clear();
    m_text.clear();
    for (pugi::xml_node node = m_body.first_child(); node; node = node.next_sibling())
        if (node.type() == pugi::node_element && std::string(localName(node)) == "p")
            m_paragraphs.push_back(node);
    for (std::size_t i = 0; i < m_paragraphs.size(); ++i) {
        pugi::xml_node p = m_paragraphs[i];
        for (pugi::xml_node c = p.first_child(); c; c = c.next_sibling()) {
            if (c.type() != pugi::node_element) continue;
            const std::string local = localName(c);
            QString piece;
            Kind kind;
            if (local == "r") {
                kind = Kind::Run;
                piece = elementText(c);
            } else if (local == "br") {
                kind = Kind::Break;
                piece = QStringLiteral("\v");
            } else if (local == "fld") {
                kind = Kind::Field;
                piece = elementText(c);
            } else {
                continue;  // pPr, endParaRPr and elements we do not know hold no text
            }
            m_segments.push_back(
                {kind, c, p, static_cast<int>(m_text.size()), static_cast<int>(piece.size())});
            m_text += piece;
        }
        if (i + 1 < m_paragraphs.size()) {
            m_segments.push_back({Kind::ParagraphEnd, p, p, static_cast<int>(m_text.size()), 1});
            m_text += QChar('\r');
        }
    }
    m_length = static_cast<int>(m_text.size());
}

QString TextBody::text() const {
    return m_text;
}

pugi::xml_node TextBody::ensureParagraph() {
    if (m_paragraphs.empty()) {
        m_body.append_child((m_prefix + "p").c_str());
        scan();
    }
    return m_paragraphs.front();
}

int TextBody::snapForward(int pos) const {
    pos = std::clamp(pos, 0, m_length);
    for (const Segment& s : m_segments)
        if (s.kind == Kind::Field && s.start < pos && pos < s.end()) return s.end();
    if (pos > 0 && pos < m_length && m_text[pos - 1].isHighSurrogate() &&
        m_text[pos].isLowSurrogate())
        ++pos;
    return pos;
}

int TextBody::snapBackward(int pos) const {
    pos = std::clamp(pos, 0, m_length);
    for (const Segment& s : m_segments)
        if (s.kind == Kind::Field && s.start < pos && pos < s.end()) return s.start;
    if (pos > 0 && pos < m_length && m_text[pos - 1].isHighSurrogate() &&
        m_text[pos].isLowSurrogate())
        --pos;
    return pos;
}

void TextBody::splitRunAt(int pos) {
    for (const Segment& s : m_segments) {
        if (s.kind != Kind::Run || !(s.start < pos && pos < s.end())) continue;
        const QString whole = elementText(s.node);
        const int k = pos - s.start;
        // The copy carries every property of the run (a:rPr with all its children).
        pugi::xml_node second = s.node.parent().insert_copy_after(s.node, s.node);
        setElementText(s.node, whole.left(k));
        setElementText(second, whole.mid(k));
        scan();
        return;
    }
}

pugi::xml_node TextBody::runProperties(pugi::xml_node node) const {
    return child(node, "rPr");
}

int TextBody::insert(int pos, const QString& rawText) {
    ensureParagraph();
    pos = snapForward(pos);
    const QString text = storable(rawText);
    if (text.isEmpty()) return pos;
    splitRunAt(pos);

    // The paragraph holding the position, and the element the new text goes after.
    const std::vector<int> starts = paragraphStarts();
    std::size_t index = 0;
    while (index + 1 < starts.size() && starts[index + 1] <= pos) ++index;
    pugi::xml_node para = m_paragraphs[index];
    pugi::xml_node cursor;
    pugi::xml_node firstContent;
    for (const Segment& s : m_segments) {
        if (s.paragraph != para || s.kind == Kind::ParagraphEnd) continue;
        if (!firstContent) firstContent = s.node;
        if (s.end() <= pos) cursor = s.node;
    }
    pugi::xml_node source = cursor         ? runProperties(cursor)
                            : firstContent ? runProperties(firstContent)
                                           : child(para, "endParaRPr");
    // A detached copy: paragraph splits below move nodes around.
    pugi::xml_document templateDoc;
    pugi::xml_node properties = source ? templateDoc.append_copy(source) : pugi::xml_node();

    const std::string prefix = m_prefix;
    auto place = [&](const char* local) {
        const std::string name = prefix + local;
        if (cursor) return para.insert_child_after(name.c_str(), cursor);
        if (pugi::xml_node pPr = child(para, "pPr"))
            return para.insert_child_after(name.c_str(), pPr);
        return para.prepend_child(name.c_str());
    };
    auto copyProperties = [&](pugi::xml_node target) {
        if (!properties) return;
        pugi::xml_node rPr = target.append_copy(properties);
        rPr.set_name((prefix + "rPr").c_str());
        rPr.remove_attribute("err");  // a spelling mark belongs to the old text only
    };
    QString piece;
    auto flush = [&]() {
        if (piece.isEmpty()) return;
        pugi::xml_node run = place("r");
        copyProperties(run);
        run.append_child((prefix + "t").c_str()).text().set(piece.toUtf8().constData());
        cursor = run;
        piece.clear();
    };
    for (QChar c : text) {
        if (c == QChar('\v')) {
            flush();
            pugi::xml_node br = place("br");
            copyProperties(br);
            cursor = br;
        } else if (c == QChar('\r')) {
            flush();
            pugi::xml_node next = m_body.insert_child_after((prefix + "p").c_str(), para);
            pugi::xml_node pPr = child(para, "pPr");
            if (pPr) next.append_copy(pPr);
            pugi::xml_node move =
                cursor ? cursor.next_sibling() : (pPr ? pPr.next_sibling() : para.first_child());
            while (move) {
                pugi::xml_node following = move.next_sibling();
                next.append_move(move);
                move = following;
            }
            para = next;
            cursor = pugi::xml_node();
        } else {
            piece += c;
        }
    }
    flush();
    scan();
    return pos;
}

std::pair<int, int> TextBody::remove(int pos, int len) {
    const int a = snapBackward(pos);
    const int b = snapForward(std::max(pos, 0) + std::max(len, 0));
    if (b <= a) return {a, 0};
    splitRunAt(a);
    splitRunAt(b);
    std::vector<Segment> inside;
    for (const Segment& s : m_segments)
        if (s.length > 0 ? (s.start >= a && s.end() <= b) : (s.start > a && s.start < b))
            inside.push_back(s);
    // Backwards, so a paragraph is joined with a follower whose text is already gone.
    for (auto it = inside.rbegin(); it != inside.rend(); ++it) {
        if (it->kind != Kind::ParagraphEnd) {
            it->node.parent().remove_child(it->node);
            continue;
        }
        pugi::xml_node para = it->node;
        pugi::xml_node next = para.next_sibling();
        while (next && !(next.type() == pugi::node_element && std::string(localName(next)) == "p"))
            next = next.next_sibling();
        if (!next) continue;
        removeChildren(para, {"endParaRPr"});
        for (pugi::xml_node node = next.first_child(); node;) {
            pugi::xml_node following = node.next_sibling();
            if (!(node.type() == pugi::node_element && std::string(localName(node)) == "pPr"))
                para.append_move(node);
            node = following;
        }
        m_body.remove_child(next);
    }
    scan();
    return {a, b - a};
}

void TextBody::format(int pos, int len, const std::function<void(pugi::xml_node)>& edit) {
    ensureParagraph();
    if (len <= 0) {
        pos = std::clamp(pos, 0, m_length);
        const std::vector<int> starts = paragraphStarts();
        std::size_t index = 0;
        while (index + 1 < starts.size() && starts[index + 1] <= pos) ++index;
        pugi::xml_node para = m_paragraphs[index];
        for (const Segment& s : m_segments)
            if (s.paragraph == para && s.kind != Kind::ParagraphEnd) return;
        pugi::xml_node end = child(para, "endParaRPr");
        if (!end) end = para.append_child((m_prefix + "endParaRPr").c_str());
        edit(end);
        return;
    }
    const int a = snapBackward(pos);
    const int b = snapForward(pos + len);
    splitRunAt(a);
    splitRunAt(b);
    for (Segment& s : m_segments) {
        if (s.kind == Kind::ParagraphEnd || s.length == 0 || s.start < a || s.end() > b) continue;
        pugi::xml_node rPr = runProperties(s.node);
        if (!rPr) rPr = s.node.prepend_child((m_prefix + "rPr").c_str());
        edit(rPr);
    }
}

pugi::xml_node TextBody::propertiesAt(int pos) const {
    for (const Segment& s : m_segments) {
        if (!(s.start <= pos && pos < s.end())) continue;
        if (s.kind == Kind::ParagraphEnd) return child(s.node, "endParaRPr");
        return runProperties(s.node);
    }
    if (m_paragraphs.empty()) return {};
    pugi::xml_node last = m_paragraphs.back();
    pugi::xml_node lastContent;
    for (const Segment& s : m_segments)
        if (s.paragraph == last && s.kind != Kind::ParagraphEnd) lastContent = s.node;
    return lastContent ? runProperties(lastContent) : child(last, "endParaRPr");
}

TextBody::Replacement TextBody::replace(int pos, int len, const QString& text) {
    pugi::xml_document first;  // a copy: the removal takes the original away
    if (len > 0)
        if (pugi::xml_node props = propertiesAt(pos)) first.append_copy(props);
    const auto [at, removed] = remove(pos, len);
    const int before = length();
    const int start = insert(at, text);
    const int inserted = length() - before;
    if (first.first_child() && inserted > 0)
        format(start, inserted,
               [&](pugi::xml_node rPr) { replaceProperties(rPr, first.first_child()); });
    return {at, removed, start, inserted};
}

std::vector<TextBody::Piece> TextBody::pieces() const {
    std::vector<Piece> result;
    for (const Segment& s : m_segments)
        if (s.kind != Kind::ParagraphEnd)
            result.push_back({s.start, s.length, runProperties(s.node), s.paragraph});
    return result;
}

std::vector<QString> TextBody::paragraphs() const {
    std::vector<QString> result;
    for (const QString& p : m_text.split(QChar('\r'))) result.push_back(p);
    return result;
}

std::vector<int> TextBody::paragraphStarts() const {
    std::vector<int> starts{0};
    for (const Segment& s : m_segments)
        if (s.kind == Kind::ParagraphEnd) starts.push_back(s.end());
    return starts;
}

}  // namespace minihost
