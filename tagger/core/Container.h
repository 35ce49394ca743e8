// SPDX-License-Identifier: MIT
#pragma once

// The file layout shared by the three dictionaries.
//
//   offset 0   magic, 8 bytes, names the kind of dictionary ("ZPYCHARS", "ZPYWORDS", "ZPYRULES")
//          8   format version, u32 (kFormatVersion)
//         12   section count, u32
//         16   payload size in bytes, u64 (file size - kHeaderSize)
//         24   checksum of the index, u64: checksum() of the bytes from offset 40 to the data start
//         32   data start, u64: the offset where the data sections begin (8-byte aligned)
//         40   section table: per section u32 id, u32 element size, u64 offset, u64 size
//              (offset from the start of the file, 8-byte aligned; size a multiple of the
//              element size)
//   then the block sums (section kBlockSumSection, u64 each): the checksum of every block of
//   kBlockSize bytes of the data, from the data start to the end of the file (the last block
//   may be shorter); the table and the block sums are the index. Then, from the data start, the
//   data sections, each padded with zeros to 8 bytes.
//
// Every number is little-endian whatever the host. Readers never trust a number from the file:
// ContainerView checks the header, the index's checksum and that every section lies inside the
// file when it opens one, and LeArray::at() checks its index on every read. A block of the data
// is checked against its sum the first time something in it is read, so that opening a file
// costs the same whatever its size (the word dictionary is 16 MB, most of which a short text
// never touches): a block that does not match reads as nothing (at()'s fallback) and makes the
// file damaged, which every reader of it then reports (ContainerView::damage()).

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zphonetic::tagger {

// 3: the data is checked block by block as it is read; the header's checksum covers the index.
// A file of another version is refused, never read as this one.
constexpr uint32_t kFormatVersion = 3;
constexpr size_t kHeaderSize = 40;
constexpr size_t kSectionEntrySize = 24;
constexpr size_t kBlockSize = 4096;
// The id of the block sums; the dictionaries' own sections have small ids.
constexpr uint32_t kBlockSumSection = 0xB10C5005u;

// A dictionary that cannot be read or written; the message says which file part and why.
class FormatError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Checksum of the index and of each block: 64-bit, every byte and its position count.
uint64_t checksum(const uint8_t* data, size_t size);

// Which blocks of a file's data have been checked against their sums, and the first found
// damaged. Shared by the views of one file; any number of threads may read through it (a block
// may then be checked twice, with the same result).
class BlockCheck {
public:
    BlockCheck(const uint8_t* data, size_t size, size_t dataStart, const uint8_t* sums);

    // True when the block holding byte `offset` of the file (at or after the data start) matches
    // its sum, checking it now if it was not checked yet.
    bool intact(size_t offset) const {
        const size_t block = (offset - dataStart_) / kBlockSize;
        const uint8_t state = states_[block].load(std::memory_order_acquire);
        return state == kIntact || (state == kUnchecked && check(block));
    }
    // Checks every block not checked yet.
    void checkAll() const;
    bool damaged() const { return firstDamaged_.load(std::memory_order_acquire) != kNone; }
    // "" while no damaged block was found, else which bytes do not match their sum, e.g.
    // "bytes 4136..8231 (block 1) do not match their checksum".
    std::string damage() const;

private:
    enum : uint8_t { kUnchecked, kIntact, kDamaged };
    bool check(size_t block) const;

    const uint8_t* data_;
    size_t size_;
    size_t dataStart_;
    const uint8_t* sums_;
    std::unique_ptr<std::atomic<uint8_t>[]> states_;
    mutable std::atomic<size_t> firstDamaged_;  // a block number, or kNone
    static constexpr size_t kNone = ~size_t{0};
};

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

// A read-only array of little-endian unsigned integers inside a dictionary file. at() returns
// `fallback` for an index past the end instead of reading outside the file, and for an element
// of a block that does not match its sum instead of reading damaged data.
template <class T>
class LeArray {
public:
    LeArray() = default;
    // `offset`: where `data` lies in the file whose blocks `check` checks.
    LeArray(const uint8_t* data, size_t count, const BlockCheck* check, size_t offset)
        : data_(data), count_(count), check_(check), offset_(offset) {}
    size_t size() const { return count_; }
    T at(size_t i, T fallback = T{}) const {
        // An element never straddles two blocks: sections and blocks start 8-aligned.
        if (i >= count_ || !check_->intact(offset_ + i * sizeof(T))) return fallback;
        return detail::fromLittleEndian<T>(data_ + i * sizeof(T));
    }
    // Elements [begin, begin + count) into `out`, each converted to U, with one check of each
    // block they lie in; false (`out` then undefined) when they pass the end or one of their
    // blocks does not match its sum.
    template <class U>
    bool copy(size_t begin, size_t count, U* out) const {
        if (begin > count_ || count > count_ - begin) return false;
        if (count == 0) return true;
        const size_t first = offset_ + begin * sizeof(T);
        const size_t last = first + (count - 1) * sizeof(T);
        for (size_t at = first; at < last; at += kBlockSize)
            if (!check_->intact(at)) return false;
        if (!check_->intact(last)) return false;
        for (size_t i = 0; i < count; ++i)
            out[i] = static_cast<U>(detail::fromLittleEndian<T>(data_ + (begin + i) * sizeof(T)));
        return true;
    }

private:
    const uint8_t* data_ = nullptr;
    size_t count_ = 0;
    const BlockCheck* check_ = nullptr;
    size_t offset_ = 0;
};

// Builds a dictionary file in memory: the index, then the sections in the order they were added.
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

// Writes the block sums and the index's checksum of `file` again from its bytes, so that a file
// changed on purpose (a test, a fuzzer) reaches the readers behind the checks. The block sums
// are left alone where the table does not place them inside the index, and nothing is written
// to a file whose header or data start does not fit it.
void seal(std::vector<uint8_t>& file);

// A checked view of a dictionary file held in memory (mapped or not; it does not own it).
class ContainerView {
public:
    // Throws FormatError when the bytes are not a complete file of this magic and version with an
    // intact index. The data's blocks are checked as they are read (see BlockCheck).
    ContainerView(const uint8_t* data, size_t size, std::string_view magic);

    // The section with this id as an array of T; throws FormatError when it is missing or its
    // element size is not sizeof(T).
    template <class T>
    LeArray<T> array(uint32_t id) const {
        const Entry& e = find(id, sizeof(T));
        return LeArray<T>(data_ + e.offset, e.size / sizeof(T), check_.get(), e.offset);
    }

    // Whether a block read so far did not match its sum, and which bytes ("" when none).
    bool damaged() const { return check_->damaged(); }
    std::string damage() const { return check_->damage(); }
    // Checks every block now; throws FormatError naming the first that does not match.
    void checkEveryBlock() const;

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
    std::shared_ptr<const BlockCheck> check_;  // shared by copies of the view
};

// The magic of a file held in memory, or "" when it is too short to have one.
std::string_view magicOf(const uint8_t* data, size_t size);

}  // namespace zphonetic::tagger
