// SPDX-License-Identifier: MIT
#pragma once

// Items grouped by a character of the BMP, each group found without a search: the character's
// bit says whether it has a group, and the count of characters with groups before it (a count
// per 64 characters, and the bits below it in its own 64) says which group it is. The rules of
// the rule dictionary are grouped by target this way, and the teacher's words by first
// character.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zphonetic::tagger {

// The number of bits set, without the library call the compiler makes of a builtin for a
// processor that may lack the instruction.
inline size_t countBits(uint64_t x) {
    x -= (x >> 1) & 0x5555555555555555;
    x = (x & 0x3333333333333333) + ((x >> 2) & 0x3333333333333333);
    x = (x + (x >> 4)) & 0x0F0F0F0F0F0F0F0F;
    return static_cast<size_t>((x * 0x0101010101010101) >> 56);
}

template <class Item>
class CharGroups {
public:
    // Adds `item` at the end of the group of `c`. The characters come in increasing order:
    // every item of a group is added before the first of the next.
    void add(char16_t c, Item item) {
        if (!has(c)) {
            bits_[c >> 6] |= uint64_t{1} << (c & 63);
            starts_.push_back(static_cast<uint32_t>(items_.size()));
        }
        items_.push_back(std::move(item));
    }
    // Counts the groups; call once, after the last add().
    void finish() {
        starts_.push_back(static_cast<uint32_t>(items_.size()));
        uint32_t before = 0;
        for (size_t w = 0; w < kWords; ++w) {
            rank_[w] = before;
            before += static_cast<uint32_t>(countBits(bits_[w]));
        }
    }

    bool empty() const { return items_.empty(); }
    bool has(char16_t c) const { return (bits_[c >> 6] >> (c & 63)) & 1; }
    // The items of the group of `c`, which has(c): [*first, *last).
    void group(char16_t c, const Item** first, const Item** last) const {
        const uint64_t below = bits_[c >> 6] & ((uint64_t{1} << (c & 63)) - 1);
        const size_t k = rank_[c >> 6] + countBits(below);
        *first = items_.data() + starts_[k];
        *last = items_.data() + starts_[k + 1];
    }

private:
    static constexpr size_t kWords = 0x10000 / 64;
    uint64_t bits_[kWords] = {};
    uint32_t rank_[kWords] = {};    // characters with groups in the bit words before this one
    std::vector<uint32_t> starts_;  // per group, its first item; then the end
    std::vector<Item> items_;
};

}  // namespace zphonetic::tagger
