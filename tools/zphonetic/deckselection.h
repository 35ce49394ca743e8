// SPDX-License-Identifier: MIT
// The --select syntax of the commands that work on a deck's selection, and making it.
#pragma once

#include <QString>

namespace minihost {
class Deck;
}

// What a command selects when no --select is given.
enum class DefaultSelection {
    // Every shape with text on the slide (nothing when there is none).
    ShapesWithText,
    // The same, except that a lone shape with text gets its whole text selected: the dialog reads
    // one selected shape only through a text selection in it. A slide without text is an error.
    TextOfALoneShape,
};

// The lines that --help gives for --select.
extern const char kSelectHelp[];

// Selects what `wanted` names on the deck's current slide: "3,5,7" the whole shapes with these ids
// (as 'zphonetic show' lists them), "3:2+4" a run of text in shape 3, 4 UTF-16 units from unit 2
// (from 0; "3:2+0" is a bare cursor). An empty `wanted` selects as `fallback` says. Returns an
// empty string, or what is wrong, e.g. "slide 1 has no shape 99".
QString selectOnDeck(minihost::Deck& deck, const QString& wanted, DefaultSelection fallback);
