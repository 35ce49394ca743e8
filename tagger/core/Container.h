// SPDX-License-Identifier: MIT
#pragma once

// The file layout shared by the three dictionaries.
//
//   offset 0   magic, 8 bytes, names the kind of dictionary ("ZPYCHARS", "ZPYWORDS", "ZPYRULES")
//          8   format version, u32 (kFormatVersion)
//         12   section count, u32
//         16   payload size in bytes, u64 (file size - kHeaderSize)
//         24   checksum of the payload, u64 (checksum() below)
//         32   reserved, u64, zero
//         40   section table: per section u32 id, u32 element size, u64 offset, u64 size
//              (offset from the start of the file, 8-byte aligned; size a multiple of the
//              element size)
//   then the sections, each padded with zeros to 8 bytes.
//
// Every number is little-endian whatever the host. Readers never trust a number from the file:
// parse() checks the header, the checksum and that every section lies inside the file, and
// LeArray::at() checks its index on every read.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zphonetic::tagger {

// 2: the word dictionary's states are 8 bytes, their readings apart, and it has no transition
// filter. A file of another version is refused, never read as this one.
constexpr uint32_t kFormatVersion = 2;
constexpr size_t kHeaderSize = 40;
constexpr size_t kSectionEntrySize = 24;

// A dictionary that cannot be read or written; the message says which file part and why.
class FormatError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Checksum of the payload: 64-bit, fast enough to check a whole dictionary at every open.
uint64_t checksum(const uint8_t* data, size_t size);

namespace detail {
template <class T>
T fromLittleEndian(const uint8_t* p) {
    T value;
    std::memcpy(&value, p, sizeof(T));
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    uint8_t bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof(T));
    for (size_t i = 0; i < sizeof(T) / 2; ++i) std::swap(bytes[i], bytes[sizeof(T) - 1 - i]);
    std::memcpy(&value, bytes, sizeof(T));
#endif
    return value;
}
}  // namespace detail

// A read-only array of little-endian unsigned integers inside a mapped file. at() returns
// `fallback` for an index past the end instead of reading outside the file.
template <class T>
class LeArray {
public:
    LeArray() = default;
    LeArray(const uint8_t* data, size_t count) : data_(data), count_(count) {}
    size_t size() const { return count_; }
    T at(size_t i, T fallback = T{}) const {
        return i < count_ ? detail::fromLittleEndian<T>(data_ + i * sizeof(T)) : fallback;
    }

private:
    const uint8_t* data_ = nullptr;
    size_t count_ = 0;
};

// Builds a dictionary file in memory.
class ContainerWriter {
public:
    explicit ContainerWriter(std::string_view magic);
    // Sections are written in the order they are added; ids must be unique.
    void addSection(uint32_t id, uint32_t elementSize, std::vector<uint8_t> bytes);
    std::vector<uint8_t> finish() const;

private:
    struct Section {
        uint32_t id;
        uint32_t elementSize;
        std::vector<uint8_t> bytes;
    };
    std::string magic_;
    std::vector<Section> sections_;
};

// Appends `value` little-endian to `out`.
template <class T>
void appendLe(std::vector<uint8_t>& out, T value) {
    for (size_t i = 0; i < sizeof(T); ++i) {
        out.push_back(static_cast<uint8_t>(static_cast<uint64_t>(value) >> (8 * i)));
    }
}

// A checked view of a dictionary file held in memory (mapped or not; it does not own it).
class ContainerView {
public:
    // Throws FormatError when the bytes are not a complete, intact file of this magic and version.
    ContainerView(const uint8_t* data, size_t size, std::string_view magic);

    // The section with this id as an array of T; throws FormatError when it is missing or its
    // element size is not sizeof(T).
    template <class T>
    LeArray<T> array(uint32_t id) const {
        const Entry& e = find(id, sizeof(T));
        return LeArray<T>(data_ + e.offset, e.size / sizeof(T));
    }

private:
    struct Entry {
        uint32_t id;
        uint32_t elementSize;
        uint64_t offset;
        uint64_t size;
    };
    const Entry& find(uint32_t id, size_t elementSize) const;

    const uint8_t* data_;
    std::vector<Entry> entries_;
};

// The magic of a file held in memory, or "" when it is too short to have one.
std::string_view magicOf(const uint8_t* data, size_t size);

}  // namespace zphonetic::tagger
