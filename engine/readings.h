// SPDX-License-Identifier: MIT
// The engine's readings as Qt containers: the candidates of every Chinese character of a text
// and one in-context reading per character. Chinese here means U+4E00..U+9FA5 only; U+9FA6 and
// Extension A are not.
#pragma once

#include <QChar>
#include <QMap>
#include <QString>
#include <QStringList>

#include "engine/sentencetagging.h"
#include "engine/taggerbinding.h"

// Tags every Chinese character of `text` alone and stores all its readings, default first,
// under it in `candidates` (replacing an earlier entry; the map is not cleared first). A
// character without readings gets no entry. A null handle, or no tagger, adds nothing.
void tagAlternatives(const PinyinTaggerHandle* handle, const QString& text,
                     QMap<QChar, QStringList>& candidates);

// Fills `readings` with one reading per UTF-16 unit of `text`: the reading in context for a
// Chinese character, "" for any other character, and "  " (two spaces) for a Chinese character
// that `candidates` (when given) lacks. "中a国" gives "zhōnɡ", "", "ɡuó". True when the tagger
// gave at least one reading; on false the list is left as it was (apart from the "  " marks of
// missing characters). A null handle gives no readings.
bool tagReadings(const PinyinTaggerHandle* handle, const QString& text,
                 const QMap<QChar, QStringList>* candidates, QStringList& readings);

// Replaces `readings` by the readings of `block`, one per boundary pair; an empty or missing
// range gives "".
void readingsFromBlock(const ReadingBlock& block, QStringList& readings);
