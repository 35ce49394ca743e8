// SPDX-License-Identifier: MIT
// Building ReadingBlocks in task memory, in the layout of each provider, and widening them back
// to the text they were made for. Private to the engine.
#pragma once

#include <string>
#include <vector>

#include "engine/sentencetagging.h"
#include "nvo/readingservice.h"

// The tagging library's block: header, boundaries, then the readings run together.
// `length` is their joined length plus 1; no groupSizes, no extra. Null when memory runs out.
ReadingBlock* makeTaggerBlock(const std::vector<std::u16string>& readings);

// The host reading service's block: header, the output text, boundaries (running sums of the
// item lengths), then the item values as groupSizes. Null when the record is inconsistent
// (negative counts, missing arrays, items longer than the output) or memory runs out.
ReadingBlock* makeHostBlock(const ZReadingRecord& record);

// A new block with an empty reading inserted at every position of `removed` (ascending
// positions in the text as it was before filtering), each inserted groupSizes entry 1 and
// extra entry 0 when those arrays are present. Positions past the last reading that do not
// follow it directly are not reached (an answer that ended early stays short). Null when
// memory runs out; `block` is left to the caller.
ReadingBlock* widenBlock(const ReadingBlock& block, const std::vector<int>& removed);
