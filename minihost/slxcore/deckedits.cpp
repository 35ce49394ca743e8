// SPDX-License-Identifier: MIT
// The host's own edits of a deck (a person's in its window, a host program's): moving and
// resizing, typing, deleting and inserting, each one undo step or part of the open one.
#include <algorithm>

#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/deckcore_p.h"
#include "minihost/slxcore/textbody_p.h"

namespace minihost {

Deck::TextSelection Deck::textSelection() const {
    return {d->textShape, d->textStart, d->textLength};
}

bool Deck::setShapeBoxes(int slide, const QMap<int, QRectF>& boxes, const QString& stepName) {
    if (slide < 1 || slide > slideCount() || boxes.isEmpty()) return false;
    std::map<int, Box> places;
    for (auto it = boxes.cbegin(); it != boxes.cend(); ++it) {
        if (!(it->width() >= 0 && it->height() >= 0)) return false;
        if (!d->shape(slide - 1, it.key()).element) return false;
        // A placeholder without a place of its own has its inherited one (or none).
        places[it.key()] = d->placeOf(slide - 1, it.key());
    }
    EditScope edit(*d, slide - 1, stepName);
    for (auto it = boxes.cbegin(); it != boxes.cend(); ++it) {
        const ShapeNode shape = d->shape(slide - 1, it.key());
        const Box& place = places[it.key()];
        edit.touches(it.key());
        // A move leaves the size as stored: written again from points, it could change by an EMU.
        // A shape that inherited its place gets the size too.
        const bool resized =
            float(it->width()) != place.width || float(it->height()) != place.height;
        if (resized || !geometry(shape).known) {
            setWidth(shape, static_cast<float>(it->width()));
            setHeight(shape, static_cast<float>(it->height()));
        }
        setPosition(shape, static_cast<float>(it->left()), static_cast<float>(it->top()));
        if (resized) d->fit(slide - 1, it.key());
    }
    return true;
}

int Deck::replaceText(int slide, int shapeId, int start, int length, const QString& text,
                      const QString& stepName) {
    const pugi::xml_node body = textBodyOf(d->shape(slide - 1, shapeId).element);
    if (!body || start < 0 || length < 0) return -1;
    {
        TextBody frame(body);
        start = std::min(start, frame.length());
        length = std::min(length, frame.length() - start);
    }
    if (length == 0 && text.isEmpty()) return start;
    EditScope edit(*d, slide - 1, stepName, shapeId);
    const TextBody::Replacement r = TextBody(body).replace(start, length, text);
    d->textReplaced(slide - 1, shapeId, r.at, r.removed, r.inserted, nullptr);
    d->fit(slide - 1, shapeId);
    return r.pos + r.inserted;
}

bool Deck::deleteShapes(int slide, const QList<int>& shapeIds, const QString& stepName) {
    if (shapeIds.isEmpty()) return false;
    for (int id : shapeIds)
        if (!d->shape(slide - 1, id).element) return false;
    EditScope edit(*d, slide - 1, stepName);
    for (int id : shapeIds) {
        edit.touches(id);
        // A member of a group deleted with its group earlier in the list is gone already.
        if (const ShapeNode node = d->shape(slide - 1, id); node.element) {
            d->slides[slide - 1]->shapes.removed(node.element);  // with its members
            node.element.parent().remove_child(node.element);
        }
    }
    if (slide == currentSlide()) clearSelection();
    return true;
}

int Deck::insertTextBox(int slide, const QRectF& box, const QString& stepName) {
    if (slide < 1 || slide > slideCount() || !(box.width() >= 0 && box.height() >= 0) ||
        !shapeTree(d->slides[slide - 1]->doc))
        return 0;
    EditScope edit(*d, slide - 1, stepName);
    SlidePart& part = *d->slides[slide - 1];
    const pugi::xml_node element = part.shapes.addTextbox(
        part.doc, static_cast<float>(box.left()), static_cast<float>(box.top()),
        static_cast<float>(box.width()), static_cast<float>(box.height()));
    const int id = shapeIdOf(element);
    edit.touches(id);
    return id;
}

}  // namespace minihost
