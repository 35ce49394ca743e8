// SPDX-License-Identifier: MIT
#include "minihost/slxcore/placement.h"

#include <QRectF>
#include <algorithm>

#include "minihost/slxcore/deck.h"

namespace minihost {
namespace {

struct Named {
    Placement placement;
    const char* name;
};
const Named kNames[] = {
    {Placement::Addon, "addon"},
    {Placement::Below, "below"},
    {Placement::Above, "above"},
    {Placement::Over, "over"},
};

// The first box of `placed` that `box` covers, or null.
const QRectF* covered(const QList<QRectF>& placed, const QRectF& box) {
    for (const QRectF& other : placed)
        if (other.intersects(box)) return &other;
    return nullptr;
}

bool insideSlide(const QRectF& box, const QSizeF& page) {
    return box.left() >= 0 && box.top() >= 0 && box.right() <= page.width() &&
           box.bottom() <= page.height();
}

// `box` moved the least way into the slide (its top on the slide's when it is taller).
QRectF movedInside(QRectF box, const QSizeF& page) {
    box.moveLeft(std::clamp(box.left(), 0.0, std::max(0.0, page.width() - box.width())));
    box.moveTop(std::clamp(box.top(), 0.0, std::max(0.0, page.height() - box.height())));
    return box;
}

// A box of `size` next to `source` on its `side` (Below or Above), clear of `placed`.
QRectF nextTo(const QRectF& source, double left, const QSizeF& size, Placement side,
              const QList<QRectF>& placed) {
    const bool below = side == Placement::Below;
    QRectF box(QPointF(left, below ? source.bottom() : source.top() - size.height()), size);
    while (const QRectF* other = covered(placed, box))
        box.moveTop(below ? other->bottom() : other->top() - size.height());
    return box;
}

class Placer {
public:
    Placer(Deck& deck, int slide, Placement placement, OffSlide offSlide, const QString& stepName)
        : m_deck(deck),
          m_slide(slide),
          m_page(deck.slideSize()),
          m_placement(placement),
          m_offSlide(offSlide),
          m_stepName(stepName) {}

    // Places one box next to its source (a null rectangle: none), clear of the boxes placed
    // before it; "" or what kept it where it was.
    QString place(const MadeBox& made, const QRectF& source) {
        const QRectF at = m_deck.placeOf(m_slide, made.box);
        if (m_placement == Placement::Addon || source.isNull()) {
            if (m_offSlide == OffSlide::MoveInside && !insideSlide(at, m_page)) {
                const QRectF narrowed =
                    withWidth(made.box, at, std::min(at.width(), m_page.width()));
                if (narrowed.isNull() || !move(made.box, movedInside(narrowed, m_page)))
                    return cannotMove(made);
            }
            return QString();
        }
        const double width = std::min(source.width(), m_page.width());
        const double left = std::clamp(source.left(), 0.0, m_page.width() - width);
        // The width first: the box takes the height its readings need at that width.
        const QRectF sized = withWidth(made.box, QRectF(left, at.top(), width, at.height()), width);
        if (sized.isNull()) return cannotMove(made);
        QRectF box = nextTo(source, left, sized.size(), m_placement, m_placed);
        if (!insideSlide(box, m_page)) {
            if (m_offSlide == OffSlide::Refuse)
                return QStringLiteral("no room %1 shape %2 on slide %3 for its readings")
                    .arg(m_placement == Placement::Below ? QStringLiteral("under")
                                                         : QStringLiteral("over"))
                    .arg(made.source)
                    .arg(m_slide);
            const Placement other =
                m_placement == Placement::Below ? Placement::Above : Placement::Below;
            const QRectF opposite = nextTo(source, left, sized.size(), other, m_placed);
            box = insideSlide(opposite, m_page) ? opposite : movedInside(box, m_page);
        }
        if (!move(made.box, box)) return cannotMove(made);
        m_placed << box;
        return QString();
    }

private:
    // Gives the box `width` at `box`'s place: its box then, with the height it took; null when
    // the deck refused.
    QRectF withWidth(int id, const QRectF& box, double width) {
        if (!move(id, QRectF(box.left(), box.top(), width, box.height()))) return {};
        return m_deck.placeOf(m_slide, id);
    }
    bool move(int id, const QRectF& box) {
        return m_deck.setShapeBoxes(m_slide, {{id, box}}, m_stepName);
    }
    QString cannotMove(const MadeBox& made) const {
        return QStringLiteral("new text box %1 on slide %2 cannot be moved")
            .arg(made.box)
            .arg(m_slide);
    }

    Deck& m_deck;
    const int m_slide;
    const QSizeF m_page;
    const Placement m_placement;
    const OffSlide m_offSlide;
    const QString m_stepName;
    QList<QRectF> m_placed;
};

// Each box's syllables over the characters of its source, the box deleted.
QString placeOver(Deck& deck, int slide, const QList<MadeBox>& made, const QString& stepName) {
    for (const MadeBox& box : made) {
        if (!box.source) continue;
        const QString text = deck.text(slide, box.source);
        const QStringList syllables = syllablesOf(deck.text(slide, box.box));
        QList<Reading> readings;
        if (!assignReadings(text, box.start, box.length, syllables, &readings)) {
            const QString run = text.mid(box.start, box.length < 0 ? -1 : box.length);
            const int characters =
                static_cast<int>(std::count_if(run.cbegin(), run.cend(), isReadChinese));
            return QStringLiteral(
                       "new text box %1 on slide %2 has %3 readings for the %4 Chinese characters "
                       "of shape %5")
                .arg(box.box)
                .arg(slide)
                .arg(syllables.size())
                .arg(characters)
                .arg(box.source);
        }
        const QString problem = deck.placeReadingsOver(slide, box.source, readings, stepName);
        if (!problem.isEmpty()) return problem;
        if (!deck.deleteShapes(slide, {box.box}, stepName))
            return QStringLiteral("new text box %1 on slide %2 cannot be deleted")
                .arg(box.box)
                .arg(slide);
    }
    return QString();
}

}  // namespace

QString placementName(Placement placement) {
    for (const Named& named : kNames)
        if (named.placement == placement) return QString::fromLatin1(named.name);
    return QString();
}

bool parsePlacement(const QString& name, Placement* placement) {
    for (const Named& named : kNames) {
        if (name == QLatin1String(named.name)) {
            *placement = named.placement;
            return true;
        }
    }
    return false;
}

bool containsChinese(const QString& text) {
    return std::any_of(text.cbegin(), text.cend(), isReadChinese);
}

QList<int> readingSources(const Deck& deck) {
    QList<int> sources;
    for (const int id : deck.selectedShapes())
        if (containsChinese(deck.text(deck.currentSlide(), id))) sources << id;
    return sources;
}

QString placeReadingBoxes(Deck& deck, int slide, const QList<MadeBox>& made, Placement placement,
                          OffSlide offSlide, const QString& stepName) {
    if ((placement == Placement::Addon && offSlide == OffSlide::Refuse) || made.isEmpty())
        return QString();
    if (placement == Placement::Over) return placeOver(deck, slide, made, stepName);
    struct Item {
        MadeBox made;
        QRectF source;
    };
    QList<Item> items;
    for (const MadeBox& box : made) {
        const QRectF source = box.source ? deck.placeOf(slide, box.source) : QRectF();
        if (box.source && source.isNull() && offSlide == OffSlide::Refuse)
            return QStringLiteral("shape %1 on slide %2 has no place of its own or inherited")
                .arg(box.source)
                .arg(slide);
        items.append({box, source});
    }
    // Top to bottom (bottom to top over the sources), so each box only has to clear the ones
    // placed before it.
    std::stable_sort(items.begin(), items.end(), [&](const Item& a, const Item& b) {
        return placement == Placement::Above ? a.source.bottom() > b.source.bottom()
                                             : a.source.top() < b.source.top();
    });
    Placer placer(deck, slide, placement, offSlide, stepName);
    for (const Item& item : items) {
        const QString problem = placer.place(item.made, item.source);
        if (!problem.isEmpty()) return problem;
    }
    return QString();
}

}  // namespace minihost
