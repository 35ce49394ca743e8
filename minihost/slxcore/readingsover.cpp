// SPDX-License-Identifier: MIT
// Readings over their text: placing, finding and removing the group of syllable boxes over a
// text (see readingsover.h for what is written and why).
#include "minihost/slxcore/readingsover.h"

#include <QHash>
#include <QSet>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <map>
#include <string>

#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/deckcore_p.h"
#include "minihost/slxcore/drawing_p.h"
#include "minihost/slxcore/textbody_p.h"
#include "minihost/slxcore/textlayout.h"
#include "minihost/slxcore/xmlnode_p.h"

namespace minihost {
namespace {

// Readings half the text's size, as school books print them; never smaller than 8 pt, which a
// projected slide no longer shows legibly.
constexpr double kReadingShare = 0.5;
constexpr double kSmallestReading = 8;
// How far a line's text reaches above and below its baseline, in sizes, as the boxes that
// pdftotext gives of LibreOffice's rendering show it (font boxes, not ink: 0.95 above, 0.35
// below, whatever the typeface); readings and text are kept that far apart, and kClearance of a
// reading size more, so that no box of a reading meets one of the text.
constexpr double kAbove = 0.95;
constexpr double kBelow = 0.35;
constexpr double kClearance = 0.05;
// The least room between two neighbouring syllables, in reading sizes: pdftotext's word boxes
// of LibreOffice's rendering then never touch.
constexpr double kSyllableGap = 0.25;

QString groupName(int textId) {
    return QStringLiteral("Pinyin over %1").arg(textId);
}

const QString kBoxPrefix = QStringLiteral("Pinyin ");

// The groups of readings over text `textId`: shapes of the slide's tree (where they are put),
// not inside other groups.
std::vector<pugi::xml_node> groupsOver(pugi::xml_node tree, int textId) {
    std::vector<pugi::xml_node> groups;
    const QByteArray name = groupName(textId).toUtf8();
    for (pugi::xml_node shape = tree.first_child(); shape; shape = shape.next_sibling())
        if (std::strcmp(localName(shape), "grpSp") == 0 &&
            std::strcmp(child(nonVisual(shape), "cNvPr").attribute("name").value(),
                        name.constData()) == 0)
            groups.push_back(shape);
    return groups;
}

// The ids of `groups` and of the shapes in them.
QSet<int> shapeIdsOf(const std::vector<pugi::xml_node>& groups) {
    QSet<int> ids;
    for (const pugi::xml_node group : groups) {
        ids.insert(shapeIdOf(group));
        for (pugi::xml_node box = group.first_child(); box; box = box.next_sibling())
            if (const int id = shapeIdOf(box)) ids.insert(id);
    }
    return ids;
}

// The run of `frame` holding text position `pos`, or null.
const TextRun* runAt(const TextFrame& frame, int pos) {
    for (const TextParagraph& paragraph : frame.paragraphs)
        for (const TextRun& run : paragraph.runs)
            if (pos >= run.start && pos < run.start + run.length) return &run;
    return nullptr;
}

// The paragraph of `frame` holding text position `pos` (its index), or -1.
int paragraphAt(const TextFrame& frame, int pos) {
    for (int i = 0; i < frame.paragraphs.size(); ++i) {
        const TextParagraph& p = frame.paragraphs.at(i);
        if (pos >= p.start && pos < p.start + p.text.size()) return i;
    }
    return -1;
}

// The largest size in paragraph `p` as drawn (scaled by the frame's autofit).
double largestSize(const TextFrame& frame, const TextParagraph& p) {
    double size = 0;
    for (const TextRun& run : p.runs) size = std::max(size, double(run.format.size));
    if (p.runs.isEmpty()) size = p.endFormat.size;
    return size * frame.fontScale;
}

// The widths of `syllables`, each in its format, measured by the text layout: on one line of a
// frame that does not wrap, a space between them, consecutive ones of the same typefaces in one
// run (shaped at once).
std::vector<double> measureSyllables(const QStringList& syllables,
                                     const std::vector<TextFormat>& formats) {
    DrawnShape measure;
    measure.boxKnown = true;
    measure.hasText = true;
    measure.box = QRectF(0, 0, 1e6, 1e6);
    measure.text.wrap = false;
    measure.text.insets = QMarginsF();
    TextParagraph line;
    std::vector<int> starts;
    for (int i = 0; i < syllables.size(); ++i) {
        if (i > 0) line.text += QLatin1Char(' ');
        starts.push_back(line.text.size());
        line.text += syllables.at(i);
        const bool sameFonts = i > 0 && formats[i].latinFont == formats[i - 1].latinFont &&
                               formats[i].eastAsianFont == formats[i - 1].eastAsianFont &&
                               formats[i].size == formats[i - 1].size;
        if (sameFonts)
            line.runs.last().length = line.text.size() - line.runs.last().start;
        else
            line.runs.append(
                {starts.back(), static_cast<int>(line.text.size()) - starts.back(), formats[i]});
    }
    line.endFormat = formats.back();
    measure.text.paragraphs.append(line);
    const TextLayout layout(measure);
    std::vector<double> widths;
    for (int i = 0; i < syllables.size(); ++i) {
        const int end = starts[i] + syllables.at(i).size();
        widths.push_back(layout.place(end - 1).right - layout.place(starts[i]).left);
    }
    return widths;
}

// The width of every syllable in the format of its box. A few hundred syllables make every
// reading, so each is measured once in each format, the first time it is met.
std::vector<double> syllableWidths(const QList<Reading>& readings,
                                   const std::vector<TextFormat>& formats) {
    static QHash<QString, double> known;  // the thread that lays text out only
    // Each syllable's key: its format's (made again only where the format changes) and itself.
    std::vector<QString> keys;
    QString formatKey;
    for (int i = 0; i < readings.size(); ++i) {
        const TextFormat& f = formats[i];
        if (i == 0 || f.latinFont != formats[i - 1].latinFont ||
            f.eastAsianFont != formats[i - 1].eastAsianFont || f.size != formats[i - 1].size)
            formatKey = f.latinFont + QLatin1Char('\n') + f.eastAsianFont + QLatin1Char('\n') +
                        QString::number(f.size) + QLatin1Char('\n');
        keys.push_back(formatKey + readings.at(i).syllable);
    }
    QStringList missing;
    std::vector<TextFormat> missingFormats;
    std::vector<int> missingAt;
    QSet<QString> asked;
    for (int i = 0; i < readings.size(); ++i) {
        if (known.contains(keys[i]) || asked.contains(keys[i])) continue;
        asked.insert(keys[i]);
        missing << readings.at(i).syllable;
        missingFormats.push_back(formats[i]);
        missingAt.push_back(i);
    }
    if (!missing.isEmpty()) {
        const std::vector<double> measured = measureSyllables(missing, missingFormats);
        for (std::size_t k = 0; k < missingAt.size(); ++k)
            known.insert(keys[missingAt[k]], measured[k]);
    }
    std::vector<double> widths;
    for (const QString& key : keys) widths.push_back(known.value(key));
    return widths;
}

// The character spacing (points, the same after every character) at which no two neighbouring
// syllables of one paragraph come closer than kSyllableGap, given where the characters are now.
// Characters' advances without their spacing, so that the answer does not depend on it.
double spacingNeeded(const TextFrame& frame, const TextLayout& layout, const QString& text,
                     const QList<Reading>& readings, const std::vector<double>& widths,
                     double readingSize) {
    auto advance = [&](int pos) {
        const CharPlace place = layout.place(pos);
        const TextRun* run = runAt(frame, pos);
        return place.right - place.left - (run ? run->format.characterSpacing : 0);
    };
    double spacing = 0;
    for (int i = 0; i + 1 < readings.size(); ++i) {
        const int a = readings.at(i).position;
        const int b = readings.at(i + 1).position;
        const QString between = text.mid(a + 1, b - a - 1);
        // Syllables on different lines never meet.
        if (between.contains(QLatin1Char('\r')) || between.contains(QLatin1Char('\v'))) continue;
        double distance = advance(a) / 2 + advance(b) / 2;
        for (int q = a + 1; q < b; ++q) distance += advance(q);
        const double needed = (widths[i] + widths[i + 1]) / 2 + kSyllableGap * readingSize;
        spacing = std::max(spacing, (needed - distance) / (b - a));
    }
    return spacing;
}

pugi::xml_node add(pugi::xml_node parent, const std::string& name) {
    return parent.append_child(name.c_str());
}

void setAttribute(pugi::xml_node node, const char* name, long long value) {
    pugi::xml_attribute a = node.attribute(name);
    if (!a) a = node.append_attribute(name);
    a.set_value(value);
}

long long emu(double points) {
    return std::llround(points * kEmuPerPoint);
}

void setTransform(pugi::xml_node xfrm, const QRectF& box, bool children) {
    pugi::xml_node off = add(xfrm, "a:off");
    setAttribute(off, "x", emu(box.left()));
    setAttribute(off, "y", emu(box.top()));
    pugi::xml_node ext = add(xfrm, "a:ext");
    setAttribute(ext, "cx", emu(box.width()));
    setAttribute(ext, "cy", emu(box.height()));
    if (!children) return;
    pugi::xml_node chOff = add(xfrm, "a:chOff");
    setAttribute(chOff, "x", emu(box.left()));
    setAttribute(chOff, "y", emu(box.top()));
    pugi::xml_node chExt = add(xfrm, "a:chExt");
    setAttribute(chExt, "cx", emu(box.width()));
    setAttribute(chExt, "cy", emu(box.height()));
}

// `text` escaped for XML text and attribute values.
void appendEscaped(std::string& xml, const QString& text) {
    xml += text.toHtmlEscaped().toStdString();
}

// The boxes of syllables of one group, written as XML text and parsed once: a deck holds a box
// for every character read. Only what differs from the defaults (no fill, no autofit, no list
// style) is written, since every byte is written and compressed again for every character.
class SyllableBoxes {
public:
    explicit SyllableBoxes(const std::string& p)
        : m_head("<" + p + "sp><" + p + "nvSpPr><" + p + "cNvPr id=\""),
          m_afterName("\"/><" + p + "cNvSpPr txBox=\"1\"/><" + p + "nvPr/></" + p + "nvSpPr><" + p +
                      "spPr><a:xfrm><a:off x=\""),
          m_afterExtent("\"/></a:xfrm><a:prstGeom prst=\"rect\"/></" + p + "spPr><" + p +
                        "txBody><a:bodyPr wrap=\"none\" anchor=\"b\"/><a:p><a:pPr "
                        "algn=\"ctr\"/><a:r>"),
          m_tail("</a:t></a:r></a:p></" + p + "txBody></" + p + "sp>") {}

    // A box of `reading` in `format`, its text centred at the bottom of `box` (see the header).
    void add(int id, const Reading& reading, const TextFormat& format, const QRectF& box) {
        m_xml += m_head;
        number(id);
        m_xml += "\" name=\"";
        m_xml += kBoxPrefix.toStdString();
        number(reading.position);
        m_xml += m_afterName;
        number(emu(box.left()));
        m_xml += "\" y=\"";
        number(emu(box.top()));
        m_xml += "\"/><a:ext cx=\"";
        number(emu(box.width()));
        m_xml += "\" cy=\"";
        number(emu(box.height()));
        m_xml += m_afterExtent;
        m_xml += runProperties(format);
        m_xml += "<a:t>";
        appendEscaped(m_xml, reading.syllable);
        m_xml += m_tail;
    }

    // Parses the boxes into `group`; false when they cannot be (not expected).
    bool addTo(pugi::xml_node group) const {
        return group.append_buffer(m_xml.data(), m_xml.size()) == pugi::status_ok;
    }

private:
    void number(long long value) {
        char digits[24];
        const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
        m_xml.append(digits, end);
    }
    // a:rPr for `format`, made once for each format.
    const std::string& runProperties(const TextFormat& format) {
        // Consecutive syllables have one format as a rule.
        if (m_last && format.latinFont == m_lastFormat.latinFont &&
            format.rgb == m_lastFormat.rgb && format.size == m_lastFormat.size)
            return *m_last;
        m_lastFormat = format;
        m_last = &made(format);
        return *m_last;
    }
    const std::string& made(const TextFormat& format) {
        const QString key = format.latinFont + QLatin1Char('\n') + QString::number(format.rgb) +
                            QLatin1Char('\n') + QString::number(format.size);
        std::string& made = m_runProperties[key];
        if (!made.empty()) return made;
        made = "<a:rPr sz=\"" + std::to_string(std::llround(format.size * 100)) +
               "\"><a:solidFill><a:srgbClr val=\"" +
               QStringLiteral("%1")
                   .arg(format.rgb & 0xFFFFFF, 6, 16, QLatin1Char('0'))
                   .toUpper()
                   .toStdString() +
               "\"/></a:solidFill>";
        if (!format.latinFont.isEmpty()) {
            made += "<a:latin typeface=\"";
            appendEscaped(made, format.latinFont);
            made += "\"/>";
        }
        made += "</a:rPr>";
        return made;
    }

    const std::string m_head, m_afterName, m_afterExtent, m_tail;
    std::map<QString, std::string> m_runProperties;
    TextFormat m_lastFormat;
    const std::string* m_last = nullptr;
    std::string m_xml;
};

// Exact line spacing of `points` on paragraph `paragraph` (a:p): a:lnSpc is a:pPr's first child.
// Returns the spacing written (in hundredths of a point, rounded up).
float setExactLineSpacing(pugi::xml_node paragraph, double points) {
    const std::string a = prefixOf(paragraph);
    pugi::xml_node pPr = child(paragraph, "pPr");
    if (!pPr) pPr = paragraph.prepend_child((a + "pPr").c_str());
    removeChildren(pPr, {"lnSpc"});
    pugi::xml_node spcPts =
        pPr.prepend_child((a + "lnSpc").c_str()).append_child((a + "spcPts").c_str());
    const long long hundredths = std::llround(std::ceil(points * 100));
    setAttribute(spcPts, "val", hundredths);
    return hundredths / 100.0f;
}

// Where a new shape over `element` goes: after it, or after the outermost group holding it.
pugi::xml_node topLevel(pugi::xml_node tree, pugi::xml_node element) {
    while (element.parent() && element.parent() != tree) element = element.parent();
    return element;
}

}  // namespace

QStringList syllablesOf(const QString& readings) {
    QStringList syllables;
    QString current;
    for (const QChar c : readings) {
        if (c.isLetter() || c.isMark()) {
            current += c;
        } else if (!current.isEmpty()) {
            syllables << current;
            current.clear();
        }
    }
    if (!current.isEmpty()) syllables << current;
    return syllables;
}

bool isReadChinese(QChar c) {
    return c.unicode() >= 0x4E00 && c.unicode() <= 0x9FA5;
}

bool assignReadings(const QString& text, int start, int length, const QStringList& syllables,
                    QList<Reading>* readings) {
    start = std::clamp(start, 0, static_cast<int>(text.size()));
    const int end = length < 0 ? text.size() : std::min<int>(text.size(), start + length);
    QList<Reading> assigned;
    for (int pos = start; pos < end; ++pos) {
        if (!isReadChinese(text.at(pos))) continue;
        if (assigned.size() == syllables.size()) return false;
        assigned.append({pos, syllables.at(assigned.size())});
    }
    if (assigned.size() != syllables.size()) return false;
    *readings = assigned;
    return true;
}

QList<Reading> Deck::readingsOver(int slide, int textId) const {
    QList<Reading> readings;
    if (slide < 1 || slide > slideCount()) return readings;
    const pugi::xml_node tree = shapeTree(d->slides[slide - 1]->doc);
    for (const pugi::xml_node group : groupsOver(tree, textId)) {
        for (pugi::xml_node box = group.first_child(); box; box = box.next_sibling()) {
            const QString name = shapeName(box);
            bool ok = false;
            const int position = name.mid(kBoxPrefix.size()).toInt(&ok);
            const pugi::xml_node body = textBodyOf(box);
            if (name.startsWith(kBoxPrefix) && ok && body)
                readings.append({position, TextBody(body).text()});
        }
    }
    return readings;
}

QSet<int> Deck::readingShapesOver(int slide, int textId) const {
    if (slide < 1 || slide > slideCount()) return {};
    return shapeIdsOf(groupsOver(shapeTree(d->slides[slide - 1]->doc), textId));
}

bool Deck::removeReadingsOver(int slide, int textId, const QString& stepName) {
    if (slide < 1 || slide > slideCount()) return false;
    SlidePart& part = *d->slides[slide - 1];
    const std::vector<pugi::xml_node> groups = groupsOver(shapeTree(part.doc), textId);
    if (groups.empty()) return false;
    EditScope edit(*d, slide - 1, stepName);
    // The selection goes when it held a shape removed, and only then: the text being typed into
    // keeps its cursor while its readings are placed again.
    const QList<int> selected = slide == currentSlide() ? selectedShapes() : QList<int>();
    const QSet<int> removed = shapeIdsOf(groups);
    const bool selectionRemoved = std::any_of(selected.cbegin(), selected.cend(),
                                              [&removed](int id) { return removed.contains(id); });
    for (const pugi::xml_node group : groups) {
        edit.touches(shapeIdOf(group));
        group.parent().remove_child(group);
    }
    part.shapes.forget();
    if (selectionRemoved) clearSelection();
    return true;
}

QString Deck::placeReadingsOver(int slide, int textId, const QList<Reading>& readings,
                                const QString& stepName) {
    if (slide < 1 || slide > slideCount()) return QStringLiteral("there is no slide %1").arg(slide);
    const ShapeNode node = d->shape(slide - 1, textId);
    const pugi::xml_node body = textBodyOf(node.element);
    const QString where = QStringLiteral("shape %1 on slide %2").arg(textId).arg(slide);
    if (!body) return where + QStringLiteral(" has no text");
    TextBody frameBody(body);
    const QString text = frameBody.text();
    int previous = -1;
    for (const Reading& reading : readings) {
        if (reading.position <= previous || reading.position >= text.size() ||
            !isReadChinese(text.at(reading.position)) || reading.syllable.isEmpty())
            return where +
                   QStringLiteral(" has no character the add-on reads at %1 for the reading \"%2\"")
                       .arg(reading.position)
                       .arg(reading.syllable);
        previous = reading.position;
    }
    DrawnShape drawn = drawnShapeOf(*d, slide - 1, node);
    if (!drawn.boxKnown) return where + QStringLiteral(" has no place of its own or inherited");

    EditScope edit(*d, slide - 1, stepName, textId);
    removeReadingsOver(slide, textId, stepName);
    if (readings.isEmpty()) return QString();

    // Each syllable's format: its character's colour and typefaces, at the reading size.
    const TextFrame& frame = drawn.text;
    double largest = 0;
    for (const Reading& reading : readings)
        if (const TextRun* run = runAt(frame, reading.position))
            largest = std::max(largest, double(run->format.size) * frame.fontScale);
    const double readingSize =
        std::max(kSmallestReading, std::round(largest * kReadingShare * 2) / 2);
    std::vector<TextFormat> formats;
    for (const Reading& reading : readings) {
        TextFormat format;
        if (const TextRun* run = runAt(frame, reading.position)) format = run->format;
        format.size = static_cast<float>(readingSize);
        format.characterSpacing = 0;
        format.bold = format.italic = format.underline = format.strike = false;
        formats.push_back(format);
    }
    const std::vector<double> widths = syllableWidths(readings, formats);

    // Room between the lines of each paragraph with readings.
    const std::vector<pugi::xml_node>& paragraphs = frameBody.paragraphNodes();
    std::vector<bool> opened(frame.paragraphs.size(), false);
    for (const Reading& reading : readings) {
        const int i = paragraphAt(frame, reading.position);
        if (i < 0 || opened[i] || i >= static_cast<int>(paragraphs.size())) continue;
        opened[i] = true;
        const TextParagraph& p = frame.paragraphs.at(i);
        // Room for the text's line and the readings' line, with clearance under and over
        // the readings.
        const double needed = (kAbove + kBelow) * (largestSize(frame, p) + readingSize) +
                              2 * kClearance * readingSize;
        if (p.lineSpacingPoints < needed)
            drawn.text.paragraphs[i].lineSpacingPoints = setExactLineSpacing(paragraphs[i], needed);
    }
    // Room between neighbouring syllables.
    double spacing = spacingNeeded(frame, TextLayout(drawn), text, readings, widths, readingSize);
    double current = 0;
    for (const TextParagraph& p : frame.paragraphs)
        for (const TextRun& run : p.runs)
            current = std::max(current, double(run.format.characterSpacing));
    if (spacing > current + 0.005) {
        const long long hundredths = std::llround(std::ceil(spacing * 100));
        frameBody.format(0, frameBody.length(),
                         [&](pugi::xml_node rPr) { setAttribute(rPr, "spc", hundredths); });
        for (TextParagraph& p : drawn.text.paragraphs)
            for (TextRun& run : p.runs) run.format.characterSpacing = hundredths / 100.0f;
    }
    // Where the characters are now (in the box the shape takes when it follows its text): what
    // the shape shows is what it showed with the spacing just written.
    const ShapeNode placed = d->shape(slide - 1, textId);
    const TextLayout layout(drawn);
    d->fit(slide - 1, textId, drawn, layout);
    SlidePart& part = *d->slides[slide - 1];
    pugi::xml_node tree = shapeTree(part.doc);
    const std::string p = prefixOf(tree);
    const int groupId = part.shapes.takeId(part.doc);
    pugi::xml_node group =
        tree.insert_child_after((p + "grpSp").c_str(), topLevel(tree, placed.element));
    pugi::xml_node nv = add(group, p + "nvGrpSpPr");
    pugi::xml_node cNvPr = add(nv, p + "cNvPr");
    setAttribute(cNvPr, "id", groupId);
    cNvPr.append_attribute("name").set_value(groupName(textId).toUtf8().constData());
    add(nv, p + "cNvGrpSpPr");
    add(nv, p + "nvPr");
    pugi::xml_node xfrm = add(add(group, p + "grpSpPr"), "a:xfrm");
    QRectF bounds;
    SyllableBoxes boxes(p);
    for (int i = 0; i < readings.size(); ++i) {
        const Reading& reading = readings.at(i);
        const CharPlace place = layout.place(reading.position);
        const TextLine& line = layout.lines().at(place.line);
        const TextRun* run = runAt(frame, reading.position);
        const double glyphRight = place.right - (run ? run->format.characterSpacing : 0);
        const double centre = (place.left + glyphRight) / 2;
        // The box keeps the default insets (writing them costs bytes in every box) around a
        // line of the syllable's size and two reading sizes more than its width.
        const QMarginsF insets = TextFrame().insets;
        // Narrower, still centred, where that would reach past the slide's side (a text at the
        // slide's edge): no shape of the readings is off the slide.
        const double room = 2 * std::min(centre, slideSize().width() - centre);
        const double width =
            std::max(std::min(widths[i] + 2 * readingSize, room - insets.left() - insets.right()),
                     widths[i]) +
            insets.left() + insets.right();
        const double height = 1.2 * readingSize + insets.top() + insets.bottom();
        // The reading's baseline (kLineDescent over the bottom of its line) is so high that its box
        // clears the text's by kClearance.
        const double bottom = line.baseline - kAbove * line.ascent -
                              (kBelow + kClearance - kLineDescent) * readingSize + insets.bottom();
        const QRectF box(centre - width / 2, bottom - height, width, height);
        const int id = part.shapes.takeId(part.doc);
        boxes.add(id, reading, formats[i], box);
        edit.touches(id);
        bounds = bounds.isNull() ? box : bounds.united(box);
    }
    boxes.addTo(group);
    setTransform(xfrm, bounds, true);
    part.shapes.added(group);
    edit.touches(groupId);
    return QString();
}

}  // namespace minihost
