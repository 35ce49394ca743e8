// SPDX-License-Identifier: MIT
// --place: where the host puts the text boxes of readings a command made (see
// minihost/slxcore/placement.h), in one more undo step.
#pragma once

#include <QList>
#include <QString>

#include "minihost/slxcore/placement.h"

class DeckHost;

// The lines that --help gives for --place.
extern const char kPlaceHelp[];

// Moves every box of `made` (on the current slide of the host's deck) next to its source, as
// minihost::placeReadingBoxes does without leaving the slide, in one undo step "Move" for them
// all ("Pinyin over Text" for Over). Returns "" or what kept a box where it was, e.g. "no room
// under shape 3 on slide 2"; then nothing was moved.
QString placeBoxes(DeckHost& host, const QList<minihost::MadeBox>& made,
                   minihost::Placement placement);
