// SPDX-License-Identifier: MIT
// The decks the user opened last, newest first, kept in the host settings ("studio/recentFiles")
// so every studio window of the user sees them.
#pragma once

#include <QStringList>

namespace recentfiles {

// At most this many are kept.
constexpr int kLimit = 8;

QStringList list();
// Puts `path` (made absolute) first, dropping an older entry for it and the oldest beyond the
// limit.
void add(const QString& path);
// Forgets `path` (a file that could not be opened any more).
void remove(const QString& path);

}  // namespace recentfiles
