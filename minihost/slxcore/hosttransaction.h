// SPDX-License-Identifier: MIT
// The host's own transaction: one undo step the host keeps open around a larger operation (a
// script, a compound command). While it is open, ZFormatStaticTransGuard reports it (active, its
// name, renaming), a ZFormatTransGuard cannot start a step of its own, and every change to the
// deck joins it.
#pragma once

#include <QString>

#include "hostexport.h"

struct IZApplication;

namespace minihost {

// Opens it on the deck of `application`'s active view (none: a step over nothing). False when a
// step is open already.
ZHOST_API bool openHostTransaction(IZApplication* application, const QString& name);
// Closes it as one undo step under its current name. False when it is not open.
ZHOST_API bool commitHostTransaction();
// Closes it, undoing what it changed. False when it is not open.
ZHOST_API bool rollbackHostTransaction();

}  // namespace minihost
