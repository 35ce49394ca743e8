// SPDX-License-Identifier: MIT
// --place: where the host puts the text boxes of readings a command made. The add-on puts every
// box at the same point; the host can then move each one next to the text it was made from, as a
// person would drag it there, in one more undo step.
#pragma once

#include <QList>
#include <QString>

class DeckHost;

enum class Placement {
    Addon,  // where the add-on put them
    Below,  // under the source text's shape
    Above,  // over it
};

// The lines that --help gives for --place.
extern const char kPlaceHelp[];

// "addon", "below", "above"; false for anything else.
bool parsePlacement(const QString& value, Placement* placement);

// Whether `text` holds a character the add-on reads (U+4E00..U+9FA5).
bool containsChinese(const QString& text);

// A box the command made and the shape whose text it holds the readings of.
struct MadeBox {
    int box = 0;
    int source = 0;
};

// Moves every box of `made` (on the current slide of the host's deck) next to its source: as wide
// as the source's shape (at most the slide), its left edge on the source's, under (or over) the
// source and under (over) any box placed before it that it would cover, inside the slide. Other
// shapes are not avoided: over a text, the box may cover the text above it, as the add-on's own
// boxes cover whatever is at their place. The boxes go in the order of their sources (from the
// top for `Below`, from the bottom for `Above`). One undo step, "Move", for them all.
// Returns "" or what kept a box where it was, e.g. "no room under shape 3 on slide 2".
QString placeBoxes(DeckHost& host, const QList<MadeBox>& made, Placement placement);
