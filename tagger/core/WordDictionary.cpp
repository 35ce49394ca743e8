// SPDX-License-Identifier: MIT
#include "WordDictionary.h"

#include <algorithm>
#include <cstdlib>
#include <queue>

#include "TextLines.h"
#include "Utf16.h"

namespace zphonetic::tagger {
namespace {

constexpr uint32_t kCodeSection = 3;
constexpr uint32_t kCharSection = 4;
constexpr uint32_t kStateSection = 5;
constexpr uint32_t kReadingSection = 6;
constexpr uint32_t kLongReadingSection = 7;
constexpr size_t kUnits = 0x10000;
constexpr size_t kMaxBase = (size_t{1} << 21) - 1;
constexpr size_t kMaxInlineSyllable = 0x7FFF;
// Bases tried before the search for later states starts further on in the table.
constexpr size_t kCrowded = 4096;
// No word in any source is this long; a deeper path can only come from a damaged file.
constexpr size_t kMaxWordLength = 64;

}  // namespace

uint16_t parseWordCost(size_t lineNo, const std::string& field) {
    char* end = nullptr;
    const unsigned long cost = std::strtoul(field.c_str(), &end, 10);
    if (field.empty() || *end != '\0' || cost > kMaxWordCost) {
        throw lineError(lineNo, "cost \"" + field + "\" is not a number from 0 to " +
                                    std::to_string(kMaxWordCost));
    }
    return static_cast<uint16_t>(cost);
}

std::vector<WordEntry> parseWordText(const std::string& text) {
    std::vector<WordEntry> out;
    forEachLine(text, [&](size_t lineNo, const std::vector<std::string>& fields) {
        if (fields.size() != 3) throw lineError(lineNo, "expected a word, its readings and a cost");
        WordEntry e;
        e.word = toUtf16(fields[0]);
        e.readings = splitSyllables(lineNo, fields[1]);
        if (e.word.empty() || e.readings.size() != e.word.size()) {
            throw lineError(lineNo, "\"" + fields[0] + "\" needs one reading per character");
        }
        e.cost = parseWordCost(lineNo, fields[2]);
        out.push_back(std::move(e));
    });
    return out;
}

std::string formatWordText(const std::vector<WordEntry>& entries) {
    std::string out;
    for (const WordEntry& e : entries) {
        out += toUtf8(e.word);
        out += '\t';
        out += joinSyllables(e.readings);
        out += '\t';
        out += std::to_string(e.cost);
        out += '\n';
    }
    return out;
}

namespace {

// Sorted by word, as the trie is built from runs of entries sharing a prefix; throws for an
// entry the file cannot hold and for a word listed twice.
void sortAndCheck(std::vector<WordEntry>& entries) {
    std::sort(entries.begin(), entries.end(),
              [](const WordEntry& a, const WordEntry& b) { return a.word < b.word; });
    for (size_t i = 0; i < entries.size(); ++i) {
        const WordEntry& e = entries[i];
        if (e.word.empty() || e.word.size() > kMaxWordLength ||
            e.readings.size() != e.word.size() || e.cost > kMaxWordCost) {
            throw FormatError("word \"" + toUtf8(e.word) +
                              "\" is empty, too long, lacks a reading per character, or costs "
                              "more than " +
                              std::to_string(kMaxWordCost));
        }
        if (i > 0 && e.word == entries[i - 1].word) {
            throw FormatError("word \"" + toUtf8(e.word) + "\" is listed twice");
        }
    }
}

// Sections 3 and 4: the code of every character and the character of every code.
struct CharacterCodes {
    std::vector<uint16_t> codeOf = std::vector<uint16_t>(kUnits, 0);
    std::vector<uint16_t> charOf = std::vector<uint16_t>(1, 0);
};

// Codes by frequency: the characters met most often get the smallest codes, so the states of
// common words crowd together in memory. Equally frequent characters keep their code order.
CharacterCodes codesByFrequency(const std::vector<WordEntry>& entries) {
    std::vector<uint64_t> frequency(kUnits, 0);
    for (const WordEntry& e : entries) {
        for (char16_t c : e.word) ++frequency[c];
    }
    std::vector<char16_t> byFrequency;
    for (uint32_t c = 0; c < kUnits; ++c) {
        if (frequency[c] != 0) byFrequency.push_back(static_cast<char16_t>(c));
    }
    std::stable_sort(byFrequency.begin(), byFrequency.end(),
                     [&](char16_t a, char16_t b) { return frequency[a] > frequency[b]; });
    CharacterCodes codes;
    for (char16_t c : byFrequency) {
        codes.codeOf[c] = static_cast<uint16_t>(codes.charOf.size());
        codes.charOf.push_back(c);
    }
    return codes;
}

// The syllable table and section 7, filled as words are met: a syllable's index is the order
// of its first use, so the words must come in the order the states are placed.
class WordReadings {
public:
    // Section 6's value for the word `e`: its syllable indices inline for one or two characters,
    // else kLongBit and where its indices start in section 7.
    uint32_t add(const WordEntry& e) {
        uint32_t value = 0;
        if (e.word.size() <= 2) {
            for (size_t k = 0; k < e.readings.size(); ++k) {
                const uint16_t id = syllables_.add(e.readings[k]);
                if (id > kMaxInlineSyllable) throw FormatError("too many syllables");
                value |= uint32_t{id} << (15 * k);
            }
            return value;
        }
        value = WordDictionary::kLongBit | longCount_;
        for (const std::u16string& r : e.readings) {
            appendLe<uint16_t>(longReadings_, syllables_.add(r));
            ++longCount_;
        }
        return value;
    }
    void writeTo(ContainerWriter& writer) const { syllables_.writeTo(writer); }
    std::vector<uint8_t> takeLongReadings() { return std::move(longReadings_); }

private:
    SyllableTableBuilder syllables_;
    std::vector<uint8_t> longReadings_;
    uint32_t longCount_ = 0;
};

// One slot of the state table before it is written (section 5 and 6).
struct State {
    uint32_t base = 0, parentPlusOne = 0, readings = 0;
    uint16_t cost = 0;
    bool word = false;
};

// Which slots of the state table are taken. Slots 0 (the root) and 1 are never a child.
class SlotTable {
public:
    bool taken(size_t slot) const { return slot < used_.size() && used_[slot]; }
    // The first free slot at or after `x`: nextFree_[x] leads there (a union-find with path
    // halving), so the search for a base jumps over taken slots instead of walking them.
    size_t firstFreeFrom(size_t x) {
        while (x + 1 >= nextFree_.size()) grow();
        while (nextFree_[x] != x) {
            nextFree_[x] = nextFree_[nextFree_[x]];
            x = nextFree_[x];
            while (x + 1 >= nextFree_.size()) grow();
        }
        return x;
    }
    // Makes room up to (not including) `end` and marks `slot`, below it, as taken.
    void reserve(size_t end) {
        if (end > used_.size()) used_.resize(end, false);
    }
    void take(size_t slot) {
        used_[slot] = true;
        firstFreeFrom(slot + 1);
        nextFree_[slot] = static_cast<uint32_t>(slot + 1);
    }

private:
    void grow() { nextFree_.push_back(static_cast<uint32_t>(nextFree_.size())); }

    std::vector<bool> used_ = std::vector<bool>(2, true);
    std::vector<uint32_t> nextFree_{1, 2, 2};
};

// A state waiting for its children: it covers the sorted entries [lo, hi) that share its path
// of length `depth`, and `weight` is the lowest cost among them.
struct Pending {
    uint32_t state;
    size_t lo, hi, depth;
    uint16_t weight;
    uint64_t order;  // ties keep the order states were found in
    bool operator<(const Pending& o) const {
        return weight != o.weight ? weight > o.weight : order > o.order;
    }
};

// A child of a pending state: its character's code, its entries and their lowest cost.
struct Child {
    uint16_t code;
    size_t lo, hi;
    uint16_t weight;
};

// Builds the double-array trie: each state's children land at base + code on free slots.
class TriePlacer {
public:
    TriePlacer(const std::vector<WordEntry>& entries, const std::vector<uint16_t>& codeOf,
               WordReadings& readings)
        : entries_(entries), codeOf_(codeOf), readings_(readings) {}

    // States are given slots most frequent first, so the states that running text visits sit
    // together at the start of the table, where the processor's caches keep them.
    std::vector<State> place() {
        uint64_t found = 0;
        std::priority_queue<Pending> queue;
        queue.push({WordDictionary::kRoot, 0, entries_.size(), 0, 0, found++});
        while (!queue.empty()) {
            const Pending p = queue.top();
            queue.pop();
            collectChildren(p);
            if (children_.empty()) continue;
            const size_t base = findBase();
            states_[p.state].base = static_cast<uint32_t>(base);
            const size_t end = base + children_.back().code + 1;
            slots_.reserve(end);
            if (end > states_.size()) states_.resize(end);
            for (const Child& c : children_) {
                const size_t slot = base + c.code;
                slots_.take(slot);
                states_[slot].parentPlusOne = p.state + 1;
                queue.push(
                    {static_cast<uint32_t>(slot), c.lo, c.hi, p.depth + 1, c.weight, found++});
            }
        }
        return std::move(states_);
    }

private:
    // Records the word that ends at `p` (it sorts first among its entries) and gathers the
    // children of `p` in code order.
    void collectChildren(const Pending& p) {
        children_.clear();
        for (size_t i = p.lo; i < p.hi;) {
            if (entries_[i].word.size() <= p.depth) {
                const WordEntry& e = entries_[i];
                State& s = states_[p.state];
                s.word = true;
                s.cost = e.cost;
                s.readings = readings_.add(e);
                ++i;
                continue;
            }
            const char16_t label = entries_[i].word[p.depth];
            size_t j = i;
            uint16_t weight = kMaxWordCost;
            for (; j < p.hi && entries_[j].word[p.depth] == label; ++j) {
                weight = std::min(weight, entries_[j].cost);
            }
            children_.push_back({codeOf_[label], i, j, weight});
            i = j;
        }
        std::sort(children_.begin(), children_.end(),
                  [](const Child& a, const Child& b) { return a.code < b.code; });
    }

    // The lowest base from `searchFrom_` on at which every child lands on a free slot; the
    // first child's slot runs over the free slots only. Where the table is so full that a
    // search tries many bases, later searches start further on.
    size_t findBase() {
        size_t base = 0;
        size_t tries = 0;
        const size_t start = std::max(searchFrom_, children_.front().code + size_t{1});
        for (size_t slot = slots_.firstFreeFrom(start);; slot = slots_.firstFreeFrom(slot + 1)) {
            if (++tries == kCrowded) searchFrom_ = slot;
            base = slot - children_.front().code;
            bool fits = true;
            for (const Child& c : children_) {
                if (slots_.taken(base + c.code)) {
                    fits = false;
                    break;
                }
            }
            if (fits) break;
        }
        if (base > kMaxBase) throw FormatError("too many words for the state table");
        return base;
    }

    const std::vector<WordEntry>& entries_;
    const std::vector<uint16_t>& codeOf_;
    WordReadings& readings_;
    std::vector<State> states_ = std::vector<State>(1);
    SlotTable slots_;
    std::vector<Child> children_;
    size_t searchFrom_ = 2;
};

std::vector<uint8_t> writeWordFile(const CharacterCodes& codes, const std::vector<State>& states,
                                   WordReadings& readings) {
    std::vector<uint8_t> codeBytes, charBytes, stateBytes, readingBytes;
    for (uint16_t c : codes.codeOf) appendLe<uint16_t>(codeBytes, c);
    for (uint16_t c : codes.charOf) appendLe<uint16_t>(charBytes, c);
    for (const State& s : states) {
        const uint32_t up = s.parentPlusOne | (s.word ? WordDictionary::kWordBit : 0);
        appendLe<uint64_t>(stateBytes, uint64_t{up} << 32 | s.base << 11 | s.cost);
        appendLe<uint32_t>(readingBytes, s.readings);
    }
    ContainerWriter writer(std::string_view(kWordMagic, 8));
    readings.writeTo(writer);
    writer.addSection(kCodeSection, 2, std::move(codeBytes));
    writer.addSection(kCharSection, 2, std::move(charBytes));
    writer.addSection(kStateSection, 8, std::move(stateBytes));
    writer.addSection(kReadingSection, 4, std::move(readingBytes));
    writer.addSection(kLongReadingSection, 2, readings.takeLongReadings());
    return writer.finish();
}

}  // namespace

std::vector<uint8_t> compileWords(std::vector<WordEntry> entries) {
    sortAndCheck(entries);
    const CharacterCodes codes = codesByFrequency(entries);
    WordReadings readings;
    const std::vector<State> states = TriePlacer(entries, codes.codeOf, readings).place();
    return writeWordFile(codes, states, readings);
}

WordDictionary::WordDictionary(const uint8_t* data, size_t size)
    : file_(data, size, std::string_view(kWordMagic, 8)),
      syllables_(file_),
      codes_(file_.array<uint16_t>(kCodeSection)),
      chars_(file_.array<uint16_t>(kCharSection)),
      states_(file_.array<uint64_t>(kStateSection)),
      readings_(file_.array<uint32_t>(kReadingSection)),
      ids_(file_.array<uint16_t>(kLongReadingSection)) {
    if (codes_.size() != kUnits) throw FormatError("character code table has the wrong size");
    if (states_.size() == 0) throw FormatError("state section has no root");
    if (readings_.size() != states_.size()) {
        throw FormatError("reading section does not have one entry per state");
    }
}

std::vector<WordEntry> WordDictionary::toEntries() const {
    std::vector<WordEntry> out;
    for (size_t t = 1; t < states_.size(); ++t) {
        if (!isWord(static_cast<uint32_t>(t))) continue;
        // Climb to the root: each parent's base tells which code, so which character, led here.
        std::u16string path;
        for (size_t s = t; s != kRoot;) {
            const uint32_t up = parentPlusOne(states_.at(s));
            const uint64_t base =
                up == 0 ? 0 : static_cast<uint32_t>(states_.at(size_t{up} - 1)) >> 11;
            if (up == 0 || path.size() >= kMaxWordLength || base >= s ||
                s - base >= chars_.size()) {
                throw FormatError("state " + std::to_string(t) +
                                  " does not lead back to the root (a loop, a free slot, or a "
                                  "path longer than " +
                                  std::to_string(kMaxWordLength) + ")");
            }
            path.insert(path.begin(), static_cast<char16_t>(chars_.at(s - base)));
            s = up - 1;
        }
        WordEntry e{path, {}, cost(static_cast<uint32_t>(t))};
        for (size_t k = 0; k < path.size(); ++k) {
            const Syllable* r = reading(static_cast<uint32_t>(t), k);
            if (r == nullptr) {
                throw FormatError("word \"" + toUtf8(path) + "\" has a reading out of range");
            }
            e.readings.emplace_back(r->text());
        }
        out.push_back(std::move(e));
    }
    std::sort(out.begin(), out.end(),
              [](const WordEntry& a, const WordEntry& b) { return a.word < b.word; });
    return out;
}

}  // namespace zphonetic::tagger
