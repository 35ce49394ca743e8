// SPDX-License-Identifier: MIT
#include "Tagger.h"

#include <algorithm>
#include <new>

namespace zphonetic::tagger {
namespace {

// A character that is no word of the dictionary still makes a path, at a cost above any word's,
// so that the graph always has a way through.
constexpr uint32_t kLoneCharCost = 0xFFFF + 2000;
// Longer paths cannot occur: words are at most 64 units, and length_ stores up to 255.
constexpr size_t kMaxWordLength = 255;

constexpr char16_t kYi = u'一';
constexpr char16_t kBu = u'不';

const Syllable kYiFirst{u"yī", 1};
const Syllable kYiSecond{u"yí", 2};
const Syllable kYiFourth{u"yì", 4};
const Syllable kYiNeutral{u"yi", 5};
const Syllable kBuSecond{u"bú", 2};
const Syllable kBuFourth{u"bù", 4};
const Syllable kBuNeutral{u"bu", 5};

}  // namespace

Tagger::Tagger(std::shared_ptr<const Dictionaries> dictionaries)
    : dicts_(std::move(dictionaries)) {}

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
        uint32_t node = words.first(text[i]);
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
            node = words.child(node, text[j]);
        }
        cost_[i] = best;
        node_[i] = bestNode;
        length_[i] = static_cast<uint8_t>(bestLength);
    }

    const CharDictionary& chars = dicts_->chars();
    readings_.assign(n, nullptr);
    alone_.assign(n, 0);
    for (size_t i = 0; i < n;) {
        const size_t len = length_[i];
        if (len > 1) {
            for (size_t k = 0; k < len; ++k) readings_[i + k] = words.reading(node_[i], k);
        } else {
            alone_[i] = 1;
            const Syllable* own = node_[i] != 0 ? words.reading(node_[i], 0) : nullptr;
            readings_[i] = own != nullptr ? own : chars.reading(text[i], 0);
        }
        i += len;
    }
}

void Tagger::applyRules(const char16_t* text, size_t n) {
    const RuleDictionary& rules = dicts_->rules();
    for (size_t i = 0; i < n; ++i) {
        if (!alone_[i] || !rules.hasRules(text[i])) continue;
        if (const Syllable* s = rules.match(text, n, i)) {
            readings_[i] = s;
            alone_[i] = 2;  // settled by a rule: no tone change
        }
    }
}

void Tagger::changeTones(const char16_t* text, size_t n) {
    // Right to left, so that 一 before 不 sees 不 already changed.
    for (size_t i = n; i-- > 0;) {
        const char16_t c = text[i];
        if (alone_[i] == 2 || (c != kYi && c != kBu)) continue;
        const bool last = i + 1 == n;
        // A verb repeated around it (看一看, 对不对) leaves it unstressed. 不 gets this even
        // where the word dictionary joined it to the second verb (对/不对).
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

const std::vector<const Syllable*>& Tagger::readings(const char16_t* text, size_t length) {
    segment(text, length);
    applyRules(text, length);
    changeTones(text, length);
    return readings_;
}

char16_t* Tagger::answer(const char16_t* text, size_t length, size_t& answerLength) {
    char16_t* out = nullptr;
    if (length == 1) {
        const CharDictionary& chars = dicts_->chars();
        const size_t count = chars.count(text[0]);
        size_t total = 2;
        for (size_t k = 0; k < count; ++k) {
            if (const Syllable* s = chars.reading(text[0], k)) total += s->text.size() + 1;
        }
        out = new char16_t[total + 1];
        char16_t* p = out;
        *p++ = text[0];
        *p++ = u'/';
        for (size_t k = 0; k < count; ++k) {
            const Syllable* s = chars.reading(text[0], k);
            if (s == nullptr) continue;
            if (p != out + 2) *p++ = u' ';
            p = std::copy(s->text.begin(), s->text.end(), p);
        }
        *p = 0;
        answerLength = static_cast<size_t>(p - out);
        return out;
    }

    readings(text, length);
    size_t total = 2 * length;
    for (const Syllable* s : readings_) total += s != nullptr ? s->text.size() : 0;
    out = new char16_t[total + 1];
    char16_t* p = out;
    for (size_t i = 0; i < length; ++i) {
        *p++ = text[i];
        *p++ = u'/';
        if (const Syllable* s = readings_[i]) p = std::copy(s->text.begin(), s->text.end(), p);
    }
    *p = 0;
    answerLength = total;
    return out;
}

}  // namespace zphonetic::tagger
