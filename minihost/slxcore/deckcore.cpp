// SPDX-License-Identifier: MIT
#include "minihost/slxcore/deckcore_p.h"

#include <QCryptographicHash>
#include <algorithm>
#include <cstring>
#include <sstream>

#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/decklimits.h"
#include "minihost/slxcore/drawing_p.h"
#include "minihost/slxcore/inheritance_p.h"
#include "minihost/slxcore/xmlnode_p.h"

namespace minihost {
namespace {

const char kStrictPrefix[] = "http://purl.oclc.org/ooxml/";

bool endsWith(const std::string& text, const char* suffix) {
    const std::size_t n = std::strlen(suffix);
    return text.size() >= n && text.compare(text.size() - n, n, suffix) == 0;
}

// A slide part as it is kept: parsed, checked to be a slide, and declared UTF-8 (which is how an
// edited slide is written, whatever it was read as).
void readSlide(const Package& package, const std::string& part, pugi::xml_document& doc) {
    package.parse(part, doc);
    if (std::strcmp(localName(doc.document_element()), "sld") != 0)
        package.fail(
            QStringLiteral("part \"%1\" is not a slide").arg(QString::fromStdString(part)));
    pugi::xml_node declaration = doc.first_child();
    if (declaration.type() == pugi::node_declaration)
        if (pugi::xml_attribute encoding = declaration.attribute("encoding");
            encoding && QByteArray(encoding.value()).toUpper() != "UTF-8")
            encoding.set_value("UTF-8");
}

std::string serialized(const pugi::xml_document& doc) {
    std::ostringstream out;
    doc.save(out, "", pugi::format_raw, pugi::encoding_utf8);
    return out.str();
}

QByteArray digestOf(const std::string& xml) {
    return QCryptographicHash::hash(
        QByteArray::fromRawData(xml.data(), static_cast<int>(xml.size())),
        QCryptographicHash::Sha256);
}

std::map<std::string, Relationship> readRelationships(const Package& package,
                                                      const std::string& part) {
    std::map<std::string, Relationship> result;
    const std::string relsPart = relationshipsPart(part);
    if (!package.has(relsPart)) return result;
    pugi::xml_document doc;
    package.parse(relsPart, doc);
    for (pugi::xml_node rel : doc.document_element().children()) {
        if (rel.type() != pugi::node_element || std::strcmp(localName(rel), "Relationship") != 0)
            continue;
        Relationship r{rel.attribute("Type").value(), rel.attribute("Target").value(),
                       std::strcmp(rel.attribute("TargetMode").value(), "External") == 0};
        if (r.type.rfind(kStrictPrefix, 0) == 0)
            package.fail(QStringLiteral("uses Strict Open XML, which is not supported"));
        result[rel.attribute("Id").value()] = r;
    }
    return result;
}

QString quotedPart(const std::string& part) {
    return QStringLiteral("\"%1\"").arg(QString::fromStdString(part));
}

// The value of the relationship-id attribute (r:id, whatever its prefix).
std::string relationshipId(pugi::xml_node node) {
    for (pugi::xml_attribute a = node.first_attribute(); a; a = a.next_attribute()) {
        const char* colon = std::strchr(a.name(), ':');
        if (colon && std::strcmp(colon + 1, "id") == 0) return a.value();
    }
    return {};
}

}  // namespace

Box DeckCore::placeOf(int slide, int id) const {
    const ShapeNode own = shape(slide, id);
    if (!own.element) return {};
    if (const Box box = geometry(own); box.known || !placeholderOf(own.element)) return box;
    const Lineage lineage = lineageOf(own.element, templatesOf(*this, slides[slide]->partName));
    for (std::size_t i = 1; i < lineage.elements.size(); ++i)
        if (const Box box = geometry(ShapeNode{lineage.elements[i], id, {}}); box.known) return box;
    return {};
}

std::shared_ptr<DeckCore> DeckCore::load(const QByteArray& bytes, const QString& name) {
    auto core = std::make_shared<DeckCore>();
    core->name = name;
    core->package = std::make_unique<Package>(bytes, name);
    const Package& package = *core->package;

    pugi::xml_document rootRels;
    package.parse("_rels/.rels", rootRels);
    std::string presentationPart;
    for (pugi::xml_node rel : rootRels.document_element().children()) {
        const std::string type = rel.attribute("Type").value();
        if (type.rfind(kStrictPrefix, 0) == 0)
            package.fail(QStringLiteral("uses Strict Open XML, which is not supported"));
        if (endsWith(type, "/officeDocument"))
            presentationPart = resolveTarget(package, "", rel.attribute("Target").value());
    }
    if (presentationPart.empty())
        package.fail(QStringLiteral("no presentation part (_rels/.rels names no main document)"));
    package.parse(presentationPart, core->presentation);
    core->presentationPart = presentationPart;
    const pugi::xml_node root = core->presentation.document_element();
    if (std::strcmp(localName(root), "presentation") != 0)
        package.fail(QStringLiteral("part \"%1\" is not a presentation")
                         .arg(QString::fromStdString(presentationPart)));

    const auto& rels = core->relationshipsOf(presentationPart);
    for (const auto& [id, rel] : rels) {
        if (rel.external || !endsWith(rel.type, "/theme")) continue;
        package.parse(resolveTarget(package, presentationPart, rel.target), core->theme);
        readTheme(core->theme, core->styles);
        break;
    }
    core->styles.defaultRunProperties =
        child(child(child(root, "defaultTextStyle"), "lvl1pPr"), "defRPr");
    if (pugi::xml_node size = child(root, "sldSz"))
        core->slideSize = QSizeF(size.attribute("cx").as_double() / kEmuPerPoint,
                                 size.attribute("cy").as_double() / kEmuPerPoint);

    std::vector<pugi::xml_node> listed;
    for (pugi::xml_node sldId : child(root, "sldIdLst").children())
        if (sldId.type() == pugi::node_element) listed.push_back(sldId);
    if (listed.size() > static_cast<std::size_t>(limits::kSlides))
        package.failLimit(QStringLiteral("the presentation lists %1 slides (the limit is %2)")
                              .arg(listed.size())
                              .arg(limits::kSlides));
    std::map<std::string, int> slideOfPart;  // each slide part is one slide
    for (const pugi::xml_node sldId : listed) {
        const int number = static_cast<int>(core->slides.size()) + 1;
        const std::string rid = relationshipId(sldId);
        auto it = rels.find(rid);
        if (it == rels.end() || it->second.external)
            package.fail(QStringLiteral("slide %1 refers to a missing relationship \"%2\"")
                             .arg(number)
                             .arg(QString::fromStdString(rid)));
        auto slide = std::make_unique<SlidePart>();
        slide->partName = resolveTarget(package, presentationPart, it->second.target);
        if (const auto [earlier, first] = slideOfPart.emplace(slide->partName, number); !first)
            package.fail(QStringLiteral("slide %1 is part %2 again, which is slide %3 already")
                             .arg(number)
                             .arg(quotedPart(slide->partName))
                             .arg(earlier->second));
        readSlide(package, slide->partName, slide->doc);
        core->countShapes(slide->partName, shapeTree(slide->doc));
        core->slides.push_back(std::move(slide));
    }
    // Layouts and masters are read now, so that their limits refuse the deck at once rather
    // than leave a slide drawn without them later.
    for (const auto& slide : core->slides) templatesOf(*core, slide->partName);
    return core;
}

void DeckCore::countShapes(const std::string& part, pugi::xml_node tree) const {
    const int shapes = static_cast<int>(listShapes(tree).size());
    if (shapes > limits::kShapesPerPart)
        package->failLimit(QStringLiteral("part %1 holds %2 shapes (the limit is %3)")
                               .arg(quotedPart(part))
                               .arg(shapes)
                               .arg(limits::kShapesPerPart));
    shapeCount += shapes;
    if (shapeCount > limits::kShapes)
        package->failLimit(QStringLiteral("part %1 takes the shapes read to %2 (the limit is %3)")
                               .arg(quotedPart(part))
                               .arg(shapeCount)
                               .arg(limits::kShapes));
}

QByteArray DeckCore::toBytes() const {
    std::map<std::string, QByteArray> replacements;
    for (int slide = 0; slide < static_cast<int>(slides.size()); ++slide) {
        if (!slides[slide]->edited) continue;
        if (std::string xml = snapshot(slide); changed(slide, xml))
            replacements[slides[slide]->partName] = QByteArray::fromStdString(xml);
    }
    if (replacements.empty()) return package->bytes();
    return package->withReplacements(replacements);
}

QStringList DeckCore::editedParts() const {
    QStringList parts;
    for (int slide = 0; slide < static_cast<int>(slides.size()); ++slide)
        if (slides[slide]->edited && changed(slide, snapshot(slide)))
            parts << QString::fromStdString(slides[slide]->partName);
    return parts;
}

const std::map<std::string, Relationship>& DeckCore::relationshipsOf(
    const std::string& sourcePart) const {
    auto [it, fresh] = relationshipsRead.try_emplace(sourcePart);
    Relationships& rels = it->second;
    if (fresh) {
        try {
            rels.byId = readRelationships(*package, sourcePart);
        } catch (const DeckLimitError&) {
            relationshipsRead.erase(it);
            throw;
        } catch (const DeckError& e) {
            rels.error = e.what();
        }
    }
    if (!rels.error.empty()) throw DeckError(rels.error);
    return rels.byId;
}

std::string DeckCore::relatedPart(const std::string& sourcePart, const std::string& id) const {
    const auto& rels = relationshipsOf(sourcePart);
    const auto it = rels.find(id);
    if (it == rels.end() || it->second.external) return {};
    return resolveTarget(*package, sourcePart, it->second.target);
}

const TemplatePart* DeckCore::relatedTemplate(const std::string& sourcePart, const char* type,
                                              std::string* partName) const {
    const std::string suffix = std::string("/") + type;
    for (const auto& [id, rel] : relationshipsOf(sourcePart)) {
        if (rel.external || !endsWith(rel.type, suffix.c_str())) continue;
        const std::string part = resolveTarget(*package, sourcePart, rel.target);
        if (partName) *partName = part;
        return keptPart(part);
    }
    return nullptr;
}

const TemplatePart* DeckCore::keptPart(const std::string& part) const {
    if (const auto error = templateErrors.find(part); error != templateErrors.end())
        throw DeckError(error->second);
    auto& kept = templates[part];
    if (!kept) {
        auto read = std::make_unique<TemplatePart>();
        try {
            package->parse(part, read->doc);
            indexTemplate(*read);
            countShapes(part, read->tree);
        } catch (const DeckLimitError&) {
            templates.erase(part);
            throw;
        } catch (const DeckError& e) {
            templates.erase(part);
            templateErrors[part] = e.what();
            throw;
        }
        kept = std::move(read);
    }
    return kept.get();
}

bool DeckCore::changed(int slide, const std::string& xml) const {
    if (!slides[slide]->edited) return false;
    // Edited, then undone or rolled back: the XML is again what was read, and the part is
    // copied as stored.
    return xml.size() != slides[slide]->originalSize ||
           digestOf(xml) != slides[slide]->originalDigest;
}

void DeckCore::willChange(int slide) {
    SlidePart& part = *slides[slide];
    if (part.originalDigest.isEmpty()) {
        const std::string xml = snapshot(slide);
        part.originalDigest = digestOf(xml);
        part.originalSize = xml.size();
    }
    part.edited = true;
}

ShapeNode DeckCore::shape(int slide, int id) const {
    if (slide < 0 || slide >= static_cast<int>(slides.size())) return {};
    SlidePart& part = *slides[slide];
    return part.shapes.find(part.doc, id);
}

std::shared_ptr<RangeState> DeckCore::newRange(int slide, int id, int start, int length) {
    auto state = std::make_shared<RangeState>(RangeState{slide, id, start, length});
    ranges.erase(std::remove_if(ranges.begin(), ranges.end(),
                                [](const std::weak_ptr<RangeState>& r) { return r.expired(); }),
                 ranges.end());
    ranges.push_back(state);
    return state;
}

void DeckCore::textReplaced(int slide, int id, int pos, int removed, int inserted,
                            const RangeState* except) {
    const int delta = inserted - removed;
    // A start inside the replaced text moves to its start, an end inside it to its end; text
    // inserted exactly at a range's start pushes the range on, at its end leaves it as it is.
    auto mapStart = [&](int x) { return x < pos ? x : x >= pos + removed ? x + delta : pos; };
    auto mapEnd = [&](int x) {
        return x <= pos ? x : x >= pos + removed ? x + delta : pos + inserted;
    };
    for (const auto& weak : ranges) {
        const auto range = weak.lock();
        if (!range || range.get() == except || range->slide != slide || range->shapeId != id)
            continue;
        const int start = mapStart(range->start);
        const int end = range->length == 0 ? start : mapEnd(range->start + range->length);
        range->start = start;
        range->length = std::max(0, end - start);
    }
    if (textSelected && currentSlide == slide && textShape == id) {
        const int start = mapStart(textStart);
        const int end = textLength == 0 ? start : mapEnd(textStart + textLength);
        if (start != textStart || std::max(0, end - start) != textLength) selectionTouched();
        textStart = start;
        textLength = std::max(0, end - start);
    }
}

void DeckCore::fit(int slide, int id) const {
    const ShapeNode node = shape(slide, id);
    if (!node.element || !followsText(textBodyOf(node.element))) return;
    const DrawnShape drawn = drawnShapeOf(*this, slide, node);
    if (!drawn.boxKnown) return;
    fit(slide, id, drawn, TextLayout(drawn));
}

void DeckCore::fit(int slide, int id, const DrawnShape& drawn, const TextLayout& layout) const {
    const ShapeNode node = shape(slide, id);
    if (!node.element || !followsText(textBodyOf(node.element)) || !drawn.boxKnown) return;
    // The box its text needs, as it is drawn: taller (or, not wrapping, wider), grown away from
    // where its text is anchored.
    const QRectF box = layout.box();
    // A placeholder that inherited its place gets one of its own.
    const bool own = geometry(node).known;
    setHeight(node, static_cast<float>(box.height()));
    if (!drawn.text.wrap || !own) setWidth(node, static_cast<float>(box.width()));
    if (box.topLeft() != drawn.box.topLeft() || !own)
        setPosition(node, static_cast<float>(box.left()), static_cast<float>(box.top()));
}

std::vector<int> DeckCore::selectedShapeIds() const {
    std::vector<int> ids;
    if (textSelected)
        ids.push_back(textShape);
    else
        ids = selectedShapes;
    // Shapes an undo took away are no longer selected.
    ids.erase(std::remove_if(ids.begin(), ids.end(),
                             [&](int id) { return !shape(currentSlide, id).element; }),
              ids.end());
    return ids;
}

void DeckCore::selectShape(int id, bool replace) {
    if (replace) {
        selectedShapes.clear();
    } else if (textSelected) {
        selectedShapes = {textShape};
    }
    textSelected = false;
    if (std::find(selectedShapes.begin(), selectedShapes.end(), id) == selectedShapes.end())
        selectedShapes.push_back(id);
    selectionTouched();
}

void DeckCore::note(const QString& entry) {
    if (journal.size() >= Deck::kJournalLimit) journal.removeFirst();  // cheap at a QList's front
    journal << entry;
}

std::string DeckCore::snapshot(int slide) const {
    return serialized(slides[slide]->doc);
}

void DeckCore::restore(int slide, const std::string& xml) {
    // Live ranges may now reach past their frame's text; every use clamps them to it.
    willChange(slide);
    slides[slide]->doc.load_buffer(xml.data(), xml.size(), kXmlParseOptions, pugi::encoding_utf8);
    slides[slide]->shapes.forget();
}

}  // namespace minihost
