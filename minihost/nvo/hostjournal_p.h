// SPDX-License-Identifier: MIT
// Where the application framework notes the calls it keeps in the host's journal
// (minihost::hostJournal, hostcontrol.h).
#pragma once

#include <QString>

namespace minihost {

// Appends one line to the journal, dropping the oldest past its limit.
void noteHostCall(const QString& line);

}  // namespace minihost
