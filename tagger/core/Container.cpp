// SPDX-License-Identifier: MIT
#include "Container.h"

#include <algorithm>

namespace zphonetic::tagger {
namespace {

constexpr size_t kMagicSize = 8;

size_t padded(size_t n) {
    return (n + 7) & ~size_t{7};
}

// The blocks of the data of a file of `size` bytes whose data starts at `dataStart`.
size_t blockCount(size_t size, size_t dataStart) {
    return (size - dataStart + kBlockSize - 1) / kBlockSize;
}

uint64_t mix(uint64_t h) {
    h ^= h >> 33;
    h *= 0xFF51AFD7ED558CCDULL;
    h ^= h >> 33;
    h *= 0xC4CEB9FE1A85EC53ULL;
    h ^= h >> 33;
    return h;
}

}  // namespace

uint64_t checksum(const uint8_t* data, size_t size) {
    // Four independent lanes over 8-byte words keep the loop near memory speed; every byte and
    // its position change the result.
    constexpr uint64_t kPrime1 = 0x9E3779B185EBCA87ULL;
    constexpr uint64_t kPrime2 = 0xC2B2AE3D27D4EB4FULL;
    uint64_t lane[4] = {kPrime1, kPrime2, ~kPrime1, ~kPrime2};
    size_t i = 0;
    for (; i + 32 <= size; i += 32) {
        for (int k = 0; k < 4; ++k) {
            const uint64_t w = detail::fromLittleEndian<uint64_t>(data + i + 8 * k);
            lane[k] = (lane[k] ^ (w * kPrime2)) * kPrime1;
            lane[k] = (lane[k] << 31) | (lane[k] >> 33);
        }
    }
    uint64_t h = size * kPrime1;
    for (uint64_t l : lane) h = mix(h ^ l) * kPrime2;
    for (; i < size; ++i) h = (h ^ data[i]) * kPrime1;
    return mix(h);
}

BlockCheck::BlockCheck(const uint8_t* data, size_t size, size_t dataStart, const uint8_t* sums)
    : data_(data),
      size_(size),
      dataStart_(dataStart),
      sums_(sums),
      states_(new std::atomic<uint8_t>[blockCount(size, dataStart)]),
      firstDamaged_(kNone) {
    for (size_t b = 0; b < blockCount(size, dataStart); ++b) states_[b].store(kUnchecked);
}

bool BlockCheck::check(size_t block) const {
    const size_t begin = dataStart_ + block * kBlockSize;
    const size_t length = std::min(kBlockSize, size_ - begin);
    const bool intact = checksum(data_ + begin, length) ==
                        detail::fromLittleEndian<uint64_t>(sums_ + block * sizeof(uint64_t));
    states_[block].store(intact ? kIntact : kDamaged, std::memory_order_release);
    if (!intact) {
        size_t none = kNone;
        firstDamaged_.compare_exchange_strong(none, block);
    }
    return intact;
}

void BlockCheck::checkAll() const {
    for (size_t b = 0; b < blockCount(size_, dataStart_); ++b)
        if (states_[b].load(std::memory_order_acquire) == kUnchecked) check(b);
}

std::string BlockCheck::damage() const {
    const size_t block = firstDamaged_.load();
    if (block == kNone) return std::string();
    const size_t begin = dataStart_ + block * kBlockSize;
    const size_t end = std::min(begin + kBlockSize, size_) - 1;
    return "bytes " + std::to_string(begin) + ".." + std::to_string(end) + " (block " +
           std::to_string(block) + ") do not match their checksum";
}

ContainerWriter::ContainerWriter(std::string_view magic) : magic_(magic) {
    if (magic_.size() != kMagicSize) throw FormatError("a magic must have 8 bytes");
}

void ContainerWriter::addSection(uint32_t id, uint32_t elementSize, std::vector<uint8_t> bytes) {
    if (id == kBlockSumSection)
        throw FormatError("section id " + std::to_string(id) + " is reserved");
    for (const Section& s : sections_) {
        if (s.id == id) throw FormatError("section " + std::to_string(id) + " added twice");
    }
    sections_.push_back({id, elementSize, std::move(bytes)});
}

std::vector<uint8_t> ContainerWriter::finish() const {
    // The data sections and where the data starts: after the table and the block sums, whose
    // size the data's size decides.
    size_t dataSize = 0;
    for (const Section& s : sections_) dataSize += padded(s.bytes.size());
    const size_t sums = (dataSize + kBlockSize - 1) / kBlockSize * sizeof(uint64_t);
    const size_t tableEnd = kHeaderSize + (sections_.size() + 1) * kSectionEntrySize;
    const size_t dataStart = tableEnd + sums;

    std::vector<uint8_t> file(magic_.begin(), magic_.end());
    appendLe<uint32_t>(file, kFormatVersion);
    appendLe<uint32_t>(file, static_cast<uint32_t>(sections_.size() + 1));
    appendLe<uint64_t>(file, dataStart + dataSize - kHeaderSize);
    appendLe<uint64_t>(file, 0);  // the index's checksum, written by seal()
    appendLe<uint64_t>(file, dataStart);
    appendLe<uint32_t>(file, kBlockSumSection);
    appendLe<uint32_t>(file, sizeof(uint64_t));
    appendLe<uint64_t>(file, tableEnd);
    appendLe<uint64_t>(file, sums);
    size_t offset = dataStart;
    for (const Section& s : sections_) {
        appendLe<uint32_t>(file, s.id);
        appendLe<uint32_t>(file, s.elementSize);
        appendLe<uint64_t>(file, offset);
        appendLe<uint64_t>(file, s.bytes.size());
        offset += padded(s.bytes.size());
    }
    file.resize(dataStart, 0);  // the block sums, written by seal()
    for (const Section& s : sections_) {
        file.insert(file.end(), s.bytes.begin(), s.bytes.end());
        file.resize(padded(file.size()), 0);
    }
    seal(file);
    return file;
}

void seal(std::vector<uint8_t>& file) {
    if (file.size() < kHeaderSize) return;
    const uint64_t dataStart = detail::fromLittleEndian<uint64_t>(file.data() + 32);
    if (dataStart < kHeaderSize || dataStart > file.size()) return;
    // The block sums are wherever the table says they are, if they fit before the data.
    const size_t count = detail::fromLittleEndian<uint32_t>(file.data() + 12);
    const uint64_t blocks = blockCount(file.size(), dataStart);
    for (size_t i = 0; i < count && i < (dataStart - kHeaderSize) / kSectionEntrySize; ++i) {
        const uint8_t* p = file.data() + kHeaderSize + i * kSectionEntrySize;
        if (detail::fromLittleEndian<uint32_t>(p) != kBlockSumSection) continue;
        const uint64_t at = detail::fromLittleEndian<uint64_t>(p + 8);
        if (at < kHeaderSize || at > dataStart || (dataStart - at) / sizeof(uint64_t) < blocks)
            break;
        for (uint64_t b = 0; b < blocks; ++b) {
            const size_t begin = dataStart + b * kBlockSize;
            const uint64_t sum =
                checksum(file.data() + begin, std::min(kBlockSize, file.size() - begin));
            for (size_t k = 0; k < 8; ++k)
                file[at + b * 8 + k] = static_cast<uint8_t>(sum >> (8 * k));
        }
        break;
    }
    const uint64_t index = checksum(file.data() + kHeaderSize, dataStart - kHeaderSize);
    for (size_t k = 0; k < 8; ++k) file[24 + k] = static_cast<uint8_t>(index >> (8 * k));
}

std::string_view magicOf(const uint8_t* data, size_t size) {
    if (size < kMagicSize) return {};
    return std::string_view(reinterpret_cast<const char*>(data), kMagicSize);
}

ContainerView::ContainerView(const uint8_t* data, size_t size, std::string_view magic)
    : data_(data) {
    if (size < kHeaderSize) {
        throw FormatError("file of " + std::to_string(size) + " bytes is shorter than the " +
                          std::to_string(kHeaderSize) + "-byte header");
    }
    if (magicOf(data, size) != magic) {
        throw FormatError("bad magic at offset 0: expected \"" + std::string(magic) + "\"");
    }
    const auto version = detail::fromLittleEndian<uint32_t>(data + 8);
    if (version != kFormatVersion) {
        throw FormatError("format version " + std::to_string(version) + " at offset 8, expected " +
                          std::to_string(kFormatVersion));
    }
    const auto count = detail::fromLittleEndian<uint32_t>(data + 12);
    const auto payloadSize = detail::fromLittleEndian<uint64_t>(data + 16);
    if (payloadSize != size - kHeaderSize) {
        throw FormatError("payload size " + std::to_string(payloadSize) +
                          " at offset 16 does not match the file (" +
                          std::to_string(size - kHeaderSize) + " bytes after the header)");
    }
    const auto dataStart = detail::fromLittleEndian<uint64_t>(data + 32);
    if (dataStart < kHeaderSize || dataStart > size || dataStart % 8 != 0) {
        throw FormatError("data start " + std::to_string(dataStart) +
                          " at offset 32 lies outside the file or is misaligned");
    }
    if (detail::fromLittleEndian<uint64_t>(data + 24) !=
        checksum(data + kHeaderSize, dataStart - kHeaderSize)) {
        throw FormatError("checksum at offset 24 does not match the index");
    }
    if (count > (dataStart - kHeaderSize) / kSectionEntrySize) {
        throw FormatError("section count " + std::to_string(count) + " at offset 12 is too large");
    }
    const Entry* sums = nullptr;
    for (uint32_t i = 0; i < count; ++i) {
        const uint8_t* p = data + kHeaderSize + i * kSectionEntrySize;
        Entry e{detail::fromLittleEndian<uint32_t>(p), detail::fromLittleEndian<uint32_t>(p + 4),
                detail::fromLittleEndian<uint64_t>(p + 8),
                detail::fromLittleEndian<uint64_t>(p + 16)};
        const size_t at = kHeaderSize + i * kSectionEntrySize;
        // The block sums lie in the index, every other section in the data.
        const bool isSums = e.id == kBlockSumSection;
        const uint64_t begin = isSums ? kHeaderSize : dataStart;
        const uint64_t end = isSums ? dataStart : size;
        if (e.offset % 8 != 0 || e.offset < begin || e.offset > end || e.size > end - e.offset ||
            e.elementSize == 0 || e.size % e.elementSize != 0) {
            throw FormatError("section " + std::to_string(e.id) + " described at offset " +
                              std::to_string(at) + " lies outside the file or is misaligned");
        }
        entries_.push_back(e);
    }
    for (const Entry& e : entries_)
        if (e.id == kBlockSumSection) sums = &e;
    if (!sums || sums->elementSize != sizeof(uint64_t) ||
        sums->size / sizeof(uint64_t) != blockCount(size, dataStart)) {
        throw FormatError(
            "the block sums are missing or do not have one sum per block of the data");
    }
    check_ = std::make_shared<const BlockCheck>(data, size, dataStart, data + sums->offset);
}

void ContainerView::checkEveryBlock() const {
    check_->checkAll();
    const std::string damaged = check_->damage();
    if (!damaged.empty()) throw FormatError(damaged);
}

const ContainerView::Entry& ContainerView::find(uint32_t id, size_t elementSize) const {
    for (const Entry& e : entries_) {
        if (e.id != id) continue;
        if (e.elementSize != elementSize) {
            throw FormatError("section " + std::to_string(id) + " has elements of " +
                              std::to_string(e.elementSize) + " bytes, expected " +
                              std::to_string(elementSize));
        }
        return e;
    }
    throw FormatError("section " + std::to_string(id) + " is missing");
}

}  // namespace zphonetic::tagger
