// SPDX-License-Identifier: MIT
// What backs the host's reading service in a host program: the tagging engine itself, linked
// into libnvo, over the dictionaries of directory 27.
#pragma once

#include "hostexport.h"
#include "minihost/nvo/hostreadingservice.h"

namespace minihost {

// A reading function for createReadingService: one reading per character of the text, in
// context, as the tagging engine gives it (tone-marked pinyin; "" for a character without a
// reading), each covering one character. The dictionaries ("Pinyin.dic", "firrule.dic",
// "secrule.dic" in directory(ZDirDictionaries)) are opened on the first call and kept by the
// function. When they cannot be opened the function gives no readings, and the first such call
// prints "zphonetic: <file>: <what is wrong>" to standard error. The user's own readings count
// as in the tagging library: their file is found when the dictionaries open and read again
// whenever it changes (what it skips noted as "zphonetic: <file>: line 3 skipped: ...").
ZHOST_API ReadingFunction engineReadingFunction();

// What every host program does at start-up: offers the host's reading service, backed by
// engineReadingFunction(), under SID_ZReadingService of the running application (the add-on
// asks it instead of the tagging library while feature 0x1000018 is off). The application holds
// the service until unregisterService or its end.
ZHOST_API void offerEngineReadingService();

}  // namespace minihost
