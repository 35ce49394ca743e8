// SPDX-License-Identifier: MIT
#include "WordDictionary.h"

#include <algorithm>
#include <deque>

#include "TextLines.h"
#include "Utf16.h"

namespace zphonetic::tagger {
namespace {

constexpr uint32_t kRootSection = 3;
constexpr uint32_t kNodeSection = 4;
constexpr uint32_t kReadingSection = 5;
constexpr size_t kUnits = 0x10000;
// No word in any source is this long; a deeper path can only come from a damaged file.
constexpr size_t kMaxWordLength = 64;

}  // namespace

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
        char* end = nullptr;
        const unsigned long cost = std::strtoul(fields[2].c_str(), &end, 10);
        if (fields[2].empty() || *end != '\0' || cost > 0xFFFF) {
            throw lineError(lineNo, "cost \"" + fields[2] + "\" is not a number from 0 to 65535");
        }
        e.cost = static_cast<uint16_t>(cost);
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

std::vector<uint8_t> compileWords(std::vector<WordEntry> entries) {
    std::sort(entries.begin(), entries.end(),
              [](const WordEntry& a, const WordEntry& b) { return a.word < b.word; });
    for (size_t i = 0; i < entries.size(); ++i) {
        if (entries[i].word.empty() || entries[i].word.size() > kMaxWordLength ||
            entries[i].readings.size() != entries[i].word.size()) {
            throw FormatError("word \"" + toUtf8(entries[i].word) +
                              "\" is empty, too long, or lacks a reading per character");
        }
        if (i > 0 && entries[i].word == entries[i - 1].word) {
            throw FormatError("word \"" + toUtf8(entries[i].word) + "\" is listed twice");
        }
    }

    SyllableTableBuilder syllables;
    std::vector<uint8_t> readings;
    uint32_t readingCount = 0;
    std::vector<uint32_t> root(kUnits, 0);
    // Node 0 stays empty so that 0 can mean "none". Nodes are laid out breadth first, so the
    // children of each node get consecutive numbers. A pending node covers the sorted entries
    // [lo, hi) that share its path of length `depth`.
    struct Pending {
        uint32_t node;
        size_t lo, hi, depth;
    };
    std::vector<uint32_t> nodes(4, 0);
    std::deque<Pending> queue;
    auto addChildren = [&](size_t lo, size_t hi, size_t depth) -> std::pair<uint32_t, uint32_t> {
        const auto firstChild = static_cast<uint32_t>(nodes.size() / 4);
        uint32_t count = 0;
        size_t i = lo;
        while (i < hi) {
            if (entries[i].word.size() <= depth) {  // the parent's own word sorts first
                ++i;
                continue;
            }
            const char16_t label = entries[i].word[depth];
            size_t j = i;
            while (j < hi && entries[j].word[depth] == label) ++j;
            const auto node = static_cast<uint32_t>(nodes.size() / 4);
            nodes.insert(nodes.end(), {0, 0, WordDictionary::kNoWord, uint32_t{label} << 16});
            queue.push_back({node, i, j, depth + 1});
            if (depth == 0) root[label] = node;
            ++count;
            i = j;
        }
        return {count ? firstChild : 0, count};
    };
    addChildren(0, entries.size(), 0);
    while (!queue.empty()) {
        const Pending p = queue.front();
        queue.pop_front();
        const WordEntry& head = entries[p.lo];
        if (head.word.size() == p.depth) {
            nodes[4 * p.node + 2] = readingCount;
            nodes[4 * p.node + 3] |= head.cost;
            for (const std::u16string& r : head.readings) {
                appendLe<uint16_t>(readings, syllables.add(r));
                ++readingCount;
            }
        }
        const auto [firstChild, count] = addChildren(p.lo, p.hi, p.depth);
        nodes[4 * p.node] = firstChild;
        nodes[4 * p.node + 1] = count;
    }

    std::vector<uint8_t> rootBytes;
    for (uint32_t n : root) appendLe<uint32_t>(rootBytes, n);
    std::vector<uint8_t> nodeBytes;
    for (uint32_t v : nodes) appendLe<uint32_t>(nodeBytes, v);
    ContainerWriter writer(std::string_view(kWordMagic, 8));
    syllables.writeTo(writer);
    writer.addSection(kRootSection, 4, std::move(rootBytes));
    writer.addSection(kNodeSection, 4, std::move(nodeBytes));
    writer.addSection(kReadingSection, 2, std::move(readings));
    return writer.finish();
}

WordDictionary::WordDictionary(const uint8_t* data, size_t size)
    : file_(data, size, std::string_view(kWordMagic, 8)),
      syllables_(file_),
      root_(file_.array<uint32_t>(kRootSection)),
      nodes_(file_.array<uint32_t>(kNodeSection)),
      ids_(file_.array<uint16_t>(kReadingSection)) {
    if (root_.size() != kUnits) throw FormatError("first-character table has the wrong size");
    if (nodes_.size() % 4 != 0) throw FormatError("node section is not whole nodes");
}

uint32_t WordDictionary::child(uint32_t node, char16_t c) const {
    const size_t base = 4 * size_t{node};
    size_t lo = nodes_.at(base);
    size_t hi = lo + nodes_.at(base + 1);
    // Binary search over the children's labels; reads past the nodes come back as 0 and fail.
    while (lo < hi) {
        const size_t mid = lo + (hi - lo) / 2;
        const auto label = static_cast<char16_t>(nodes_.at(4 * mid + 3) >> 16);
        if (label < c) {
            lo = mid + 1;
        } else if (label > c) {
            hi = mid;
        } else {
            return 4 * mid < nodes_.size() ? static_cast<uint32_t>(mid) : 0;
        }
    }
    return 0;
}

std::vector<WordEntry> WordDictionary::toEntries() const {
    std::vector<WordEntry> out;
    const size_t nodeCount = nodes_.size() / 4;
    size_t visits = 0;
    std::u16string path;
    // Depth-first in label order gives the words sorted. A sound trie visits each node once.
    struct Frame {
        uint32_t next, end;
    };
    std::vector<Frame> stack;
    auto enter = [&](uint32_t node) {
        if (++visits > nodeCount || path.size() > kMaxWordLength) {
            throw FormatError("the word trie has a cycle or a path longer than " +
                              std::to_string(kMaxWordLength));
        }
        if (isWord(node)) {
            WordEntry e{path, {}, cost(node)};
            for (size_t k = 0; k < path.size(); ++k) {
                const Syllable* s = reading(node, k);
                if (s == nullptr) {
                    throw FormatError("word \"" + toUtf8(path) + "\" has a reading out of range");
                }
                e.readings.push_back(s->text);
            }
            out.push_back(std::move(e));
        }
        const uint32_t firstChild = nodes_.at(4 * size_t{node});
        stack.push_back({firstChild, firstChild + nodes_.at(4 * size_t{node} + 1)});
    };
    for (uint32_t c = 0; c < kUnits; ++c) {
        const uint32_t node = root_.at(c);
        if (node == 0) continue;
        path.assign(1, static_cast<char16_t>(c));
        enter(node);
        while (!stack.empty()) {
            Frame& f = stack.back();
            if (f.next >= f.end) {
                stack.pop_back();
                path.pop_back();
                continue;
            }
            const uint32_t node = f.next++;
            path.push_back(static_cast<char16_t>(nodes_.at(4 * size_t{node} + 3) >> 16));
            enter(node);
        }
    }
    return out;
}

}  // namespace zphonetic::tagger
