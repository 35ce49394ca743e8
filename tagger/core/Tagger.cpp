// SPDX-License-Identifier: MIT
#include "Tagger.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace zphonetic::tagger {
namespace {

// A character that is no word of the dictionary still makes a path, at a cost above any word's,
// so that the graph always has a way through.
constexpr uint32_t kLoneCharCost = kMaxWordCost + 128;
// Longer paths cannot occur: words are at most 64 units, and length_ stores up to 255.
constexpr size_t kMaxWordLength = 255;

// alone_ of a character in a word of the teacher's: nothing changes its reading.
constexpr uint8_t kOwn = 3;

constexpr char16_t kYi = u'一';
constexpr char16_t kBu = u'不';

const Syllable kYiFirst = makeSyllable(u"yī");
const Syllable kYiSecond = makeSyllable(u"yí");
const Syllable kYiFourth = makeSyllable(u"yì");
const Syllable kYiNeutral = makeSyllable(u"yi");
const Syllable kBuSecond = makeSyllable(u"bú");
const Syllable kBuFourth = makeSyllable(u"bù");
const Syllable kBuNeutral = makeSyllable(u"bu");

}  // namespace

Tagger::Tagger(std::shared_ptr<const Dictionaries> dictionaries,
               std::shared_ptr<const OwnReadings> own)
    : dicts_(std::move(dictionaries)), own_(std::move(own)) {}

void Tagger::segment(const char16_t* text, size_t n) {
    const WordDictionary& words = dicts_->words();
    cost_.resize(n + 1);
    node_.resize(n);
    length_.resize(n);
    cost_[n] = 0;
    // Best path from each position to the end, computed right to left; on equal cost the longer
    // word wins.
    for (size_t i = n; i-- > 0;) {
        uint32_t best = kLoneCharCost + cost_[i + 1];
        uint32_t bestNode = 0;
        size_t bestLength = 1;
        uint32_t node = words.next(WordDictionary::kRoot, text[i]);
        for (size_t j = i; node != 0;) {
            if (words.isWord(node)) {
                const uint32_t c = words.cost(node) + cost_[j + 1];
                if (c <= best) {
                    best = c;
                    bestNode = node;
                    bestLength = j - i + 1;
                }
            }
            if (++j >= n || j - i >= kMaxWordLength) break;
            node = words.next(node, text[j]);
        }
        cost_[i] = best;
        node_[i] = bestNode;
        length_[i] = static_cast<uint8_t>(bestLength);
    }

    // Which characters the best path puts inside a word of two or more: the rules read it, on
    // both sides of the character they decide, and it is worked out only where they do.
    inWord_.resize(n);
    PathWords path(length_.data(), n, inWord_.data());

    // Left to right along the best path: readings from the words, unless a rule overrides a
    // character's reading inside its word; for a character that is a word of its own the first
    // matching context rule, else its default.
    const CharDictionary& chars = dicts_->chars();
    const RuleDictionary& rules = dicts_->rules();
    readings_.resize(n);
    alone_.assign(n, 0);  // inside a word, unless set below
    toneChanges_.clear();
    for (size_t i = 0; i < n;) {
        const size_t len = length_[i];
        if (len > 1) {
            words.readWord(node_[i], len, &readings_[i]);
            // 不 opening a word may still sit between a repeated verb (对/不对).
            if (text[i] == kBu) toneChanges_.push_back(i);
            // Most words have no character with "=" rules: find the first that has, if any.
            const char16_t* const end = text + i + len;
            const char16_t* c = text + i;
            while (c != end && !rules.hasWordRules(*c)) ++c;
            if (c != end) overrideInWord(text, n, i, len, static_cast<size_t>(c - text) - i, path);
            i += len;
            continue;
        }
        const Syllable* rule =
            rules.hasRules(text[i]) ? rules.match(text, path, n, i, false) : nullptr;
        if (rule != nullptr) {
            readings_[i] = rule;
            alone_[i] = 2;  // settled by a rule: no tone change
        } else {
            const Syllable* own = node_[i] != 0 ? words.reading(node_[i], 0) : nullptr;
            readings_[i] = own != nullptr ? own : chars.reading(text[i], 0);
            alone_[i] = 1;
            if (text[i] == kYi || text[i] == kBu) toneChanges_.push_back(i);
        }
        ++i;
    }
}

void Tagger::overrideInWord(const char16_t* text, size_t n, size_t word, size_t len, size_t k,
                            PathWords& path) {
    const RuleDictionary& rules = dicts_->rules();
    for (; k < len; ++k) {
        const size_t at = word + k;
        const Syllable* r =
            rules.hasWordRules(text[at]) ? rules.match(text, path, n, at, true) : nullptr;
        if (r == nullptr) continue;
        readings_[at] = r;
        // 不 changes tone again by the reading the rule gave the syllable after it (不应 bù
        // yīng, but 都不应 bú yìng).
        if (k > 0 && text[at - 1] == kBu) {
            alone_[at - 1] = 1;
            if (k > 1) toneChanges_.push_back(at - 1);  // opening the word, it is listed already
        }
    }
}

void Tagger::takeOwnReadings(const char16_t* text, size_t n) {
    // Left to right, the longest word of the teacher's at each place; a word inside one taken is
    // not looked for.
    for (size_t i = 0; i < n;) {
        const Syllable* const* syllables = nullptr;
        const size_t len = own_->match(text, n, i, &syllables);
        if (len == 0) {
            ++i;
            continue;
        }
        for (size_t k = 0; k < len; ++k) {
            readings_[i + k] = syllables[k];
            alone_[i + k] = kOwn;
        }
        i += len;
    }
}

void Tagger::changeTones(const char16_t* text, size_t n) {
    // Right to left, so that 一 before 不 sees 不 already changed.
    for (auto it = toneChanges_.rbegin(); it != toneChanges_.rend(); ++it) {
        const size_t i = *it;
        if (alone_[i] == kOwn) continue;
        const char16_t c = text[i];
        const bool last = i + 1 == n;
        // A verb repeated around it (看一看, 对不对) leaves it unstressed. 不 gets this even
        // where the word dictionary joined it to the second verb (对/不对), but not inside a
        // longer word that reads it already (一动不动).
        const bool between = !last && i > 0 && text[i - 1] == text[i + 1] && text[i + 1] != c;
        if (between && (alone_[i] == 1 || c == kBu)) {
            readings_[i] = c == kYi ? &kYiNeutral : &kBuNeutral;
            continue;
        }
        if (alone_[i] != 1) continue;
        const Syllable* next = last ? nullptr : readings_[i + 1];
        if (c == kYi) {
            if (next == nullptr) {
                readings_[i] = &kYiFirst;
            } else {
                readings_[i] = next->tone == 4 || next->tone == 5 ? &kYiSecond : &kYiFourth;
            }
        } else {
            readings_[i] = next != nullptr && next->tone == 4 ? &kBuSecond : &kBuFourth;
        }
    }
}

void Tagger::writeOriginalTones(const char16_t* text, size_t n) {
    // The tone changes come from the words' readings, the rules and changeTones alike: taken
    // back here, at the end, whatever made them.
    for (size_t i = 0; i < n; ++i) {
        const Syllable* r = readings_[i];
        if (r == nullptr || alone_[i] == kOwn) continue;
        if (text[i] == kYi && (r->tone == 2 || r->tone == 4)) readings_[i] = &kYiFirst;
        if (text[i] == kBu && r->tone == 2) readings_[i] = &kBuFourth;
    }
}

const std::vector<const Syllable*>& Tagger::readings(const char16_t* text, size_t length) {
    segment(text, length);
    if (own_ && own_->hasWords()) takeOwnReadings(text, length);
    changeTones(text, length);
    if (own_ && own_->tones() == Tones::Original) writeOriginalTones(text, length);
    refuseDamage();
    return readings_;
}

void Tagger::refuseDamage() const {
    // What a damaged block gave was read as nothing; the readings made of it must not stand.
    if (dicts_->damaged()) throw FormatError(dicts_->damage());
}

char16_t* Tagger::answer(const char16_t* text, size_t length, size_t& answerLength) {
    char16_t* out = nullptr;
    if (length == 1) {
        const CharDictionary& chars = dicts_->chars();
        const size_t count = chars.count(text[0]);
        // The teacher's reading of the character comes first, and is not given twice.
        const Syllable* own = own_ ? own_->single(text[0]) : nullptr;
        size_t total = 2 + (own != nullptr ? own->text().size() + 1 : 0);
        for (size_t k = 0; k < count; ++k) {
            if (const Syllable* s = chars.reading(text[0], k)) total += s->text().size() + 1;
        }
        refuseDamage();
        out = new char16_t[total + 1];
        char16_t* p = out;
        *p++ = text[0];
        *p++ = u'/';
        if (own != nullptr) p = std::copy(own->units, own->units + own->size, p);
        for (size_t k = 0; k < count; ++k) {
            const Syllable* s = chars.reading(text[0], k);
            if (s == nullptr || (own != nullptr && s->text() == own->text())) continue;
            if (p != out + 2) *p++ = u' ';
            p = std::copy(s->units, s->units + s->size, p);
        }
        *p = 0;
        answerLength = static_cast<size_t>(p - out);
        return out;
    }

    readings(text, length);
    size_t total = 2 * length;
    for (const Syllable* s : readings_) total += s != nullptr ? s->size : 0;
    // Each reading is copied as a whole block of kSyllableUnits units and the end moved back to
    // its length; the spare units at the end of the buffer take the last block's overhang.
    out = new char16_t[total + kSyllableUnits + 1];
    char16_t* p = out;
    for (size_t i = 0; i < length; ++i) {
        *p++ = text[i];
        *p++ = u'/';
        if (const Syllable* s = readings_[i]) {
            std::memcpy(p, s->units, sizeof s->units);
            p += s->size;
        }
    }
    *p = 0;
    answerLength = total;
    return out;
}

}  // namespace zphonetic::tagger
