// SPDX-License-Identifier: MIT
// Text from a file or the command line made safe for a host program to print on a terminal.
#pragma once

#include <QString>

#include "hostexport.h"

namespace minihost {

// `text` with its control characters (C0, DEL, C1) written as "\x1b" and the characters that
// reorder what follows them (bidirectional embeddings, overrides and isolates) as "\u202e": what
// a deck's text, a relationship target or a file name holds can neither move the cursor, clear
// the screen, set the clipboard nor disguise the line it is printed on. Everything else is kept.
ZHOST_API QString printable(const QString& text);

}  // namespace minihost
