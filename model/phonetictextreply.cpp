// SPDX-License-Identifier: MIT
// The reply to getPhoneticText and the document for a text the page supplies: apart from the
// rest of the export because they run the tagging engine.
#include "engine/readings.h"
#include "model/phonetictextexport.h"

Json::Value exportPhoneticText(const ZPhoneticSymbolModel& model,
                               const QMap<QString, QVariant>& arguments) {
    Json::Value reply(Json::objectValue);
    reply["callstatus"] = "ok";
    QString text = arguments.value(QStringLiteral("text")).toString();
    if (text.size() > kDialogTextUnits) text.truncate(kDialogTextUnits);
    reply["result"] = text.isEmpty() ? exportModelReadings(model) : exportTextReadings(model, text);
    return reply;
}

Json::Value exportTextReadings(const ZPhoneticSymbolModel& model, const QString& text) {
    if (!model.tagger || !model.coreApp) return Json::Value();
    QMap<QChar, QStringList> candidates;
    QStringList readings;
    tagAlternatives(model.tagger, text, candidates);
    tagReadings(model.tagger, text, &candidates, readings);
    if (readings.isEmpty() || candidates.isEmpty()) return Json::Value();
    TextStyle style;
    style.color = QColor(Qt::black);
    style.text = text;
    style.fontSize = 0;
    Json::Value document(Json::objectValue);
    document["data"] = buildPhoneticData(style, readings, candidates);
    document["styleType"] = model.styleType;
    document["bracketType"] = model.bracketType;
    return document;
}
