// SPDX-License-Identifier: MIT
#include "WordPatch.h"

#include <set>
#include <unordered_map>

#include "TextLines.h"
#include "Utf16.h"

namespace zphonetic::tagger {

size_t fuseErhua(std::vector<WordEntry>& words) {
    size_t changed = 0;
    for (WordEntry& e : words) {
        bool fused = false;
        for (size_t i = 1; i < e.word.size(); ++i) {
            if (e.word[i] == u'儿' && e.readings[i] == u"er") {
                // Not `= u"r"`: GCC 12 warns wrongly (-Wrestrict) on a literal assigned here.
                e.readings[i].assign(1, u'r');
                fused = true;
            }
        }
        changed += fused ? 1 : 0;
    }
    return changed;
}

size_t applyWordPatch(std::vector<WordEntry>& words, const std::string& patchText) {
    std::unordered_map<std::u16string, size_t> index;
    index.reserve(words.size());
    for (size_t i = 0; i < words.size(); ++i) index.emplace(words[i].word, i);
    std::set<std::u16string> seen;
    size_t changed = 0;
    forEachLine(patchText, [&](size_t lineNo, const std::vector<std::string>& f) {
        if (f.size() != 2 && f.size() != 3) {
            throw lineError(lineNo, "expected a word, its readings and perhaps a cost");
        }
        WordEntry e;
        e.word = toUtf16(f[0]);
        e.readings = splitSyllables(lineNo, f[1]);
        if (e.word.empty() || e.readings.size() != e.word.size()) {
            throw lineError(lineNo, "\"" + f[0] + "\" needs one reading per character");
        }
        if (!seen.insert(e.word).second) throw lineError(lineNo, "\"" + f[0] + "\" given twice");
        const auto it = index.find(e.word);
        if (f.size() == 3) {
            e.cost = parseWordCost(lineNo, f[2]);
        } else if (it == index.end()) {
            throw lineError(lineNo, "\"" + f[0] + "\" is not in the source: give it a cost");
        } else {
            e.cost = words[it->second].cost;
        }
        if (it == index.end()) {
            index.emplace(e.word, words.size());
            words.push_back(std::move(e));
        } else if (words[it->second].readings == e.readings && words[it->second].cost == e.cost) {
            throw lineError(lineNo, "\"" + f[0] + "\" reads so already");
        } else {
            words[it->second] = std::move(e);
        }
        ++changed;
    });
    return changed;
}

}  // namespace zphonetic::tagger
