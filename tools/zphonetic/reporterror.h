// SPDX-License-Identifier: MIT
// How every subcommand reports what went wrong: one line on standard error, a non-zero status.
#pragma once

#include <QString>

// Prints "zphonetic: <subject>: <what>" to standard error and returns 1 (the exit status of a
// failed subcommand). `subject` is the file (or argument) concerned.
int reportError(const QString& subject, const QString& what);

// The same for an error about the file `path` that may already start with "<path>: " (a deck's
// own errors do): the name is not printed twice.
int reportFileError(const QString& path, const QString& error);
