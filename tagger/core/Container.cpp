// SPDX-License-Identifier: MIT
#include "Container.h"

namespace zphonetic::tagger {
namespace {

constexpr size_t kMagicSize = 8;

size_t padded(size_t n) {
    return (n + 7) & ~size_t{7};
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

ContainerWriter::ContainerWriter(std::string_view magic) : magic_(magic) {
    if (magic_.size() != kMagicSize) throw FormatError("a magic must have 8 bytes");
}

void ContainerWriter::addSection(uint32_t id, uint32_t elementSize, std::vector<uint8_t> bytes) {
    for (const Section& s : sections_) {
        if (s.id == id) throw FormatError("section " + std::to_string(id) + " added twice");
    }
    sections_.push_back({id, elementSize, std::move(bytes)});
}

std::vector<uint8_t> ContainerWriter::finish() const {
    std::vector<uint8_t> payload;
    size_t offset = kHeaderSize + sections_.size() * kSectionEntrySize;
    for (const Section& s : sections_) {
        appendLe<uint32_t>(payload, s.id);
        appendLe<uint32_t>(payload, s.elementSize);
        appendLe<uint64_t>(payload, offset);
        appendLe<uint64_t>(payload, s.bytes.size());
        offset += padded(s.bytes.size());
    }
    for (const Section& s : sections_) {
        payload.insert(payload.end(), s.bytes.begin(), s.bytes.end());
        payload.resize(padded(payload.size()), 0);
    }
    std::vector<uint8_t> file(magic_.begin(), magic_.end());
    appendLe<uint32_t>(file, kFormatVersion);
    appendLe<uint32_t>(file, static_cast<uint32_t>(sections_.size()));
    appendLe<uint64_t>(file, payload.size());
    appendLe<uint64_t>(file, checksum(payload.data(), payload.size()));
    appendLe<uint64_t>(file, 0);
    file.insert(file.end(), payload.begin(), payload.end());
    return file;
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
    if (detail::fromLittleEndian<uint64_t>(data + 24) !=
        checksum(data + kHeaderSize, size - kHeaderSize)) {
        throw FormatError("checksum at offset 24 does not match the payload");
    }
    if (count > (size - kHeaderSize) / kSectionEntrySize) {
        throw FormatError("section count " + std::to_string(count) + " at offset 12 is too large");
    }
    for (uint32_t i = 0; i < count; ++i) {
        const uint8_t* p = data + kHeaderSize + i * kSectionEntrySize;
        Entry e{detail::fromLittleEndian<uint32_t>(p), detail::fromLittleEndian<uint32_t>(p + 4),
                detail::fromLittleEndian<uint64_t>(p + 8),
                detail::fromLittleEndian<uint64_t>(p + 16)};
        const size_t at = kHeaderSize + i * kSectionEntrySize;
        if (e.offset % 8 != 0 || e.offset > size || e.size > size - e.offset ||
            e.elementSize == 0 || e.size % e.elementSize != 0) {
            throw FormatError("section " + std::to_string(e.id) + " described at offset " +
                              std::to_string(at) + " lies outside the file or is misaligned");
        }
        entries_.push_back(e);
    }
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
