// SPDX-License-Identifier: MIT
#include "placement.h"

#include <QRectF>
#include <algorithm>

#include "deckhost.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/hosttransaction.h"

const char kPlaceHelp[] =
    "  --place WHERE     where the new text boxes go: addon (default) where the add-on puts\n"
    "                    them, below or above the text each was made from, as wide as its\n"
    "                    shape and inside the slide (one more undo step)\n";

bool parsePlacement(const QString& value, Placement* placement) {
    if (value == QLatin1String("addon"))
        *placement = Placement::Addon;
    else if (value == QLatin1String("below"))
        *placement = Placement::Below;
    else if (value == QLatin1String("above"))
        *placement = Placement::Above;
    else
        return false;
    return true;
}

bool containsChinese(const QString& text) {
    return std::any_of(text.cbegin(), text.cend(),
                       [](QChar c) { return c.unicode() >= 0x4E00 && c.unicode() <= 0x9FA5; });
}

namespace {

// The first box of `placed` that `box` covers, or null.
const QRectF* covered(const QList<QRectF>& placed, const QRectF& box) {
    for (const QRectF& other : placed)
        if (other.intersects(box)) return &other;
    return nullptr;
}

// Places one box next to its source, clear of `placed`; "" or what kept it where it was.
QString placeOne(minihost::Deck& deck, int slide, const MadeBox& made, const QRectF& source,
                 Placement placement, QList<QRectF>& placed) {
    const QSizeF page = deck.slideSize();
    const double width = std::min(source.width(), page.width());
    const double left = std::clamp(source.left(), 0.0, page.width() - width);
    // The width first: the box takes the height its readings need at that width.
    // A new box has a place of its own: found by id, not by listing the slide for every box.
    const QRectF before = deck.placeOf(slide, made.box);
    if (!deck.setShapeBox(slide, made.box, QRectF(left, before.top(), width, before.height())))
        return QStringLiteral("new text box %1 on slide %2 cannot be moved")
            .arg(made.box)
            .arg(slide);
    const double height = deck.placeOf(slide, made.box).height();
    QRectF box(left, placement == Placement::Below ? source.bottom() : source.top() - height, width,
               height);
    while (const QRectF* other = covered(placed, box))
        box.moveTop(placement == Placement::Below ? other->bottom() : other->top() - height);
    if (box.top() < 0 || box.bottom() > page.height())
        return QStringLiteral("no room %1 shape %2 on slide %3 for its readings")
            .arg(placement == Placement::Below ? QStringLiteral("under") : QStringLiteral("over"))
            .arg(made.source)
            .arg(slide);
    deck.setShapeBox(slide, made.box, box);
    placed << box;
    return QString();
}

}  // namespace

QString placeBoxes(DeckHost& host, const QList<MadeBox>& made, Placement placement) {
    if (placement == Placement::Addon || made.isEmpty()) return QString();
    minihost::Deck& deck = host.deck();
    const int slide = deck.currentSlide();
    struct Item {
        MadeBox made;
        QRectF source;
    };
    QList<Item> items;
    for (const MadeBox& box : made) {
        const QRectF source = deck.placeOf(slide, box.source);
        if (source.isNull())
            return QStringLiteral("shape %1 on slide %2 has no place of its own or inherited")
                .arg(box.source)
                .arg(slide);
        items.append({box, source});
    }
    // Top to bottom (bottom to top over the sources), so each box only has to clear the ones
    // placed before it.
    std::stable_sort(items.begin(), items.end(), [&](const Item& a, const Item& b) {
        return placement == Placement::Below ? a.source.top() < b.source.top()
                                             : a.source.bottom() > b.source.bottom();
    });
    if (!minihost::openHostTransaction(host.coreApplication(), QStringLiteral("Move")))
        return QStringLiteral("an undo step is open already");
    QList<QRectF> placed;
    for (const Item& item : items) {
        const QString problem = placeOne(deck, slide, item.made, item.source, placement, placed);
        if (!problem.isEmpty()) {
            minihost::rollbackHostTransaction();
            return problem;
        }
    }
    minihost::commitHostTransaction();
    return QString();
}
