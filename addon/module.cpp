// SPDX-License-Identifier: MIT
// The module's own translation unit. The add-on lives in static libraries, from which the linker
// takes only what is referenced: this reference brings in the entry point, and through it the
// whole add-on.
#include "entry/appentry.h"

[[maybe_unused]] __attribute__((used)) static QObject* (*const entryPoint)() = &GetAppEntryObject;
