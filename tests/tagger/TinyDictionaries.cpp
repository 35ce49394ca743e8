// SPDX-License-Identifier: MIT
#include "TinyDictionaries.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "Utf16.h"

using namespace zphonetic::tagger;

namespace tiny {

const char kChars[] =
    "一\tyī yí yì\n"
    "不\tbù bú\n"
    "个\tgè\n"
    "大\tdà dài\n"
    "天\ttiān\n"
    "好\thǎo hào\n"
    "市\tshì\n"
    "是\tshì\n"
    "桥\tqiáo\n"
    "江\tjiāng\n"
    "看\tkàn kān\n"
    "行\txíng háng héng xìng hàng\n"
    "还\thái huán\n"
    "钱\tqián\n"
    "银\tyín\n"
    "长\tcháng zhǎng\n";

const char kWords[] =
    "一个\tyí gè\t190\n"
    "不是\tbú shì\t160\n"
    "大桥\tdà qiáo\t190\n"
    "市\tshì\t130\n"
    "市长\tshì zhǎng\t190\n"
    "江\tjiāng\t190\n"
    "行\txíng\t160\n"
    "行长\tháng zhǎng\t220\n"
    "还\thái\t100\n"
    "银行\tyín háng\t190\n"
    "长江\tcháng jiāng\t160\n";

const char kRules[] =
    "class\tDIGIT\t一二三\n"
    "rule\t一\tyī\t_{DIGIT}\n"
    "rule\t还\thuán\t_钱\n"
    "rule\t好\thào\t^_$\n";

std::vector<uint8_t> charBytes() {
    return compileChars(parseCharText(kChars));
}
std::vector<uint8_t> wordBytes() {
    return compileWords(parseWordText(kWords));
}
std::vector<uint8_t> ruleBytes() {
    return compileRules(parseRuleText(kRules));
}

std::shared_ptr<const Dictionaries> dictionaries() {
    return std::make_shared<const Dictionaries>(charBytes(), wordBytes(), ruleBytes());
}

size_t sectionOffset(const std::vector<uint8_t>& bytes, uint32_t id) {
    const auto le = [&](size_t at, size_t width) {
        uint64_t v = 0;
        for (size_t i = 0; i < width && at + i < bytes.size(); ++i)
            v |= uint64_t{bytes[at + i]} << (8 * i);
        return v;
    };
    const size_t count = static_cast<size_t>(le(12, 4));
    for (size_t e = 0; e < count; ++e) {
        const size_t at = kHeaderSize + e * kSectionEntrySize;
        if (at + kSectionEntrySize > bytes.size()) break;
        if (le(at, 4) == id) return static_cast<size_t>(le(at + 8, 8));
    }
    return 0;
}

TempDir::TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tagger-test-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) std::abort();
    path_ = pattern;
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TempDir::write(const std::string& name, const std::vector<uint8_t>& bytes) const {
    const std::string file = path_ + "/" + name;
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
    return file;
}

void TempDir::writeTinyDictionaries() const {
    write("Pinyin.dic", charBytes());
    write("firrule.dic", wordBytes());
    write("secrule.dic", ruleBytes());
}

ScopedVariable::ScopedVariable(const char* name, const char* value) : name_(name) {
    const char* old = std::getenv(name);
    had_ = old != nullptr;
    if (had_) old_ = old;
    if (value != nullptr) {
        ::setenv(name, value, 1);
    } else {
        ::unsetenv(name);
    }
}

ScopedVariable::~ScopedVariable() {
    if (had_) {
        ::setenv(name_, old_.c_str(), 1);
    } else {
        ::unsetenv(name_);
    }
}

std::u16string u16(const char* utf8) {
    return toUtf16(utf8);
}
std::string u8(const std::u16string& utf16) {
    return toUtf8(utf16);
}

}  // namespace tiny
