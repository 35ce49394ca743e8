// SPDX-License-Identifier: MIT
// Readings over their text: placing, finding and removing the group of syllable boxes over a
// text (see readingsover.h for what is written and why).
#include "minihost/slxcore/readingsover.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/deckcore_p.h"
#include "minihost/slxcore/drawing_p.h"
#include "minihost/slxcore/textbody_p.h"
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
// In a box anchored at its bottom, a line's baseline is 0.2 of its size above the bottom.
constexpr double kDescent = 0.2;
// The least room between two neighbouring syllables, in reading sizes: pdftotext's word boxes
// of LibreOffice's rendering then never touch.
constexpr double kSyllableGap = 0.25;

QString groupName(int textId) {
    return QStringLiteral("Pinyin over %1").arg(textId);
}

const QString kBoxPrefix = QStringLiteral("Pinyin ");

// The groups of readings over text `textId` among `tree`'s shapes.
std::vector<pugi::xml_node> groupsOver(pugi::xml_node tree, int textId) {
    std::vector<pugi::xml_node> groups;
    const QString name = groupName(textId);
    for (const ShapeNode& shape : listShapes(tree))
        if (std::string(localName(shape.element)) == "grpSp" && shapeName(shape.element) == name)
            groups.push_back(shape.element);
    return groups;
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

// The width of every syllable in the format of its box, measured by the text layout: one
// paragraph per syllable in a frame that does not wrap.
std::vector<double> syllableWidths(const QList<Reading>& readings,
                                   const std::vector<TextFormat>& formats) {
    DrawnShape measure;
    measure.boxKnown = true;
    measure.hasText = true;
    measure.box = QRectF(0, 0, 1e6, 1e6);
    measure.text.wrap = false;
    measure.text.insets = QMarginsF();
    int start = 0;
    for (int i = 0; i < readings.size(); ++i) {
        TextParagraph p;
        p.start = start;
        p.text = readings.at(i).syllable;
        p.runs.append({start, static_cast<int>(p.text.size()), formats[i]});
        p.endFormat = formats[i];
        measure.text.paragraphs.append(p);
        start += p.text.size() + 1;
    }
    const TextLayout layout(measure);
    std::vector<double> widths(readings.size(), 0.0);
    for (const TextLine& line : layout.lines())
        widths[line.paragraph] = std::max(widths[line.paragraph], line.right - line.left);
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

void setTransform(pugi::xml_node xfrm, const QRectF& box, bool children) {
    auto emu = [](double points) { return std::llround(points * kEmuPerPoint); };
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

// A box of one syllable in `format`, its text centred at the bottom of `box` (see the header).
void addSyllableBox(pugi::xml_node group, const std::string& p, int id, const Reading& reading,
                    const TextFormat& format, const QRectF& box) {
    pugi::xml_node sp = add(group, p + "sp");
    pugi::xml_node nv = add(sp, p + "nvSpPr");
    pugi::xml_node cNvPr = add(nv, p + "cNvPr");
    setAttribute(cNvPr, "id", id);
    cNvPr.append_attribute("name").set_value(
        (kBoxPrefix + QString::number(reading.position)).toUtf8().constData());
    add(nv, p + "cNvSpPr").append_attribute("txBox").set_value("1");
    add(nv, p + "nvPr");
    pugi::xml_node spPr = add(sp, p + "spPr");
    setTransform(add(spPr, "a:xfrm"), box, false);
    pugi::xml_node geometry = add(spPr, "a:prstGeom");
    geometry.append_attribute("prst").set_value("rect");
    add(geometry, "a:avLst");
    add(spPr, "a:noFill");
    pugi::xml_node body = add(sp, p + "txBody");
    pugi::xml_node bodyPr = add(body, "a:bodyPr");
    bodyPr.append_attribute("wrap").set_value("none");
    for (const char* inset : {"lIns", "tIns", "rIns", "bIns"})
        bodyPr.append_attribute(inset).set_value("0");
    bodyPr.append_attribute("anchor").set_value("b");
    bodyPr.append_attribute("rtlCol").set_value("0");
    add(bodyPr, "a:noAutofit");
    add(body, "a:lstStyle");
    pugi::xml_node paragraph = add(body, "a:p");
    add(paragraph, "a:pPr").append_attribute("algn").set_value("ctr");
    pugi::xml_node run = add(paragraph, "a:r");
    pugi::xml_node rPr = add(run, "a:rPr");
    setAttribute(rPr, "sz", std::llround(format.size * 100));
    rPr.append_attribute("dirty").set_value("0");
    pugi::xml_node fill = add(rPr, "a:solidFill");
    add(fill, "a:srgbClr")
        .append_attribute("val")
        .set_value(QStringLiteral("%1")
                       .arg(format.rgb & 0xFFFFFF, 6, 16, QLatin1Char('0'))
                       .toUpper()
                       .toLatin1()
                       .constData());
    if (!format.latinFont.isEmpty())
        add(rPr, "a:latin")
            .append_attribute("typeface")
            .set_value(format.latinFont.toUtf8().constData());
    if (!format.eastAsianFont.isEmpty())
        add(rPr, "a:ea")
            .append_attribute("typeface")
            .set_value(format.eastAsianFont.toUtf8().constData());
    add(run, "a:t").text().set(reading.syllable.toUtf8().constData());
}

// Exact line spacing of `points` on paragraph `paragraph` (a:p): a:lnSpc is a:pPr's first child.
void setExactLineSpacing(pugi::xml_node paragraph, double points) {
    const std::string a = prefixOf(paragraph);
    pugi::xml_node pPr = child(paragraph, "pPr");
    if (!pPr) pPr = paragraph.prepend_child((a + "pPr").c_str());
    removeChildren(pPr, {"lnSpc"});
    pugi::xml_node spcPts =
        pPr.prepend_child((a + "lnSpc").c_str()).append_child((a + "spcPts").c_str());
    setAttribute(spcPts, "val", std::llround(std::ceil(points * 100)));
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

bool Deck::removeReadingsOver(int slide, int textId, const QString& stepName) {
    if (slide < 1 || slide > slideCount()) return false;
    SlidePart& part = *d->slides[slide - 1];
    const std::vector<pugi::xml_node> groups = groupsOver(shapeTree(part.doc), textId);
    if (groups.empty()) return false;
    EditScope edit(*d, slide - 1, stepName);
    // The selection goes when it held a shape removed, and only then: the text being typed into
    // keeps its cursor while its readings are placed again.
    const QList<int> selected = slide == currentSlide() ? selectedShapes() : QList<int>();
    bool selectionRemoved = false;
    for (const pugi::xml_node group : groups) {
        edit.touches(shapeIdOf(group));
        selectionRemoved = selectionRemoved || selected.contains(shapeIdOf(group));
        for (pugi::xml_node box = group.first_child(); box; box = box.next_sibling())
            selectionRemoved = selectionRemoved || selected.contains(shapeIdOf(box));
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
    const QString text = TextBody(body).text();
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
    if (!drawnShapeOf(*d, slide - 1, node).boxKnown)
        return where + QStringLiteral(" has no place of its own or inherited");

    EditScope edit(*d, slide - 1, stepName, textId);
    removeReadingsOver(slide, textId, stepName);
    if (readings.isEmpty()) return QString();

    // Each syllable's format: its character's colour and typefaces, at the reading size.
    DrawnShape drawn = drawnShapeOf(*d, slide - 1, d->shape(slide - 1, textId));
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
    TextBody frameBody(body);
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
        if (p.lineSpacingPoints < needed) setExactLineSpacing(paragraphs[i], needed);
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
    }
    d->fit(slide - 1, textId);

    // Where the characters are now.
    const ShapeNode placed = d->shape(slide - 1, textId);
    drawn = drawnShapeOf(*d, slide - 1, placed);
    const TextLayout layout(drawn);
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
    for (int i = 0; i < readings.size(); ++i) {
        const Reading& reading = readings.at(i);
        const CharPlace place = layout.place(reading.position);
        const TextLine& line = layout.lines().at(place.line);
        const TextRun* run = runAt(frame, reading.position);
        const double glyphRight = place.right - (run ? run->format.characterSpacing : 0);
        const double centre = (place.left + glyphRight) / 2;
        const double width = widths[i] + 2 * readingSize;
        const double height = 1.2 * readingSize;
        // The reading's baseline (kDescent over the box's bottom) is so high that its box
        // clears the text's by kClearance.
        const double bottom =
            line.baseline - kAbove * line.ascent - (kBelow + kClearance - kDescent) * readingSize;
        const QRectF box(centre - width / 2, bottom - height, width, height);
        const int id = part.shapes.takeId(part.doc);
        addSyllableBox(group, p, id, reading, formats[i], box);
        edit.touches(id);
        bounds = bounds.isNull() ? box : bounds.united(box);
    }
    setTransform(xfrm, bounds, true);
    part.shapes.forget();
    edit.touches(groupId);
    return QString();
}

}  // namespace minihost
