// SPDX-License-Identifier: MIT
// The host's reading service: the object the core application hands out for SID_ZReadingService.
// It answers IZReadingTagger (pinyin for a text, used when feature 0x1000018 is off) and
// IZReadingHost (handed to a tagging library when the add-on loads one). What it reads is up to
// the tagging function it is built with: the tagging engine in a real host, scripted answers in
// tests.
#pragma once

#include <QString>
#include <QVector>
#include <functional>

#include "hostexport.h"
#include "nvo/com.h"

namespace minihost {

// One reading the service answers: its text, and how many input characters it covers.
struct HostReading {
    QString text;
    int covers = 1;
};

// Reads `text` (taggable characters only, as the add-on sends them) and appends its readings,
// in order, to `readings`. False, or no readings, makes TagText fail. May throw; the service
// turns that into a failure status.
using ReadingFunction = std::function<bool(const QString& text, QVector<HostReading>& readings)>;

// A new reading service backed by `tag` (a null function makes every TagText fail). The caller
// owns the one reference it comes with.
//
// TagText(text, length, 0x804, &record) answers S_OK and one task-memory block: the
// ZReadingRecord header, the readings run together (NUL-terminated), then the per-reading
// values (`covers`) and lengths. E_POINTER for a null record pointer or a null text with a
// length, E_INVALIDARG for a negative length or a locale other than 0x804, E_FAIL when the
// function gives no readings or throws; *record is null on every failure.
ZHOST_API IUnknown* createReadingService(ReadingFunction tag);

// Reading service objects alive in this process: tests check that none is leaked.
ZHOST_API int liveReadingServices();

}  // namespace minihost
