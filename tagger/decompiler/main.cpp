// SPDX-License-Identifier: MIT
// pinyin-dictdump: prints a compiled dictionary back in the text form pinyin-dictc reads.
#include <cstdio>
#include <cstring>
#include <string>

#include "CharDictionary.h"
#include "MappedFile.h"
#include "RuleDictionary.h"
#include "Utf16.h"
#include "WordDictionary.h"

using namespace zphonetic::tagger;

int main(int argc, char** argv) {
    if (argc != 2 || !std::strcmp(argv[1], "--help") || !std::strcmp(argv[1], "-h")) {
        std::fputs(
            "usage: pinyin-dictdump FILE.dic\n"
            "Prints a dictionary of the tagging library (Pinyin.dic, firrule.dic or\n"
            "secrule.dic, told apart by their magic) as text on standard output.\n",
            argc != 2 ? stderr : stdout);
        return argc != 2 ? 2 : 0;
    }
    const std::string path = argv[1];
    try {
        const MappedFile file(path);
        const std::string_view magic = magicOf(file.data(), file.size());
        // Everything is read to be printed: every block is checked first, so that a damaged
        // one is named rather than printed as whatever it reads as.
        if (magic == std::string_view(kCharMagic, 8) || magic == std::string_view(kWordMagic, 8) ||
            magic == std::string_view(kRuleMagic, 8))
            ContainerView(file.data(), file.size(), magic).checkEveryBlock();
        std::string text;
        if (magic == std::string_view(kCharMagic, 8)) {
            text = formatCharText(CharDictionary(file.data(), file.size()).toReadings());
        } else if (magic == std::string_view(kWordMagic, 8)) {
            text = formatWordText(WordDictionary(file.data(), file.size()).toEntries());
        } else if (magic == std::string_view(kRuleMagic, 8)) {
            text = formatRuleText(RuleDictionary(file.data(), file.size()).toRuleSet());
        } else {
            throw FormatError("not a dictionary of the tagging library (unknown magic)");
        }
        std::fwrite(text.data(), 1, text.size(), stdout);
        return std::fflush(stdout) == 0 ? 0 : 1;
    } catch (const FormatError& e) {
        const std::string what = e.what();
        const std::string message = what.rfind(path, 0) == 0 ? what : path + ": " + what;
        std::fprintf(stderr, "pinyin-dictdump: %s\n", printable(message).c_str());
        return 1;
    }
}
