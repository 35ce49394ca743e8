// SPDX-License-Identifier: MIT
#include "Corpus.h"

#include <fstream>

#include "Utf16.h"

using zphonetic::tagger::toUtf16;

bool readCorpus(const std::string& dir, std::vector<LabelledSentence>& out, std::string& error) {
    std::ifstream sentences(dir + "/dev.sent");
    std::ifstream labels(dir + "/dev.lb");
    if (!sentences || !labels) {
        error = "no CPP corpus in " + dir + " (dev.sent and dev.lb)";
        return false;
    }
    std::string sentence, label;
    size_t line = 0;
    while (std::getline(sentences, sentence)) {
        ++line;
        if (!std::getline(labels, label)) {
            error = dir + "/dev.lb: has fewer lines than dev.sent";
            return false;
        }
        if (!label.empty() && label.back() == '\r') label.pop_back();
        LabelledSentence s;
        s.label = label;
        s.line = line;
        int markers = 0;
        bool found = false;
        for (char16_t c : toUtf16(sentence)) {
            if (c == u'\u2581') {
                ++markers;
                continue;
            }
            if (c < 0x4E00 || c > 0x9FA5) continue;
            if (markers == 1 && !found) {
                s.target = s.text.size();
                found = true;
            }
            s.text.push_back(c);
        }
        if (markers != 2 || !found) continue;
        out.push_back(std::move(s));
    }
    return true;
}
