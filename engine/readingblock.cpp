// SPDX-License-Identifier: MIT
#include "engine/readingblock.h"

#include <cstring>

namespace {

// The providers size their blocks with 126 bytes for the header and the terminating NULs.
constexpr std::size_t kBlockSlack = 126;
static_assert(sizeof(ReadingBlock) + sizeof(std::int32_t) + 2 * sizeof(char16_t) +
                      alignof(std::int32_t) <=
                  kBlockSlack,
              "the header must fit in the slack the block sizes reserve");

unsigned char* alignUp(unsigned char* at, std::size_t alignment) {
    const auto address = reinterpret_cast<std::uintptr_t>(at);
    return at + (alignment - address % alignment) % alignment;
}

ReadingBlock* allocateBlock(std::size_t size) {
    auto* block = static_cast<ReadingBlock*>(_XCoTaskMemAlloc(size));
    if (block) *block = ReadingBlock{0, nullptr, 0, nullptr, nullptr, nullptr};
    return block;
}

unsigned char* afterHeader(ReadingBlock* block) {
    return reinterpret_cast<unsigned char*>(block) + sizeof(ReadingBlock);
}

}  // namespace

ReadingBlock* makeTaggerBlock(const std::vector<std::u16string>& readings) {
    std::size_t joinedLength = 0;
    for (const auto& reading : readings) joinedLength += reading.size();
    ReadingBlock* block = allocateBlock(4 * readings.size() + 2 * joinedLength + kBlockSlack);
    if (!block) return nullptr;
    block->boundaryCount = static_cast<std::int32_t>(readings.size() + 1);
    block->boundaries = reinterpret_cast<std::int32_t*>(afterHeader(block));
    block->text = reinterpret_cast<char16_t*>(block->boundaries + block->boundaryCount);
    std::int32_t offset = 0;
    block->boundaries[0] = 0;
    for (std::size_t i = 0; i < readings.size(); ++i) {
        std::memcpy(block->text + offset, readings[i].data(),
                    readings[i].size() * sizeof(char16_t));
        offset += static_cast<std::int32_t>(readings[i].size());
        block->boundaries[i + 1] = offset;
    }
    block->text[offset] = 0;
    block->length = offset + 1;
    return block;
}

ReadingBlock* makeHostBlock(const ZReadingRecord& record) {
    const std::int32_t outputLength = record.outputLength;
    const std::int32_t itemCount = record.itemCount;
    if (outputLength < 0 || itemCount < 0) return nullptr;
    if (outputLength > 0 && !record.output) return nullptr;
    if (itemCount > 0 && (!record.itemLengths || !record.itemValues)) return nullptr;
    std::int64_t covered = 0;
    for (std::int32_t i = 0; i < itemCount; ++i) {
        if (record.itemLengths[i] < 0) return nullptr;
        covered += record.itemLengths[i];
    }
    if (covered > outputLength) return nullptr;

    const auto items = static_cast<std::size_t>(itemCount);
    const auto units = static_cast<std::size_t>(outputLength);
    ReadingBlock* block = allocateBlock((items * 4 + units) * 2 + kBlockSlack);
    if (!block) return nullptr;
    block->length = outputLength;
    block->text = reinterpret_cast<char16_t*>(afterHeader(block));
    if (units) std::memcpy(block->text, record.output, units * sizeof(char16_t));
    block->text[units] = 0;
    // After the text's NUL, rounded up so the int32 arrays are aligned; the slack covers it.
    block->boundaries = reinterpret_cast<std::int32_t*>(
        alignUp(reinterpret_cast<unsigned char*>(block->text + units + 1), alignof(std::int32_t)));
    block->boundaryCount = itemCount + 1;
    block->boundaries[0] = 0;
    for (std::size_t i = 0; i < items; ++i)
        block->boundaries[i + 1] = block->boundaries[i] + record.itemLengths[i];
    block->groupSizes = block->boundaries + block->boundaryCount;
    for (std::size_t i = 0; i < items; ++i)
        block->groupSizes[i] = static_cast<std::int32_t>(record.itemValues[i]);
    block->extra = nullptr;
    return block;
}

ReadingBlock* widenBlock(const ReadingBlock& block, const std::vector<int>& removed) {
    const std::size_t oldCount =
        block.boundaries && block.boundaryCount > 1 ? std::size_t(block.boundaryCount - 1) : 0;
    // For each reading of the new block, the old reading it copies, or -1 for an inserted one.
    std::vector<long> sources;
    std::size_t nextOld = 0;
    std::size_t nextRemoved = 0;
    const std::size_t total = oldCount + removed.size();
    for (std::size_t position = 0; position < total; ++position) {
        if (nextRemoved < removed.size() && std::size_t(removed[nextRemoved]) == position) {
            sources.push_back(-1);
            ++nextRemoved;
        } else if (nextOld < oldCount) {
            sources.push_back(static_cast<long>(nextOld++));
        } else {
            break;
        }
    }

    const std::size_t count = sources.size();
    const std::size_t textLength = block.text ? _Xu2_strlen(block.text) : 0;
    const std::size_t arrays =
        (count + 1) + (block.groupSizes ? count : 0) + (block.extra ? count : 0);
    ReadingBlock* wide = allocateBlock(sizeof(ReadingBlock) + arrays * sizeof(std::int32_t) +
                                       (textLength + 1) * sizeof(char16_t));
    if (!wide) return nullptr;
    wide->length = block.length;
    wide->boundaryCount = static_cast<std::int32_t>(count + 1);
    wide->boundaries = reinterpret_cast<std::int32_t*>(afterHeader(wide));
    std::int32_t* next = wide->boundaries + wide->boundaryCount;
    if (block.groupSizes) {
        wide->groupSizes = next;
        next += count;
    }
    if (block.extra) {
        wide->extra = next;
        next += count;
    }
    wide->text = reinterpret_cast<char16_t*>(next);
    if (textLength) std::memcpy(wide->text, block.text, textLength * sizeof(char16_t));
    wide->text[textLength] = 0;

    wide->boundaries[0] = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const long source = sources[i];
        wide->boundaries[i + 1] = source < 0 ? wide->boundaries[i] : block.boundaries[source + 1];
        if (wide->groupSizes) wide->groupSizes[i] = source < 0 ? 1 : block.groupSizes[source];
        if (wide->extra) wide->extra[i] = source < 0 ? 0 : block.extra[source];
    }
    return wide;
}
