// SPDX-License-Identifier: MIT
#include "placement.h"

#include "deckhost.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/hosttransaction.h"

const char kPlaceHelp[] =
    "  --place WHERE     where the new text boxes go: addon (default) where the add-on puts\n"
    "                    them, below or above the text each was made from, as wide as its\n"
    "                    shape and inside the slide; over: each syllable centred over its\n"
    "                    character, the text's line (and where needed character) spacing\n"
    "                    opened for them, readings it had replaced (one more undo step)\n";

QString placeBoxes(DeckHost& host, const QList<minihost::MadeBox>& made,
                   minihost::Placement placement) {
    if (placement == minihost::Placement::Addon || made.isEmpty()) return QString();
    const QString step = placement == minihost::Placement::Over ? QStringLiteral("Pinyin over Text")
                                                                : QStringLiteral("Move");
    if (!minihost::openHostTransaction(host.coreApplication(), step))
        return QStringLiteral("an undo step is open already");
    minihost::Deck& deck = host.deck();
    const QString problem = minihost::placeReadingBoxes(deck, deck.currentSlide(), made, placement,
                                                        minihost::OffSlide::Refuse, step);
    if (problem.isEmpty())
        minihost::commitHostTransaction();
    else
        minihost::rollbackHostTransaction();
    return problem;
}
