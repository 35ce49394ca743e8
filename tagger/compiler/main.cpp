// SPDX-License-Identifier: MIT
// pinyin-dictc: compiles the tagging library's dictionaries from their text sources.
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

#include "CharDictionary.h"
#include "RuleDictionary.h"
#include "Sources.h"
#include "Utf16.h"
#include "WordDictionary.h"
#include "WordPatch.h"

using namespace zphonetic::tagger;

namespace {

constexpr char kUsage[] =
    "usage: pinyin-dictc chars --pinyin-data pinyin_dict.go --unihan Unihan_Readings.txt.bz2 -o "
    "Pinyin.dic\n"
    "       pinyin-dictc words --pinyin-pro complete.json [--patch words-patch.txt] -o "
    "firrule.dic\n"
    "       pinyin-dictc chars|words|rules --text SOURCE.txt -o FILE.dic\n"
    "Compiles a dictionary of the tagging library. --text reads the text form that\n"
    "pinyin-dictdump prints; rules may come from several --text files, read in order.\n"
    "--patch sets the readings of some words (word, readings, optional cost) over the source;\n"
    "before it, a 儿 that --pinyin-pro reads light after a word's first character becomes r.\n";

void writeFile(const std::string& path, const std::vector<uint8_t>& bytes) {
    // Written beside the target and renamed, so a failed run never leaves half a dictionary. The
    // temporary file is made new under a name nobody could foresee (mkstemp: O_CREAT | O_EXCL),
    // so a link planted where it goes is never followed.
    std::string tmp = path + ".XXXXXX";
    const int fd = ::mkstemp(tmp.data());
    if (fd < 0) throw FormatError(path + ": cannot make a temporary file: " + std::strerror(errno));
    const mode_t mask = ::umask(0);
    ::umask(mask);
    bool written = ::fchmod(fd, 0666 & ~mask) == 0;
    for (size_t done = 0; written && done < bytes.size();) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) continue;
        written = n > 0;
        done += written ? static_cast<size_t>(n) : 0;
    }
    written = ::close(fd) == 0 && written;
    if (!written || std::rename(tmp.c_str(), path.c_str()) != 0) {
        const std::string problem = written ? ": cannot rename" : ": cannot write";
        ::unlink(tmp.c_str());
        throw FormatError((written ? path : tmp) + problem);
    }
}

// Parses a source file; errors from inside its text get the file's path in front.
template <class Parse>
auto parseFile(const std::string& path, const std::string& text, Parse&& parse) {
    try {
        return parse(text);
    } catch (const FormatError& e) {
        throw FormatError(path + ": " + e.what());
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2 || !std::strcmp(argv[1], "--help") || !std::strcmp(argv[1], "-h")) {
        std::fputs(kUsage, argc < 2 ? stderr : stdout);
        return argc < 2 ? 2 : 0;
    }
    const std::string kind = argv[1];
    std::map<std::string, std::string> options;
    std::vector<std::string> texts;
    for (int i = 2; i < argc; ++i) {
        const std::string key = argv[i];
        if (i + 1 >= argc ||
            (key != "--pinyin-data" && key != "--unihan" && key != "--pinyin-pro" &&
             key != "--text" && key != "--patch" && key != "-o")) {
            std::fprintf(stderr, "pinyin-dictc: unexpected argument \"%s\"\n%s",
                         printable(argv[i]).c_str(), kUsage);
            return 2;
        }
        if (key == "--text") texts.push_back(argv[i + 1]);
        options[key] = argv[++i];
    }
    auto has = [&](const char* key) { return options.count(key) != 0; };
    if (!has("-o")) {
        std::fprintf(stderr, "pinyin-dictc: no output file (-o)\n%s", kUsage);
        return 2;
    }
    const std::string& source = has("--text") ? options["--text"] : options["--pinyin-pro"];
    try {
        std::vector<uint8_t> bytes;
        if (kind == "chars" && has("--text")) {
            bytes = compileChars(parseFile(source, readFile(source), parseCharText));
        } else if (kind == "chars" && has("--pinyin-data") && has("--unihan")) {
            size_t dropped = 0;
            const std::string& go = options["--pinyin-data"];
            CharReadings readings = parseFile(go, readFile(go), [&](const std::string& text) {
                return parsePinyinData(text, dropped);
            });
            const size_t archaic = keepModernReadings(readings, readBzip2File(options["--unihan"]));
            std::printf(
                "pinyin-dictc: %zu characters; dropped %zu archaic readings and %zu not "
                "spelt with precomposed letters\n",
                readings.size(), archaic, dropped);
            bytes = compileChars(readings);
        } else if (kind == "words" && (has("--text") || has("--pinyin-pro"))) {
            size_t dropped = 0;
            std::vector<WordEntry> words =
                parseFile(source, readFile(source), [&](const std::string& text) {
                    return has("--text") ? parseWordText(text) : parsePinyinProJson(text, dropped);
                });
            // The fused 儿 is a spelling of the packaged source; a text form holds it already.
            const size_t fused = has("--text") ? 0 : fuseErhua(words);
            size_t patched = 0;
            if (has("--patch")) {
                const std::string& patch = options["--patch"];
                patched = parseFile(patch, readFile(patch), [&](const std::string& text) {
                    return applyWordPatch(words, text);
                });
            }
            std::printf("pinyin-dictc: %zu words; dropped %zu, fused 儿 in %zu, patched %zu\n",
                        words.size(), dropped, fused, patched);
            bytes = compileWords(std::move(words));
        } else if (kind == "rules" && has("--text")) {
            RuleSet rules;
            for (const std::string& path : texts) {
                parseFile(path, readFile(path), [&](const std::string& text) {
                    appendRuleText(text, rules);
                    return 0;
                });
            }
            bytes = compileRules(rules);
        } else {
            std::fprintf(stderr, "pinyin-dictc: wrong sources for \"%s\"\n%s",
                         printable(kind).c_str(), kUsage);
            return 2;
        }
        writeFile(options["-o"], bytes);
    } catch (const FormatError& e) {
        std::fprintf(stderr, "pinyin-dictc: %s\n", printable(e.what()).c_str());
        return 1;
    }
    return 0;
}
