// SPDX-License-Identifier: MIT
#include "model/phonetictextexport.h"

#include <string>

namespace {

std::string utf8(const QString& text) {
    return text.toUtf8().toStdString();
}

}  // namespace

Json::Value exportModelReadings(const ZPhoneticSymbolModel& model) {
    if (model.readings.isEmpty() || model.candidates.isEmpty()) return Json::Value();
    Json::Value document(Json::objectValue);
    document["data"] = buildPhoneticData(model.style, model.readings, model.candidates);
    document["styleType"] = model.styleType;
    document["bracketType"] = model.bracketType;
    return document;
}

Json::Value buildPhoneticData(const TextStyle& style, const QStringList& readings,
                              const QMap<QChar, QStringList>& candidates) {
    Json::Value phonetic(Json::arrayValue);
    for (int i = 0; i < style.text.size(); ++i) {
        const QChar unit = style.text.at(i);
        Json::Value entry(Json::objectValue);
        entry["index"] = i;
        entry["text"] = utf8(QString(unit));
        entry["pinyin"] = utf8(readings.at(i));
        const auto found = candidates.constFind(unit);
        if (found == candidates.constEnd()) {
            entry["duyin"] = Json::Value(Json::arrayValue);
        } else {
            // Built by appending to a null value: an empty list stays null (kept on purpose).
            Json::Value duyin;
            for (const QString& reading : *found) duyin.append(utf8(reading));
            entry["duyin"] = duyin;
        }
        phonetic.append(entry);
    }
    Json::Value color(Json::arrayValue);
    color.append(style.color.red());
    color.append(style.color.green());
    color.append(style.color.blue());
    Json::Value data(Json::objectValue);
    data["phonetic"] = phonetic;
    data["color"] = color;
    return data;
}
