// SPDX-License-Identifier: MIT
#include "deckselection.h"

#include <QList>
#include <QRegularExpression>
#include <algorithm>

#include "minihost/slxcore/deck.h"

const char kSelectHelp[] =
    "  --select SELECTION\n"
    "                    what to select on that slide (default: every shape with text):\n"
    "                      3,5,7    the whole shapes 3, 5 and 7, by the ids that\n"
    "                               'zphonetic show' lists\n"
    "                      3:2+4    a run of text in shape 3: 4 UTF-16 units from unit 2\n"
    "                               (counted from 0); 3:2+0 is a bare cursor\n";

namespace {

// The run of text "ID:START+LENGTH", or the whole shapes "ID[,ID...]".
struct Selection {
    QList<int> shapes;
    bool textRun = false;
    int start = 0;
    int length = 0;
};

bool parseSelection(const QString& wanted, Selection* selection) {
    static const QRegularExpression run(QStringLiteral("^(\\d{1,9}):(\\d{1,9})\\+(\\d{1,9})$"));
    static const QRegularExpression shapes(QStringLiteral("^\\d{1,9}(,\\d{1,9})*$"));
    const QRegularExpressionMatch match = run.match(wanted);
    if (match.hasMatch()) {
        selection->textRun = true;
        selection->shapes = {match.captured(1).toInt()};
        selection->start = match.captured(2).toInt();
        selection->length = match.captured(3).toInt();
        return true;
    }
    if (!shapes.match(wanted).hasMatch()) return false;
    for (const QString& part : wanted.split(QLatin1Char(','))) selection->shapes << part.toInt();
    return true;
}

QString selectDefault(minihost::Deck& deck, DefaultSelection fallback) {
    const int slide = deck.currentSlide();
    QList<int> withText;
    for (const minihost::ShapeInfo& shape : deck.shapes(slide))
        if (shape.hasTextFrame && !shape.text.isEmpty()) withText << shape.id;
    if (withText.isEmpty()) {
        deck.clearSelection();
        return fallback == DefaultSelection::TextOfALoneShape
                   ? QStringLiteral("slide %1 has no shape with text").arg(slide)
                   : QString();
    }
    if (fallback == DefaultSelection::TextOfALoneShape && withText.size() == 1) {
        const int id = withText.first();
        if (deck.selectText(id, 0, deck.text(slide, id).size())) return {};
        return QStringLiteral("the text of shape %1 on slide %2 cannot be selected")
            .arg(id)
            .arg(slide);
    }
    if (deck.selectShapes(withText)) return {};
    return QStringLiteral("the shapes with text on slide %1 cannot be selected").arg(slide);
}

}  // namespace

QString selectOnDeck(minihost::Deck& deck, const QString& wanted, DefaultSelection fallback) {
    if (wanted.isEmpty()) return selectDefault(deck, fallback);
    const int slide = deck.currentSlide();
    const QList<minihost::ShapeInfo> shapes = deck.shapes(slide);
    Selection selection;
    if (!parseSelection(wanted, &selection))
        return QStringLiteral(
                   "--select \"%1\" is neither shape ids (3,5) nor a run of text (3:2+4)")
            .arg(wanted);
    for (int id : selection.shapes) {
        auto found =
            std::find_if(shapes.cbegin(), shapes.cend(),
                         [id](const minihost::ShapeInfo& shape) { return shape.id == id; });
        if (found == shapes.cend())
            return QStringLiteral("slide %1 has no shape %2").arg(slide).arg(id);
        if (!found->hasTextFrame || (!selection.textRun && found->text.isEmpty()))
            return QStringLiteral("shape %1 on slide %2 holds no text").arg(id).arg(slide);
        if (selection.textRun && selection.start + qint64(selection.length) > found->text.size())
            return QStringLiteral("shape %1 on slide %2 has %3 units of text: %4+%5 is outside it")
                .arg(id)
                .arg(slide)
                .arg(found->text.size())
                .arg(selection.start)
                .arg(selection.length);
    }
    const bool selected = selection.textRun ? deck.selectText(selection.shapes.first(),
                                                              selection.start, selection.length)
                                            : deck.selectShapes(selection.shapes);
    if (!selected)
        return QStringLiteral("the shapes %1 on slide %2 cannot be selected")
            .arg(wanted)
            .arg(slide);
    return {};
}
