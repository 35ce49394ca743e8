// SPDX-License-Identifier: MIT
#include "OwnReadings.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

namespace zphonetic::tagger {
namespace {

// What a reader of standard error learns about a file that was read with problems.
std::string note(const std::string& path, const LoadedReadings& loaded) {
    if (!loaded.error.empty()) return path + ": " + loaded.error + ": none of it is read";
    const std::vector<ReadingsProblem>& problems = loaded.file.problems();
    if (problems.empty()) return {};
    const ReadingsProblem& first = problems.front();
    if (first.line == 0) return path + ": " + first.what() + ": none of it is read";
    std::string text = path + ": line " + std::to_string(first.line) + " skipped: " + first.what();
    if (problems.size() > 1) {
        const size_t more = problems.size() - 1;
        text += " (and " + std::to_string(more) + (more == 1 ? " more line)" : " more lines)");
    }
    return text;
}

}  // namespace

OwnReadings::OwnReadings(const ReadingsFile& file, Tones tones)
    : tones_(tones), pairs_(0x10000 / 64), singles_(0x10000 / 64) {
    std::vector<const OwnWord*> sorted;
    for (const OwnWord& w : file.words()) sorted.push_back(&w);
    std::stable_sort(sorted.begin(), sorted.end(), [](const OwnWord* a, const OwnWord* b) {
        if (a->word[0] != b->word[0]) return a->word[0] < b->word[0];
        return a->word.size() > b->word.size();
    });
    std::unordered_map<std::u16string, size_t> index;
    std::vector<size_t> ids;
    for (const OwnWord* w : sorted) {
        words_.add(w->word[0],
                   {static_cast<uint32_t>(text_.size()), static_cast<uint32_t>(ids.size()),
                    static_cast<uint32_t>(w->word.size())});
        text_ += w->word;
        if (w->word.size() == 1) {
            set(singles_, w->word[0]);
        } else {
            set(pairs_, pairKey(w->word[0], w->word[1]));
        }
        for (const std::u16string& r : w->readings) {
            const auto [it, added] = index.emplace(r, table_.size());
            if (added) table_.push_back(makeSyllable(r));
            ids.push_back(it->second);
        }
    }
    words_.finish();
    // The table is complete: pointers into it stay valid.
    readings_.reserve(ids.size());
    for (size_t id : ids) readings_.push_back(&table_[id]);
}

size_t OwnReadings::find(const char16_t* text, size_t n, size_t at,
                         const Syllable* const** syllables) const {
    const Word* w = nullptr;
    const Word* end = nullptr;
    words_.group(text[at], &w, &end);
    const size_t left = n - at;
    for (; w != end; ++w) {
        if (w->length > left) continue;
        // The first character is known to match; most words differ at the second.
        const char16_t* word = text_.data() + w->text;
        if (w->length > 1 &&
            (word[1] != text[at + 1] ||
             std::memcmp(word + 2, text + at + 2, (w->length - 2) * sizeof(char16_t)) != 0)) {
            continue;
        }
        *syllables = readings_.data() + w->syllables;
        return w->length;
    }
    return 0;
}

const Syllable* OwnReadings::single(char16_t c) const {
    const char16_t text[1] = {c};
    const Syllable* const* syllables = nullptr;
    return match(text, 1, 0, &syllables) == 1 ? syllables[0] : nullptr;
}

OwnReadingsSource::OwnReadingsSource(std::string path, Report report)
    : path_(std::move(path)), report_(std::move(report)), watch_(path_) {}

std::shared_ptr<const OwnReadings> OwnReadingsSource::current() {
    // Asked first: the watch is set before the file is looked at.
    const bool mayHaveChanged = watch_.mayHaveChanged();
    if (!read_ || (mayHaveChanged && stampOf(path_) != stamp_)) {
        LoadedReadings loaded = loadReadingsFile(path_);
        if (report_) {
            if (const std::string text = note(path_, loaded); !text.empty()) report_(text);
        }
        read_ = true;
        stamp_ = loaded.stamp;
        file_ = std::move(loaded.file);
        readings_.reset();
    }
    const std::optional<Tones> chosen = tonesFromEnvironment();
    const Tones tones = chosen ? *chosen : file_.tones();
    if (!readings_ || readings_->tones() != tones) {
        readings_ = std::make_shared<const OwnReadings>(file_, tones);
    }
    return readings_;
}

}  // namespace zphonetic::tagger
