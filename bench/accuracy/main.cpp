// SPDX-License-Identifier: MIT
// pinyin-accuracy: the share of corpus sentences whose labelled polyphone gets the labelled
// reading from the tagging library (tones compared as numbers, neutral = 5), called through its
// ABI with text filtered the way the add-on filters it.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

#include "Corpus.h"
#include "PinyinTagger.h"
#include "Syllables.h"
#include "Utf16.h"

using zphonetic::tagger::numberedSyllable;
using zphonetic::tagger::toUtf16;
using zphonetic::tagger::toUtf8;

namespace {

// Exit status that ctest reads as "skipped".
constexpr int kSkipped = 77;

constexpr char kUsage[] =
    "usage: pinyin-accuracy --corpus DIR --dict-dir DIR [--min PERCENT] [--errors]\n"
    "Prints the accuracy of the tagging library on DIR/dev.sent + DIR/dev.lb.\n"
    "Exit status: 0 at or above --min (default 0), 1 below it or on failure, 77 when the corpus\n"
    "is absent.\n";

// The reading of answer character `index`, as the add-on parses the answer.
std::u16string readingAt(const std::u16string& answer, size_t index) {
    size_t p = 0;
    for (size_t i = 0;; ++i) {
        if (p + 1 >= answer.size() || answer[p + 1] != u'/') return {};
        size_t end = answer.find(u'/', p + 2);
        end = end == std::u16string::npos ? answer.size() : end - 1;
        if (i == index) return answer.substr(p + 2, end - p - 2);
        p = end;
    }
}

}  // namespace

int main(int argc, char** argv) {
    std::string corpus, dictDir;
    double minimum = 0;
    bool showErrors = false;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--corpus" && i + 1 < argc) {
            corpus = argv[++i];
        } else if (arg == "--dict-dir" && i + 1 < argc) {
            dictDir = argv[++i];
        } else if (arg == "--min" && i + 1 < argc) {
            minimum = std::atof(argv[++i]);
        } else if (arg == "--errors") {
            showErrors = true;
        } else {
            std::fputs(kUsage, arg == "--help" ? stdout : stderr);
            return arg == "--help" ? 0 : 1;
        }
    }
    if (corpus.empty() || dictDir.empty()) {
        std::fputs(kUsage, stderr);
        return 1;
    }
    std::vector<LabelledSentence> sentences;
    std::string error;
    if (!readCorpus(corpus, sentences, error)) {
        std::printf("pinyin-accuracy: %s; skipping\n", error.c_str());
        return kSkipped;
    }

    const std::u16string dir = toUtf16(dictDir + "/");
    LoadPinYinLibrary(nullptr);
    if (OpenDictionary((dir + u"Pinyin.dic").c_str(), (dir + u"firrule.dic").c_str(),
                       (dir + u"secrule.dic").c_str()) != 0) {
        std::fprintf(stderr, "pinyin-accuracy: cannot open the dictionaries in %s\n",
                     dictDir.c_str());
        return 1;
    }
    void* tagger = nullptr;
    if (GetPinyinObject(&tagger) != 0) return 1;

    size_t correct = 0;
    std::map<std::string, std::pair<size_t, size_t>> byChar;  // character -> (wrong, total)
    for (const LabelledSentence& s : sentences) {
        char16_t* answer = nullptr;
        int32_t length = 0;
        std::string got;
        if (PinyinTagSen(tagger, s.text.c_str(), &answer, &length) == 0) {
            const std::u16string reading =
                readingAt(std::u16string(answer, static_cast<size_t>(length)), s.target);
            // A lone character answers all its readings; the first is the default.
            got = numberedSyllable(reading.substr(0, reading.find(u' ')));
            delete[] answer;
        }
        const bool ok = got == s.label;
        correct += ok;
        auto& counts = byChar[toUtf8(s.text.substr(s.target, 1))];
        counts.first += !ok;
        ++counts.second;
        if (!ok && showErrors) {
            std::printf("line %zu\t%s\tgot %s\twant %s\t%s\n", s.line,
                        toUtf8(s.text.substr(s.target, 1)).c_str(), got.c_str(), s.label.c_str(),
                        toUtf8(s.text).c_str());
        }
    }
    ReleasePinyinObject(tagger);
    CloseDictionary();

    const double accuracy = sentences.empty() ? 0 : 100.0 * correct / sentences.size();
    std::printf("pinyin-accuracy: %zu of %zu sentences right: %.2f%% (minimum %.2f%%)\n", correct,
                sentences.size(), accuracy, minimum);
    return accuracy >= minimum ? 0 : 1;
}
