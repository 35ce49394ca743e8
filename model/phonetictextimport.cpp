// SPDX-License-Identifier: MIT
#include "model/phonetictextimport.h"

#include <json/reader.h>
#include <json/value.h>
#include <algorithm>
#include <exception>
#include <string>

namespace {

// How deep the page's text may nest arrays and objects before a value is read as null: far below
// the JSON reader's own limit (1000, past which it throws and gives nothing at all), far above
// anything the page sends (an array of objects of strings and numbers).
constexpr int kDeepestValue = 64;

// Copies `text` with every array or object that opens deeper than `limit` replaced by null, so
// that a bad element costs only itself: [good, [[[...]]], good] reads as [good, null, good], and
// an element whose extra member nests too deep keeps its other members. Strings and comments are
// copied as they are; a value cut off by the end of the text is replaced up to there.
std::string withDeepValuesNull(const std::string& text, int limit) {
    std::string out;
    out.reserve(text.size());
    int depth = 0;
    int skipping = 0;  // > 0: inside a replaced value, this many levels deep
    const size_t n = text.size();
    for (size_t i = 0; i < n;) {
        size_t end = i + 1;  // one past the token that starts at i
        const char c = text[i];
        if (c == '"') {
            while (end < n && text[end] != '"') end += text[end] == '\\' ? 2 : 1;
            end = std::min(n, end + 1);
        } else if (c == '/' && i + 1 < n && text[i + 1] == '/') {
            end = text.find('\n', i);
            end = end == std::string::npos ? n : end;
        } else if (c == '/' && i + 1 < n && text[i + 1] == '*') {
            end = text.find("*/", i + 2);
            end = end == std::string::npos ? n : end + 2;
        } else if (c == '[' || c == '{') {
            if (skipping > 0) {
                ++skipping;
            } else if (depth == limit) {
                skipping = 1;
                out += "null";
            } else {
                ++depth;
                out += c;
            }
            i = end;
            continue;
        } else if (c == ']' || c == '}') {
            if (skipping > 0) {
                --skipping;
            } else {
                depth = std::max(0, depth - 1);
                out += c;
            }
            i = end;
            continue;
        }
        if (skipping == 0) out.append(text, i, end - i);
        i = end;
    }
    return out;
}

// The documents are read with the classic reader, comments allowed, and a failed parse is not an
// error: only the shape of what was read counts (so a truncated array keeps what came before the
// damage, as the reader leaves it).
Json::Value parseLeniently(const std::string& text) {
    Json::Value root;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    Json::Reader reader(Json::Features::all());
#pragma GCC diagnostic pop
    try {
        reader.parse(withDeepValuesNull(text, kDeepestValue), root, true);
    } catch (const std::exception&) {
        // Not expected once the nesting is bounded; whatever the reader gave up on is no readings.
        return Json::Value();
    }
    return root;
}

}  // namespace

PhoneticImport importPhoneticText(const QMap<QString, QVariant>& arguments) {
    PhoneticImport result;
    const auto styleType = arguments.constFind(QStringLiteral("styleType"));
    if (styleType != arguments.constEnd()) result.styleType = styleType->toInt();
    const auto bracketType = arguments.constFind(QStringLiteral("bracketType"));
    if (bracketType != arguments.constEnd()) result.bracketType = bracketType->toInt();
    const auto phonetic = arguments.constFind(QStringLiteral("phonetic"));
    if (phonetic == arguments.constEnd()) return result;
    const Json::Value root = parseLeniently(phonetic->toString().toUtf8().toStdString());
    if (!root.isArray()) return result;
    for (Json::ArrayIndex i = 0; i < root.size(); ++i) {
        const Json::Value& element = root[i];
        if (!element.isObject() || !element.isMember("index") || !element.isMember("pinyin") ||
            !element.isMember("text"))
            continue;
        if (!element["index"].isInt() || !element["pinyin"].isString() ||
            !element["text"].isString())
            continue;
        PhoneticItem item;
        item.pinyin = QString::fromStdString(element["pinyin"].asString());
        item.text = QString::fromStdString(element["text"].asString());
        item.index = element["index"].asInt();
        result.items.append(item);
    }
    return result;
}
