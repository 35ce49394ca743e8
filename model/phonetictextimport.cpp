// SPDX-License-Identifier: MIT
#include "model/phonetictextimport.h"

#include <json/reader.h>
#include <json/value.h>
#include <exception>
#include <string>

namespace {

// The documents are read with the classic reader, comments allowed, and a failed parse is not an
// error: only the shape of what was read counts (so a truncated array keeps what came before the
// damage, as the reader leaves it). The reader throws where it gives up altogether (arrays or
// objects nested deeper than its stack limit): that text is no readings at all.
Json::Value parseLeniently(const std::string& text) {
    Json::Value root;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    Json::Reader reader(Json::Features::all());
#pragma GCC diagnostic pop
    try {
        reader.parse(text, root, true);
    } catch (const std::exception&) {
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
