// SPDX-License-Identifier: MIT
// Fuzzes the tagging library's dictionary files through OpenDictionary: one of Pinyin.dic,
// firrule.dic and secrule.dic (the tiny dictionaries of the tests, compiled by the real
// compiler) is spoilt, and either OpenDictionary refuses the set, or every text tags without a
// crash, with one reading per unit, until a text reads a damaged block of data: that text and
// every one after it fail with PINYIN_TAGGER_E_DICTIONARY.
//
// Input: a first byte (bits 0-1: which dictionary, 3 = none; bit 2: write the block sums and the
// index checksum the spoilt file needs, so that damage reaches the parsers behind them; bit 3:
// write its payload size; bit 4: cut the file to a length given by the next 4 bytes), then
// patches: a 4-byte offset, a length byte (0-15) and that many bytes written at the offset.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "Container.h"
#include "PinyinTagger.h"
#include "TinyDictionaries.h"

namespace {

void check(bool condition) {
    if (!condition) __builtin_trap();
}

std::uint32_t u32(const std::uint8_t* p) {
    return p[0] | p[1] << 8 | p[2] << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

void putLe(std::vector<std::uint8_t>& bytes, std::size_t at, std::uint64_t value) {
    for (int i = 0; i < 8 && at + i < bytes.size(); ++i)
        bytes[at + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

struct Files {
    tiny::TempDir dir;
    std::vector<std::uint8_t> good[3] = {tiny::charBytes(), tiny::wordBytes(), tiny::ruleBytes()};
    const char* names[3] = {"Pinyin.dic", "firrule.dic", "secrule.dic"};
    std::u16string paths[3];
    Files() {
        for (int i = 0; i < 3; ++i) paths[i] = tiny::u16(dir.write(names[i], good[i]).c_str());
    }
};

Files& files() {
    static Files instance;
    return instance;
}

const char16_t* const kTexts[] = {u"银行行长还钱", u"一个大桥",         u"好",
                                  u"行",           u"长江大桥不是市长", u"A1ア𠮷还"};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1) return 0;
    Files& f = files();
    const int which = data[0] & 3;
    std::size_t at = 1;
    if (which < 3) {
        std::vector<std::uint8_t> bytes = f.good[which];
        if ((data[0] & 16) && at + 4 <= size) {
            bytes.resize(u32(data + at) % (bytes.size() + 1));
            at += 4;
        }
        while (at + 5 <= size && !bytes.empty()) {
            const std::size_t offset = u32(data + at) % bytes.size();
            const std::size_t length = data[at + 4] & 15;
            at += 5;
            for (std::size_t i = 0; i < length && at < size; ++i, ++at)
                if (offset + i < bytes.size()) bytes[offset + i] = data[at];
        }
        if (bytes.size() >= zphonetic::tagger::kHeaderSize) {
            const std::size_t payload = bytes.size() - zphonetic::tagger::kHeaderSize;
            if (data[0] & 8) putLe(bytes, 16, payload);
            if (data[0] & 4) zphonetic::tagger::seal(bytes);
        }
        f.dir.write(f.names[which], bytes);
    }
    const int opened = OpenDictionary(f.paths[0].c_str(), f.paths[1].c_str(), f.paths[2].c_str());
    check(opened == PINYIN_TAGGER_OK || opened == PINYIN_TAGGER_E_DICTIONARY);
    check(which == 3 ? opened == PINYIN_TAGGER_OK : true);
    if (opened == PINYIN_TAGGER_OK) {
        void* tagger = nullptr;
        check(GetPinyinObject(&tagger) == PINYIN_TAGGER_OK);
        bool damaged = false;
        for (const char16_t* text : kTexts) {
            char16_t* answer = nullptr;
            std::int32_t length = 0;
            const int tagged = PinyinTagSen(tagger, text, &answer, &length);
            check(tagged == PINYIN_TAGGER_OK || tagged == PINYIN_TAGGER_E_MEMORY ||
                  tagged == PINYIN_TAGGER_E_DICTIONARY);
            check(!damaged || tagged == PINYIN_TAGGER_E_DICTIONARY);
            damaged = damaged || tagged == PINYIN_TAGGER_E_DICTIONARY;
            if (tagged != PINYIN_TAGGER_OK) continue;
            // Every unit of the text, in order, each followed by "/" and its reading (which
            // holds no "/").
            const std::u16string units(text);
            const std::u16string got(answer, static_cast<std::size_t>(length));
            std::size_t unit = 0;
            for (std::size_t i = 0; i < got.size(); ++i) {
                if (got[i] != u'/') continue;
                check(i > 0 && unit < units.size() && got[i - 1] == units[unit]);
                ++unit;
            }
            check(unit == units.size());
            delete[] answer;
        }
        check(ReleasePinyinObject(tagger) == PINYIN_TAGGER_OK);
    }
    CloseDictionary();
    if (which < 3) f.dir.write(f.names[which], f.good[which]);
    return 0;
}
