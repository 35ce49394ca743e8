// SPDX-License-Identifier: MIT
// What the text layout needs to know of characters: their script (which typeface draws them)
// and where a line may break between them. Positions are UTF-16 units of one paragraph's text
// ("\v" for a line break).
#pragma once

#include <QString>
#include <vector>

namespace minihost {

enum class Script { EastAsian, Latin };

// The script each unit of `text` is drawn in: East Asian characters (isEastAsian) and Latin
// ones (every other letter, digit and Latin punctuation) are their own; weak characters
// (spaces, "\v", general punctuation such as “ ” — …, symbols, combining marks, the second unit
// of a pair) take the script before them, at the start the first one after them, Latin when
// there is none.
std::vector<Script> scriptsOf(const QString& text);

// Whether a line may break before each unit of `text` (the first entry is false): after spaces,
// and between two characters of which one is East Asian, unless the second may not start a line
// or the first may not end one (see textlayout.h), or they are a doubled dash or ellipsis; never
// before a space, a combining mark or the second unit of a pair. "\v" breaks of itself and is
// not listed.
std::vector<bool> breaksOf(const QString& text);

// Spaces a line may wrap at, which hang past its end there: the space, the tab, the typographic
// spaces and the ideographic space (not the no-break space).
bool isBreakingSpace(char16_t c);

}  // namespace minihost
