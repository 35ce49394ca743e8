// SPDX-License-Identifier: MIT
// --tones taught|original: how the commands that write readings write the tones of 一 and 不 in
// this run, over the choice kept with the user's own readings (zphonetic words tones).
#pragma once

#include <QStringList>

// The lines that --help gives for --tones.
extern const char kTonesHelp[];

// Takes "--tones VALUE" out of `arguments` and makes VALUE the tagging library's choice for this
// process (before the add-on loads it). Returns 0, or the exit status of the error it reported.
int takeTonesOption(QStringList& arguments);
