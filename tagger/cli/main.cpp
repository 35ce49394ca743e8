// SPDX-License-Identifier: MIT
// pinyin-tag: reads lines of Chinese text and prints the tagging library's answer for each, using
// the library only through its C ABI (dlopen), as any program embedding it would.
#include <dlfcn.h>
#include <unistd.h>

#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "Utf16.h"

using zphonetic::tagger::printable;
using zphonetic::tagger::toUtf16;
using zphonetic::tagger::toUtf8;

namespace {

constexpr char kVersion[] = "pinyin-tag " ZPHONETIC_VERSION "\n";
constexpr char kUsage[] =
    "usage: pinyin-tag [--lone] [--library FILE] [--dict-dir DIR] [TEXT…]\n"
    "Prints the pinyin of each line of standard input (or of each TEXT) as the tagging library\n"
    "answers it: every character, \"/\" and its reading, e.g. 银/yín行/háng.\n"
    "  --lone            tag each character on its own: all its readings, default first\n"
    "  --library FILE    the tagging library (default: ../lib/zphonetic/libPinyinTagger.so\n"
    "                    beside this program)\n"
    "  --dict-dir DIR    directory of Pinyin.dic, firrule.dic, secrule.dic (default:\n"
    "                    ../share/zphonetic/dict beside this program)\n"
    "  --help, --version\n"
    "Control characters of the text are printed as escapes (\\x1b).\n"
    "Exit status: 0 done, 1 the library or its dictionaries could not be loaded, 2 bad usage.\n";

using LoadFn = int (*)(void*);
using OpenFn = int (*)(const char16_t*, const char16_t*, const char16_t*);
using CloseFn = int (*)();
using GetFn = int (*)(void**);
using TagFn = int (*)(void*, const char16_t*, char16_t**, int32_t*);
using ReleaseFn = int (*)(void*);

std::string programDir() {
    char buffer[PATH_MAX];
    const ssize_t n = ::readlink("/proc/self/exe", buffer, sizeof buffer - 1);
    if (n <= 0) return ".";
    std::string path(buffer, static_cast<size_t>(n));
    return path.substr(0, path.rfind('/'));
}

struct Library {
    TagFn tag = nullptr;
    void* tagger = nullptr;
    ReleaseFn release = nullptr;
    CloseFn close = nullptr;

    // The answer for `text`, or a message in `error`.
    bool answer(const std::u16string& text, std::string& out, std::string& error) const {
        char16_t* answer = nullptr;
        int32_t length = 0;
        const int status = tag(tagger, text.c_str(), &answer, &length);
        if (status != 0) {
            error = "PinyinTagSen failed with status " + std::to_string(status);
            return false;
        }
        out = toUtf8(std::u16string_view(answer, static_cast<size_t>(length)));
        delete[] answer;
        return true;
    }
};

template <class Fn>
Fn symbol(void* handle, const char* name, const std::string& path) {
    void* p = ::dlsym(handle, name);
    if (p == nullptr) throw std::runtime_error(path + ": no function " + name);
    return reinterpret_cast<Fn>(p);
}

Library load(const std::string& libraryPath, const std::string& dictDir) {
    void* handle = ::dlopen(libraryPath.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) throw std::runtime_error(::dlerror());
    Library lib;
    symbol<LoadFn>(handle, "LoadPinYinLibrary", libraryPath)(nullptr);
    const std::u16string dir = toUtf16(dictDir + "/");
    const int opened = symbol<OpenFn>(handle, "OpenDictionary", libraryPath)(
        (dir + u"Pinyin.dic").c_str(), (dir + u"firrule.dic").c_str(),
        (dir + u"secrule.dic").c_str());
    if (opened != 0) {
        throw std::runtime_error("OpenDictionary failed with status " + std::to_string(opened) +
                                 " for the dictionaries in " + dictDir);
    }
    lib.tag = symbol<TagFn>(handle, "PinyinTagSen", libraryPath);
    lib.release = symbol<ReleaseFn>(handle, "ReleasePinyinObject", libraryPath);
    lib.close = symbol<CloseFn>(handle, "CloseDictionary", libraryPath);
    const int got = symbol<GetFn>(handle, "GetPinyinObject", libraryPath)(&lib.tagger);
    if (got != 0)
        throw std::runtime_error("GetPinyinObject failed with status " + std::to_string(got));
    return lib;
}

}  // namespace

int main(int argc, char** argv) {
    bool lone = false;
    std::string libraryPath = programDir() + "/../lib/zphonetic/libPinyinTagger.so";
    std::string dictDir = programDir() + "/../share/zphonetic/dict";
    std::vector<std::string> texts;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--help" || arg == "-h") {
            std::fputs(kUsage, stdout);
            return 0;
        } else if (arg == "--version") {
            std::fputs(kVersion, stdout);
            return 0;
        } else if (arg == "--lone") {
            lone = true;
        } else if ((arg == "--library" || arg == "--dict-dir") && i + 1 < argc) {
            (arg == "--library" ? libraryPath : dictDir) = argv[++i];
        } else if (arg.rfind("--", 0) == 0) {
            std::fprintf(stderr, "pinyin-tag: unknown option \"%s\"\n%s", printable(arg).c_str(),
                         kUsage);
            return 2;
        } else {
            texts.push_back(arg);
        }
    }

    Library lib;
    try {
        lib = load(libraryPath, dictDir);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "pinyin-tag: %s\n", printable(e.what()).c_str());
        return 1;
    }
    int status = 0;
    auto tagLine = [&](const std::string& line) {
        const std::u16string text = toUtf16(line);
        std::string out, error;
        if (!lone) {
            if (!lib.answer(text, out, error)) {
                std::fprintf(stderr, "pinyin-tag: %s\n", error.c_str());
                status = 1;
            }
            std::cout << printable(out) << '\n';
            return;
        }
        // One call per character: a text of one character answers all its readings.
        for (char16_t c : text) {
            std::string piece;
            if (!lib.answer(std::u16string(1, c), piece, error)) {
                std::fprintf(stderr, "pinyin-tag: %s\n", error.c_str());
                status = 1;
            }
            std::cout << printable(piece) << '\n';
        }
    };
    if (!texts.empty()) {
        for (const std::string& t : texts) tagLine(t);
    } else {
        std::string line;
        while (std::getline(std::cin, line)) tagLine(line);
    }
    lib.release(lib.tagger);
    lib.close();
    std::cout.flush();
    return status;
}
