// SPDX-License-Identifier: MIT
// Where a host puts the text boxes of readings a command made. The add-on puts every box at one
// fixed point (on a wide slide, past its right edge); a host program then moves each next to the
// text it was made from, as a person would drag it there. Used by the command line (--place) and
// the studio (its one-key command's setting).
#pragma once

#include <QList>
#include <QString>

#include "hostexport.h"

namespace minihost {

class Deck;

enum class Placement {
    Addon,  // where the add-on put them
    Below,  // under the source text's shape
    Above,  // over it
    Over,   // each syllable over its character, the box removed (see readingsover.h)
};

// The name of each placement, as the command line takes it and settings keep it: "addon",
// "below", "above", "over".
ZHOST_API QString placementName(Placement placement);
// The placement named `name`; false for any other name.
ZHOST_API bool parsePlacement(const QString& name, Placement* placement);

// Whether `text` holds a character the add-on reads (U+4E00..U+9FA5).
ZHOST_API bool containsChinese(const QString& text);
// The texts a command reads on the current slide, in the order it makes their boxes: the
// selected shapes whose text holds Chinese (for a text selection, its shape).
ZHOST_API QList<int> readingSources(const Deck& deck);

// A box the command made and the shape whose text it holds the readings of (0: not known).
// For Over, the run of the source's text the readings are of: [start, start + length), length -1
// for all of it.
struct MadeBox {
    int box = 0;
    int source = 0;
    int start = 0;
    int length = -1;
};

// What to do with a box that would not be inside the slide.
enum class OffSlide {
    Refuse,      // nothing is placed; the problem is returned (the command line's --place)
    MoveInside,  // the other side of its text, else the nearest place inside the slide
};

// Moves every box of `made` on `slide` next to its source: as wide as the source's shape (at most
// the slide), its left edge on the source's, under (or over) the source and under (over) any box
// placed before it that it would cover. The boxes go in the order of their sources (from the top
// for Below, from the bottom for Above). Other shapes are not avoided: over a text, a box may
// cover the text above it, as the add-on's own boxes cover whatever is at their place.
//
// With Addon, or a box without a source, a box stays where it is; with MoveInside it is moved
// into the slide (and made no wider than it) when it reaches outside. The moves are edits of the
// deck named `stepName`: one step each, or part of the step open on the deck (a caller that wants
// one step, or a rollback on failure, opens the host's transaction around this call).
//
// With Over, the syllables of each box with a source are placed over the characters they read
// (Deck::placeReadingsOver, replacing readings the text had) and the box is deleted; a box
// without a source stays where it is.
//
// Returns "" or, with Refuse, what kept a box where it was, e.g. "no room under shape 3 on slide
// 2 for its readings"; with Over, what kept readings from their text, e.g. "new text box 5 on
// slide 2 has 9 readings for the 10 Chinese characters of shape 3".
ZHOST_API QString placeReadingBoxes(Deck& deck, int slide, const QList<MadeBox>& made,
                                    Placement placement, OffSlide offSlide,
                                    const QString& stepName);

}  // namespace minihost
