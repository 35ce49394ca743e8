// SPDX-License-Identifier: MIT
// Turning one text into one reading per character, in context.
#pragma once

#include <cstdint>
#include <memory>

#include "nvo/com.h"
#include "nvo/runtime.h"

struct IZApplication;

// The readings of a text in one task-memory block (header and arrays in one allocation), freed
// as a whole with _XCoTaskMemFree by whoever receives it. Read it through the pointers only:
// the two providers lay the arrays out differently.
struct ReadingBlock {
    // Tagging library: the length of `text` plus 1. Host reading service: the service's own
    // output length. (The two differ deliberately.)
    std::int32_t length;
    char16_t* text;  // every reading run together, NUL-terminated
    // Entries of `boundaries`: the number of readings plus 1.
    std::int32_t boundaryCount;
    // Reading i is text[boundaries[i] .. boundaries[i + 1]); boundaries[0] is 0.
    std::int32_t* boundaries;
    // Host reading service only: per reading, how many input characters it covers; else null.
    std::int32_t* groupSizes;
    // Per reading values carried through widening; null from both providers.
    std::int32_t* extra;
};

// Frees a ReadingBlock with _XCoTaskMemFree.
struct ReadingBlockFree {
    void operator()(ReadingBlock* block) const { _XCoTaskMemFree(block); }
};
using ReadingBlockPtr = std::unique_ptr<ReadingBlock, ReadingBlockFree>;

// Tags `text` and writes the new block to *block (set to null first; it stays null on every
// failure, and the caller frees a block it receives).
//
// Only taggable characters (engine/taggablerange.h) reach the provider; every other character
// gets an empty reading at its place again, so "ab中c" gives four readings: "", "", the
// reading of 中, "". With feature 0x1000018 on, the tagging library in `library` (the cell of a
// PinyinTaggerHandle; null = none loaded) answers; with it off, the reading service of
// `coreApplication`. Readings carry U+0251 for "a" and U+0261 for "g". A lone character gets
// every candidate reading, a character in a sentence its first one. The text "一二" exactly is
// tagged one character at a time. A malformed answer gives no block; an answer that ends early
// gives readings for the characters it covered only.
void tagText(HMODULE* library, IZApplication* coreApplication, BSTR text, ReadingBlock** block);
