// SPDX-License-Identifier: MIT
// The Insert tab's "Text Box": a new empty text box on the current slide, made through the object
// model as any command makes its changes (one undo step), left with a text cursor in it so the
// user types at once.
#pragma once

#include <QRectF>
#include <QString>

struct IZApplication;
namespace minihost {
class Deck;
}

// Adds a text box at `box` (points) to the slide `deck` shows, in one undo step named
// `stepName`, and places the text cursor in it. Returns the new shape's id; 0 (and nothing
// changed) when the object model refuses.
int insertTextBox(minihost::Deck& deck, IZApplication* application, const QRectF& box,
                  const QString& stepName);
