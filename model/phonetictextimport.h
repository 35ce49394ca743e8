// SPDX-License-Identifier: MIT
// The arguments the dialog page sends with setPhoneticText when the user confirms:
//
//   {"styleType": 1, "bracketType": 1,
//    "phonetic": "[{\"index\":0,\"pinyin\":\"dū\",\"text\":\"都\"}, ...]"}
//
// "phonetic" is a string holding a JSON array (an array passed as such converts to an empty
// string and yields nothing). Each element needs an integer "index" and string "pinyin" and
// "text"; other members are ignored.
#pragma once

#include <QMap>
#include <QString>
#include <QVariant>
#include <QVector>

#include "model/phoneticsymbolmodel.h"

// What the page confirmed.
struct PhoneticImport {
    int styleType =
        -1;  // "styleType" as an integer (a numeric string converts, else 0); -1 when absent
    int bracketType = -1;         // "bracketType" likewise
    QVector<PhoneticItem> items;  // the valid elements, in the page's order; invalid ones dropped
};

// Reads the call's arguments. Never fails and never throws: "phonetic" missing, not JSON
// (comments are allowed) or not an array gives no items; an element that is not an object, lacks
// a member or has one of the wrong type is dropped and the others kept, also when it nests arrays
// or objects deeper than any reader goes (such a value reads as null). No sorting, no removal of
// repeated indexes, no check of an index against the text.
PhoneticImport importPhoneticText(const QMap<QString, QVariant>& arguments);
