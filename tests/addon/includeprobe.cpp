// SPDX-License-Identifier: MIT
// Compiled with the add-on's include path, once per probe (tests/addon/CMakeLists.txt): the
// allowed includes must compile; each of the others must fail because the header is not found.
#if defined(ZPHONETIC_PROBE_ALLOWED)
#include "common/comptr.h"
#include "entry/addonresources.h"
#include "model/phoneticsymbolmodel.h"
#include "nvo/zapplication.h"
#include "slxcore/slxoldapi.h"
#elif defined(ZPHONETIC_PROBE_MINIHOST)
#include "minihost/nvo/hoststore.h"
#elif defined(ZPHONETIC_PROBE_TAGGER_TREE)
#include "tagger/include/PinyinTagger.h"
#elif defined(ZPHONETIC_PROBE_TAGGER)
#include "PinyinTagger.h"
#else
#error "no probe chosen"
#endif

int zphoneticIncludeProbe() {
    return 0;
}
