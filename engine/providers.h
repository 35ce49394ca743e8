// SPDX-License-Identifier: MIT
// The two reading providers behind tagText. Both take the filtered text (taggable characters
// only, non-empty, NUL-terminated) and answer a new block or null. Private to the engine.
#pragma once

#include "engine/sentencetagging.h"

// The tagging library loaded in `library` (null = none: no block). Lays the block out as the
// library path does (makeTaggerBlock) and releases the tagger object after a parsed or
// mismatched answer, deliberately not after an answer of 2 units or less.
ReadingBlock* tagWithLibrary(HMODULE* library, const char16_t* filtered);

// The reading service of `coreApplication` (interface IZReadingTagger, locale 0x804). Success
// is a status of exactly 0 with a record; the record is freed after copying.
ReadingBlock* tagWithHostService(IZApplication* coreApplication, const char16_t* filtered);
