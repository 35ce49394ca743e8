// SPDX-License-Identifier: MIT
#include "Sources.h"

#include <bzlib.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <set>
#include <sstream>
#include <unordered_map>

#include "Syllables.h"
#include "Utf16.h"

namespace zphonetic::tagger {
namespace {

std::vector<std::string> split(const std::string& s, char sep) {
    std::vector<std::string> out;
    size_t start = 0;
    for (;;) {
        const size_t at = s.find(sep, start);
        out.push_back(s.substr(start, at - start));
        if (at == std::string::npos) return out;
        start = at + 1;
    }
}

// A small reader for the one shape of JSON the word source has.
class JsonReader {
public:
    explicit JsonReader(const std::string& text) : s_(text) {}

    void expect(char c) {
        skipSpace();
        if (pos_ >= s_.size() || s_[pos_] != c) fail(std::string("expected '") + c + "'");
        ++pos_;
    }
    bool accept(char c) {
        skipSpace();
        if (pos_ < s_.size() && s_[pos_] == c) {
            ++pos_;
            return true;
        }
        return false;
    }
    std::u16string string() {
        expect('"');
        std::u16string out;
        size_t runStart = pos_;
        auto flush = [&] {
            out += toUtf16(std::string_view(s_).substr(runStart, pos_ - runStart));
        };
        while (pos_ < s_.size() && s_[pos_] != '"') {
            if (s_[pos_] != '\\') {
                ++pos_;
                continue;
            }
            flush();
            if (++pos_ >= s_.size()) fail("unfinished escape");
            const char e = s_[pos_++];
            switch (e) {
                case 'u': {
                    if (pos_ + 4 > s_.size()) fail("short \\u escape");
                    out.push_back(
                        static_cast<char16_t>(std::stoul(s_.substr(pos_, 4), nullptr, 16)));
                    pos_ += 4;
                    break;
                }
                case 'n':
                    out.push_back(u'\n');
                    break;
                case 't':
                    out.push_back(u'\t');
                    break;
                case 'r':
                    out.push_back(u'\r');
                    break;
                case 'b':
                    out.push_back(u'\b');
                    break;
                case 'f':
                    out.push_back(u'\f');
                    break;
                default:
                    out.push_back(static_cast<char16_t>(e));
                    break;
            }
            runStart = pos_;
        }
        if (pos_ >= s_.size()) fail("unfinished string");
        flush();
        ++pos_;
        return out;
    }
    double number() {
        skipSpace();
        const char* begin = s_.c_str() + pos_;
        char* end = nullptr;
        const double v = std::strtod(begin, &end);
        if (end == begin) fail("expected a number");
        pos_ += static_cast<size_t>(end - begin);
        return v;
    }
    [[noreturn]] void fail(const std::string& what) const {
        throw FormatError("byte " + std::to_string(pos_) + ": " + what);
    }

private:
    void skipSpace() {
        while (pos_ < s_.size() && std::strchr(" \t\r\n", s_[pos_]) != nullptr && s_[pos_] != 0) {
            ++pos_;
        }
    }
    const std::string& s_;
    size_t pos_ = 0;
};

}  // namespace

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw FormatError(path + ": " + std::strerror(errno));
    std::ostringstream out;
    out << in.rdbuf();
    if (in.bad()) throw FormatError(path + ": read error");
    return out.str();
}

std::string readBzip2File(const std::string& path) {
    const std::string packed = readFile(path);
    std::string out;
    bz_stream stream{};
    if (BZ2_bzDecompressInit(&stream, 0, 0) != BZ_OK) throw FormatError(path + ": bzip2 init");
    stream.next_in = const_cast<char*>(packed.data());
    stream.avail_in = static_cast<unsigned>(packed.size());
    char buffer[1 << 16];
    int rc = BZ_OK;
    // A file may hold several bzip2 streams one after the other.
    while (rc != BZ_STREAM_END || stream.avail_in > 0) {
        if (rc == BZ_STREAM_END) {
            BZ2_bzDecompressEnd(&stream);
            if (BZ2_bzDecompressInit(&stream, 0, 0) != BZ_OK) throw FormatError(path + ": bzip2");
        }
        stream.next_out = buffer;
        stream.avail_out = sizeof buffer;
        rc = BZ2_bzDecompress(&stream);
        if (rc != BZ_OK && rc != BZ_STREAM_END) {
            BZ2_bzDecompressEnd(&stream);
            throw FormatError(path + ": not valid bzip2 data");
        }
        out.append(buffer, sizeof buffer - stream.avail_out);
        if (rc == BZ_OK && stream.avail_in == 0 && stream.avail_out != 0) {
            BZ2_bzDecompressEnd(&stream);
            throw FormatError(path + ": truncated bzip2 data");
        }
    }
    BZ2_bzDecompressEnd(&stream);
    return out;
}

CharReadings parsePinyinData(const std::string& goSource, size_t& dropped) {
    CharReadings out;
    dropped = 0;
    std::istringstream lines(goSource);
    std::string line;
    size_t lineNo = 0;
    while (std::getline(lines, line)) {
        ++lineNo;
        const size_t hex = line.find("0x");
        const size_t colon = line.find(": \"");
        const size_t close = line.rfind('"');
        if (hex == std::string::npos || colon == std::string::npos || close <= colon + 2) continue;
        const unsigned long cp = std::strtoul(line.c_str() + hex + 2, nullptr, 16);
        if (cp >= 0x10000) continue;
        std::vector<std::u16string> readings;
        for (const std::string& r : split(line.substr(colon + 3, close - colon - 3), ',')) {
            std::u16string s = toUtf16(r);
            if (isSyllableText(s)) {
                readings.push_back(std::move(s));
            } else {
                ++dropped;
            }
        }
        if (!readings.empty()) out[static_cast<char16_t>(cp)] = std::move(readings);
    }
    if (out.empty()) throw FormatError("no readings found in the pinyin-data map");
    return out;
}

size_t keepModernReadings(CharReadings& readings, const std::string& unihan) {
    std::unordered_map<char16_t, std::set<std::u16string>> modern;
    std::istringstream lines(unihan);
    std::string line;
    while (std::getline(lines, line)) {
        if (line.rfind("U+", 0) != 0) continue;
        const std::vector<std::string> f = split(line, '\t');
        if (f.size() != 3) continue;
        const unsigned long cp = std::strtoul(f[0].c_str() + 2, nullptr, 16);
        if (cp >= 0x10000) continue;
        const std::string& field = f[1];
        if (field != "kXHC1983" && field != "kTGHZ2013" && field != "kMandarin" &&
            field != "kHanyuPinlu") {
            continue;
        }
        // Values look like "0442.080:háng 0443.050:hàng", "xíng(2943) háng(218)" or "dōu dū".
        for (std::string value : split(f[2], ' ')) {
            if (const size_t c = value.find(':'); c != std::string::npos) value.erase(0, c + 1);
            if (const size_t p = value.find('('); p != std::string::npos) value.erase(p);
            if (!value.empty()) modern[static_cast<char16_t>(cp)].insert(toUtf16(value));
        }
    }
    size_t removed = 0;
    for (auto& [c, list] : readings) {
        auto it = modern.find(c);
        if (it == modern.end()) continue;
        std::vector<std::u16string> kept;
        for (const std::u16string& r : list) {
            if (it->second.count(r)) kept.push_back(r);
        }
        if (kept.empty()) kept.push_back(list.front());
        removed += list.size() - kept.size();
        list = std::move(kept);
    }
    return removed;
}

std::vector<WordEntry> parsePinyinProJson(const std::string& json, size_t& dropped) {
    struct Raw {
        std::u16string word;
        std::vector<std::u16string> readings;
        double frequency;
    };
    std::vector<Raw> raw;
    dropped = 0;
    JsonReader in(json);
    in.expect('{');
    double total = 0;
    if (!in.accept('}')) {
        do {
            Raw r;
            r.word = in.string();
            in.expect(':');
            in.expect('[');
            const std::u16string reading = in.string();
            in.expect(',');
            r.frequency = in.number();
            in.expect(']');
            size_t start = 0;
            bool ok = r.frequency > 0;
            for (;;) {
                const size_t space = reading.find(u' ', start);
                r.readings.push_back(reading.substr(start, space - start));
                ok = ok && isSyllableText(r.readings.back());
                if (space == std::u16string::npos) break;
                start = space + 1;
            }
            if (!ok || r.word.empty() || r.readings.size() != r.word.size()) {
                ++dropped;
                continue;
            }
            total += r.frequency;
            raw.push_back(std::move(r));
        } while (in.accept(','));
        in.expect('}');
    }
    std::vector<WordEntry> out;
    out.reserve(raw.size());
    for (Raw& r : raw) {
        const double cost = std::round(-64.0 * std::log(r.frequency / total));
        out.push_back({std::move(r.word), std::move(r.readings),
                       static_cast<uint16_t>(std::min(std::max(cost, 0.0), double{kMaxWordCost}))});
    }
    return out;
}

}  // namespace zphonetic::tagger
