// SPDX-License-Identifier: MIT
// The readings document the dialog page fetches with getPhoneticText: the text to annotate, one
// entry per UTF-16 unit with its reading in context and all readings of the character, the
// text's colour, and the user's last layout and bracket choices.
//
//   {"callstatus": "ok",
//    "result": {"data": {"phonetic": [{"index": 0, "text": "都", "pinyin": "dōu",
//                                      "duyin": ["dōu", "dū"]}, ...],
//                        "color": [255, 0, 0]},
//               "styleType": -1, "bracketType": -1}}
//
// "result" is null when there is nothing to show; "callstatus" is "ok" in every case.
#pragma once

#include <json/value.h>
#include <QChar>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

#include "model/phoneticsymbolmodel.h"

// The reply to getPhoneticText called with `arguments`: with a non-empty "text" (its ordinary
// string conversion; cut to its first 30 UTF-16 units) the document of exportTextReadings,
// otherwise that of exportModelReadings. Never changes the model.
Json::Value exportPhoneticText(const ZPhoneticSymbolModel& model,
                               const QMap<QString, QVariant>& arguments);

// The document of the model's own text, readings and candidates, with the model's colour and
// choices. Null when `readings` or `candidates` is empty.
Json::Value exportModelReadings(const ZPhoneticSymbolModel& model);

// The document of `text` tagged afresh with the model's tagger (candidates first, then the
// readings in context). Colour always black: the text has no format of its own. Null without a
// tagger or core application, or when the text yields no readings or no candidates. The model's
// style, readings and candidates are neither read nor changed.
Json::Value exportTextReadings(const ZPhoneticSymbolModel& model, const QString& text);

// The "data" object: one "phonetic" entry per UTF-16 unit of `style.text` (index, the unit,
// readings[index], and "duyin": the unit's candidates, an empty array when the unit has none,
// null when its list is empty), and "color" as [red, green, blue]. `readings` must hold at least
// one entry per unit.
Json::Value buildPhoneticData(const TextStyle& style, const QStringList& readings,
                              const QMap<QChar, QStringList>& candidates);
