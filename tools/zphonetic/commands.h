// SPDX-License-Identifier: MIT
// The subcommands of zphonetic. Each takes the arguments after its name, prints to standard
// output, reports errors to standard error as "zphonetic: <file>: <what is wrong>", and returns
// the process's exit status (0 on success).
#pragma once

#include <QStringList>

// show DECK: every slide with its shapes (each with the id used to select it), their boxes,
// texts and formats.
int runShow(const QStringList& args);
