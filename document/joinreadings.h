// SPDX-License-Identifier: MIT
// How readings are joined into one line of text.
#pragma once

#include <QString>
#include <QStringList>

// Every reading but the last followed by one space, empty ones skipped together with their
// space; the last appended as it is, even when empty, with no space after it. So nǐ, "", hǎo
// gives "nǐ hǎo", and nǐ, hǎo, "" gives "nǐ hǎo " (with the trailing space): both are kept.
QString joinReadings(const QStringList& readings);
