// SPDX-License-Identifier: MIT
// pinyin-learn: learns context rules from the annotated corpus for the polyphones that the word
// dictionary leaves on their own, and prints them in the rule dictionary's text form.
//
// For each such character it learns a decision list: rules on the neighbouring characters
// ("甲_", "_乙", "甲乙_", "_甲乙", "甲_乙"), each kept only when it fixes at least --min-gain more
// training sentences than it breaks, best first; then an unconditional rule ("_") when another
// reading beats the engine's default by --min-gain, except for the most frequent characters: for
// them one corpus's style is no ground to overrule the word dictionary everywhere (the corpus's
// 为 is mostly wéi, ordinary prose's mostly wèi), so the grammar decides them. The learner sees
// the hand-written grammar applied, so it never learns where the grammar decides. With
// --holdout it learns on one half of the corpus and measures on the other, both ways round,
// instead of printing rules.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "Corpus.h"
#include "Tagger.h"
#include "Utf16.h"

using namespace zphonetic::tagger;

namespace {

constexpr char kUsage[] =
    "usage: pinyin-learn --corpus DIR --dict-dir DIR --rules secrule.txt [--min-gain N] "
    "[--holdout]\n"
    "Prints context rules learnt from DIR/dev.sent + DIR/dev.lb on top of the rules in\n"
    "secrule.txt, using Pinyin.dic and firrule.dic from --dict-dir. --holdout prints two-fold\n"
    "held-out accuracy instead.\n";

std::vector<uint8_t> readBytes(const std::string& path) {
    FILE* f = std::fopen(path.c_str(), "rb");
    if (f == nullptr) throw FormatError(path + ": cannot open");
    std::vector<uint8_t> bytes;
    uint8_t buffer[1 << 16];
    size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, f)) > 0)
        bytes.insert(bytes.end(), buffer, buffer + n);
    std::fclose(f);
    return bytes;
}

std::string readText(const std::string& path) {
    const std::vector<uint8_t> bytes = readBytes(path);
    return std::string(bytes.begin(), bytes.end());
}

struct Instance {
    char16_t target;
    std::string label;                     // tone numbers, as in the corpus
    std::u16string reading;                // the corpus label as a syllable of the dictionaries
    std::u16string engine;                 // what the engine says without learnt rules
    std::vector<std::u16string> patterns;  // context patterns around the target
};

// A character whose cost as a word of its own is below this is among the few hundred most
// frequent: no unconditional rule is learnt for it.
constexpr uint16_t kVeryCommonCost = 450;

struct Learnt {
    char16_t target;
    std::u16string reading;
    std::u16string pattern;
};

std::vector<std::u16string> contextPatterns(const std::u16string& t, size_t i) {
    std::vector<std::u16string> out;
    const bool hasPrev = i > 0, hasPrev2 = i > 1, hasNext = i + 1 < t.size(),
               hasNext2 = i + 2 < t.size();
    if (hasPrev) out.push_back(t.substr(i - 1, 1) + u"_");
    if (hasNext) out.push_back(u"_" + t.substr(i + 1, 1));
    if (hasPrev2) out.push_back(t.substr(i - 2, 2) + u"_");
    if (hasNext2) out.push_back(u"_" + t.substr(i + 1, 2));
    if (hasPrev && hasNext) out.push_back(t.substr(i - 1, 1) + u"_" + t.substr(i + 1, 1));
    return out;
}

class Learner {
public:
    Learner(const std::string& dictDir, const std::string& rulesText)
        : chars_(readBytes(dictDir + "/Pinyin.dic")),
          words_(readBytes(dictDir + "/firrule.dic")),
          handRules_(parseRuleText(rulesText)) {}

    std::shared_ptr<const Dictionaries> dictionaries(const std::vector<Learnt>& learnt) const {
        RuleSet rules = handRules_;
        for (const Learnt& l : learnt) {
            std::vector<RuleElement> pattern;
            for (char16_t c : l.pattern) {
                pattern.push_back(c == u'_' ? RuleElement{RuleElement::kTarget, 0}
                                            : RuleElement{RuleElement::kChar, c});
            }
            rules.rules.push_back({l.target, l.reading, std::move(pattern)});
        }
        return std::make_shared<const Dictionaries>(chars_, words_, compileRules(rules));
    }

    // The open instances (labelled character left on its own, no rule) of these sentences.
    std::vector<Instance> instances(const std::vector<const LabelledSentence*>& sentences) const {
        Tagger tagger(dictionaries({}));
        const auto dicts = dictionaries({});
        std::vector<Instance> out;
        for (const LabelledSentence* s : sentences) {
            const auto& readings = tagger.readings(s->text.c_str(), s->text.size());
            if (!tagger.isOpen(s->target) || readings[s->target] == nullptr) continue;
            Instance in{s->text[s->target],
                        s->label,
                        {},
                        std::u16string(readings[s->target]->text()),
                        contextPatterns(s->text, s->target)};
            // The label spelt as the dictionaries spell it, found among the character's readings.
            for (size_t k = 0; k < dicts->chars().count(in.target); ++k) {
                const Syllable* r = dicts->chars().reading(in.target, k);
                if (r != nullptr && numberedSyllable(r->text()) == in.label) in.reading = r->text();
            }
            if (!in.reading.empty()) out.push_back(std::move(in));
        }
        return out;
    }

    std::vector<Learnt> learn(const std::vector<Instance>& all, int minGain) const {
        std::map<char16_t, std::vector<const Instance*>> byChar;
        for (const Instance& in : all) byChar[in.target].push_back(&in);
        std::vector<Learnt> out;
        for (auto& [c, list] : byChar) {
            // The default first: what the character's last rule will say.
            std::map<std::u16string, int> counts;
            for (const Instance* in : list) ++counts[in->reading];
            const std::u16string engine = list.front()->engine;
            std::u16string fallback = engine;
            for (const auto& [r, n] : counts) {
                if (n - counts[fallback] >= minGain && n > counts[fallback]) fallback = r;
            }
            if (veryCommon(c)) fallback = engine;
            // Then context rules, greedily, over the instances no earlier rule covers.
            std::vector<const Instance*> open = list;
            std::vector<Learnt> rules;
            for (;;) {
                std::map<std::pair<std::u16string, std::u16string>, int> gain;
                for (const Instance* in : open) {
                    for (const std::u16string& p : in->patterns) {
                        if (in->reading != fallback) gain[{p, in->reading}] += 1;
                    }
                }
                // A rule's gain: sentences it fixes minus sentences it breaks.
                for (auto& [key, g] : gain) {
                    for (const Instance* in : open) {
                        if (in->reading == fallback &&
                            std::find(in->patterns.begin(), in->patterns.end(), key.first) !=
                                in->patterns.end()) {
                            --g;
                        }
                    }
                }
                auto best = std::max_element(gain.begin(), gain.end(),
                                             [](auto& a, auto& b) { return a.second < b.second; });
                if (best == gain.end() || best->second < minGain) break;
                rules.push_back({c, best->first.second, best->first.first});
                open.erase(std::remove_if(open.begin(), open.end(),
                                          [&](const Instance* in) {
                                              return std::find(
                                                         in->patterns.begin(), in->patterns.end(),
                                                         best->first.first) != in->patterns.end();
                                          }),
                           open.end());
            }
            out.insert(out.end(), rules.begin(), rules.end());
            if (fallback != engine || !rules.empty()) {
                if (fallback != engine) out.push_back({c, fallback, u"_"});
            }
        }
        return out;
    }

    // Share of these sentences whose labelled character gets the label.
    double accuracy(const std::vector<const LabelledSentence*>& sentences,
                    const std::vector<Learnt>& learnt) const {
        Tagger tagger(dictionaries(learnt));
        size_t right = 0;
        for (const LabelledSentence* s : sentences) {
            const auto& readings = tagger.readings(s->text.c_str(), s->text.size());
            const Syllable* r = readings[s->target];
            right += r != nullptr && numberedSyllable(r->text()) == s->label;
        }
        return sentences.empty() ? 0 : 100.0 * right / sentences.size();
    }

private:
    bool veryCommon(char16_t c) const {
        const WordDictionary words(words_.data(), words_.size());
        const uint32_t state = words.next(WordDictionary::kRoot, c);
        return state != 0 && words.isWord(state) && words.cost(state) < kVeryCommonCost;
    }

    std::vector<uint8_t> chars_;
    std::vector<uint8_t> words_;
    RuleSet handRules_;
};

}  // namespace

int main(int argc, char** argv) {
    std::string corpus, dictDir, rulesPath;
    int minGain = 2;
    bool holdout = false;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--corpus" && i + 1 < argc) {
            corpus = argv[++i];
        } else if (arg == "--dict-dir" && i + 1 < argc) {
            dictDir = argv[++i];
        } else if (arg == "--rules" && i + 1 < argc) {
            rulesPath = argv[++i];
        } else if (arg == "--min-gain" && i + 1 < argc) {
            minGain = std::atoi(argv[++i]);
        } else if (arg == "--holdout") {
            holdout = true;
        } else {
            std::fputs(kUsage, arg == "--help" ? stdout : stderr);
            return arg == "--help" ? 0 : 2;
        }
    }
    if (corpus.empty() || dictDir.empty() || rulesPath.empty()) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    std::vector<LabelledSentence> sentences;
    std::string error;
    if (!readCorpus(corpus, sentences, error)) {
        std::fprintf(stderr, "pinyin-learn: %s\n", error.c_str());
        return 1;
    }
    try {
        const Learner learner(dictDir, readText(rulesPath));
        if (!holdout) {
            std::vector<const LabelledSentence*> all;
            for (const LabelledSentence& s : sentences) all.push_back(&s);
            const std::vector<Learnt> rules = learner.learn(learner.instances(all), minGain);
            std::printf(
                "# SPDX-License-Identifier: MIT\n"
                "# Context rules learnt from the CPP corpus (dev split) by\n"
                "#   pinyin-learn --corpus DIR --dict-dir DIR --rules secrule.txt --min-gain %d\n"
                "# Do not edit: run that command again (see bench/PERFORMANCE.md).\n",
                minGain);
            for (const Learnt& l : rules) {
                std::printf("rule\t%s\t%s\t%s\n", toUtf8(std::u16string(1, l.target)).c_str(),
                            toUtf8(l.reading).c_str(), toUtf8(l.pattern).c_str());
            }
            return 0;
        }
        // Two folds: the sentences of even and of odd lines.
        std::vector<const LabelledSentence*> fold[2];
        for (const LabelledSentence& s : sentences) fold[(s.line - 1) / 10 % 2].push_back(&s);
        double sum = 0;
        for (int f = 0; f < 2; ++f) {
            const auto rules = learner.learn(learner.instances(fold[f]), minGain);
            const double before = learner.accuracy(fold[1 - f], {});
            const double after = learner.accuracy(fold[1 - f], rules);
            std::printf(
                "learn on fold %d (%zu sentences, %zu rules), measure on fold %d: %.2f%% -> "
                "%.2f%%\n",
                f, fold[f].size(), rules.size(), 1 - f, before, after);
            sum += after;
        }
        std::printf("two-fold held-out accuracy: %.2f%%\n", sum / 2);
    } catch (const FormatError& e) {
        std::fprintf(stderr, "pinyin-learn: %s\n", e.what());
        return 1;
    }
    return 0;
}
