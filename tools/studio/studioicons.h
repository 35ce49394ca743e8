// SPDX-License-Identifier: MIT
// The studio's icons, painted rather than loaded (the program ships no image plugins): a
// character with its reading above it for the dialog command, the same with a lightning stroke for
// the one-key command, a framed "T" for a text box, and the program's own icon.
#pragma once

#include <QIcon>

namespace studioicons {

QIcon phoneticSymbol();
QIcon phoneticOneKey();
QIcon application();
QIcon textBox();

}  // namespace studioicons
