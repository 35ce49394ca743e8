// SPDX-License-Identifier: MIT
// Writing the dialog's confirmed readings (ZPhoneticSymbolModel::applyPhoneticItems): the
// readings as one group, or each right after its own character.
#pragma once

#include <QString>
#include <QVector>

#include "model/phoneticsymbolmodel.h"

namespace slxoldapi {
struct TextRange;
}

// The items as one string: the grouped table's opening bracket, every item's reading but the
// last followed by one space (empty readings skipped with their space), the last reading as it
// is, the closing bracket. Without `useReadings` the items' texts run together instead.
// Brackets: 1 "（" "）", 2 "[" "]", 4 "/" "/", 5 "{" "}", anything else none.
// Example: nǐ, hǎo with bracket type 1 -> "（nǐ hǎo）".
QString joinPhoneticItems(const QVector<PhoneticItem>& items, int bracketType, bool useReadings);

// Writes each item's reading (bracketed as bracket types 1, 2, 4 and 5 ask) right after the
// character at its index in `range`, every index taken before the first insertion; an item with
// an empty reading takes no character range, and of items sharing an index the last one's range
// is used. With `style`, applies it to each inserted reading. Returns the range's length before
// writing plus every inserted length; 0 for a null or empty range.
int insertPerCharReadings(slxoldapi::TextRange* range, const QVector<PhoneticItem>& items, int bracketType,
                          const TextStyle* style);
