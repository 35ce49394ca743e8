// SPDX-License-Identifier: MIT
// Writing the readings the dialog confirmed: the joined forms and the per-character insertion.
#pragma once

#include <QString>
#include <QVector>

#include "model/phoneticsymbolmodel.h"

namespace slxoldapi {
struct TextRange;
}

// The items' readings (`useReadings`) or characters, joined as one group. Readings: every one but
// the last followed by a space, empty ones skipped with their space, the last appended as it is;
// characters: run together. The group stands between the brackets of `bracketType` (1 "（" "）",
// 2 "[" "]", 4 "/" "/", 5 "{" "}"; 3 and any other value: none). Example: nǐ, hǎo with bracket
// type 1 give "（nǐ hǎo）"; the same items' characters with bracket type 6 give "你好".
QString joinPhoneticItems(const QVector<PhoneticItem>& items, int bracketType, bool useReadings);

// Inserts each item's reading, bracketed, right after its character in `range` (the character at
// the item's `index`, from 0, as the host counts), and formats each inserted reading with `style`
// when given. All character positions are taken before the first insertion, so every index refers
// to the text as it was. Items with an empty reading get no position of their own; an index that
// appears twice uses the later item's position. Brackets come only for types 1, 2, 4 and 5.
// Returns the range's length before writing plus every inserted length; 0 for a null or empty
// range.
int insertPerCharReadings(slxoldapi::TextRange* range, const QVector<PhoneticItem>& items,
                          int bracketType, const TextStyle* style);
