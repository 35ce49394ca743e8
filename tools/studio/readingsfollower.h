// SPDX-License-Identifier: MIT
// Readings over a text follow it. Whenever a step of the deck changes a text that has readings
// over its characters (typing, cutting, pasting or deleting in it; moving or resizing it), the
// engine is asked for the readings of its text again and they are placed over it again, in that
// same step: one undo takes back the edit and the readings together, one redo brings both. When
// the text is deleted, its readings go with it.
//
// Which texts have readings, and which shapes are their readings, is what the deck file records
// (readingsover.h), so the link holds after saving and reopening. A step that changed the readings
// themselves (placing them, or a person moving or retyping a syllable along with the text) is left
// as it is: what a person did to the readings is not undone by the engine.
//
// The engine reads the text as the add-on sends it, its Chinese characters only, run together, in
// context, and its readings are spelt as the add-on spells what it writes: with the single-storey
// ɑ and ɡ in place of a and g.
#pragma once

#include <QList>
#include <QObject>
#include <optional>

#include "minihost/nvo/hostreadingservice.h"
#include "minihost/slxcore/readingsover.h"

namespace minihost {
class Deck;
struct DeckChange;
}  // namespace minihost

class ReadingsFollower : public QObject {
    Q_OBJECT
public:
    // Follows the steps of `deck`, its parent, asking `engine` for readings (a function that gives
    // none leaves the readings as they are).
    ReadingsFollower(minihost::Deck* deck, minihost::ReadingFunction engine);

    // The readings `engine` gives `text`, one over each character the add-on reads, as they are
    // placed over it; nothing when the engine gives none.
    // Example: "银行。" -> {0 yín, 1 hánɡ}.
    static std::optional<QList<minihost::Reading>> engineReadings(
        const QString& text, const minihost::ReadingFunction& engine);

private:
    void follow(const minihost::DeckChange& change);
    // Places the engine's readings of shape `textId`'s text over it.
    void placeAgain(int slide, int textId);

    minihost::Deck* m_deck;
    minihost::ReadingFunction m_engine;
};
