// SPDX-License-Identifier: MIT
// A person's edits through the host's own window: moving, resizing, typing and deleting, each
// one undo step.
#include <algorithm>

#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/deckcore_p.h"
#include "minihost/slxcore/textbody_p.h"

namespace minihost {

Deck::TextSelection Deck::textSelection() const {
    return {d->textShape, d->textStart, d->textLength};
}

bool Deck::moveShapes(const QList<int>& shapeIds, double dx, double dy) {
    const int slide = d->currentSlide;
    QList<Box> boxes;
    for (int id : shapeIds) {
        const Box box = d->placeOf(slide, id);
        if (!box.known) return false;
        boxes << box;
    }
    if (shapeIds.isEmpty()) return false;
    EditScope edit(*d, slide, QStringLiteral("move"));
    for (int i = 0; i < shapeIds.size(); ++i) {
        const ShapeNode node = d->shape(slide, shapeIds[i]);
        const Box& box = boxes[i];
        // A shape that inherited its place gets one of its own, the size included.
        if (!geometry(node).known) {
            setWidth(node, box.width);
            setHeight(node, box.height);
        }
        setPosition(node, static_cast<float>(box.left + dx), static_cast<float>(box.top + dy));
    }
    return true;
}

bool Deck::setShapeBox(int slide, int shapeId, const QRectF& box, const QString& stepName) {
    if (slide < 1 || slide > slideCount() || !(box.width() >= 0 && box.height() >= 0)) return false;
    const ShapeNode shape = d->shape(slide - 1, shapeId);
    if (!shape.element) return false;
    EditScope edit(*d, slide - 1, stepName);
    setWidth(shape, static_cast<float>(box.width()));
    setHeight(shape, static_cast<float>(box.height()));
    setPosition(shape, static_cast<float>(box.left()), static_cast<float>(box.top()));
    d->fit(slide - 1, shapeId);
    return true;
}

int Deck::replaceText(int shapeId, int start, int length, const QString& text,
                      const QString& stepName) {
    const int slide = d->currentSlide;
    const pugi::xml_node body = textBodyOf(d->shape(slide, shapeId).element);
    if (!body || start < 0 || length < 0) return -1;
    {
        TextBody frame(body);
        start = std::min(start, frame.length());
        length = std::min(length, frame.length() - start);
    }
    if (length == 0 && text.isEmpty()) return start;
    EditScope edit(*d, slide, stepName);
    const TextBody::Replacement r = TextBody(body).replace(start, length, text);
    d->textReplaced(slide, shapeId, r.at, r.removed, r.inserted, nullptr);
    d->fit(slide, shapeId);
    return r.pos + r.inserted;
}

bool Deck::deleteShapes(const QList<int>& shapeIds) {
    const int slide = d->currentSlide;
    for (int id : shapeIds)
        if (!d->shape(slide, id).element) return false;
    if (shapeIds.isEmpty()) return false;
    EditScope edit(*d, slide, QStringLiteral("delete"));
    for (int id : shapeIds)
        // A member of a group deleted with its group earlier in the list is gone already.
        if (const ShapeNode node = d->shape(slide, id); node.element) {
            node.element.parent().remove_child(node.element);
            d->slides[slide]->shapes.forget();  // the members went too
        }
    clearSelection();
    return true;
}

}  // namespace minihost
