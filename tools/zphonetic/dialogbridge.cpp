// SPDX-License-Identifier: MIT
#include "dialogbridge.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>

#include "minihost/nvo/addonmodule.h"
#include "minihost/nvo/hostcontrol.h"
#include "minihost/nvolite/webhost.h"
#include "nvolite/zxcommonwebwidget.h"

bool DialogBridge::open(minihost::AddonSession& session) {
    minihost::setWebRendering(false);
    const int messages = minihost::messagesShown().size();
    const int before = minihost::webWidgets().size();
    if (!session.trigger(QStringLiteral("PhoneticSymbol"))) {
        m_error = QStringLiteral("the entry object has no trigger method");
        return false;
    }
    if (minihost::webWidgets().size() == before) {
        const QList<RecordedMessage> shown = minihost::messagesShown();
        m_error = shown.size() > messages ? shown.constLast().text
                                          : QStringLiteral("the dialog did not open");
        return false;
    }
    m_window = minihost::webWidgets().constLast();
    if (minihost::webWidgetUrl(m_window).contains(QLatin1String("#/guide"))) {
        m_error = QStringLiteral(
            "nothing to annotate: the dialog opened its guide (no text selected, or no "
            "tagging library)");
        return false;
    }
    return true;
}

bool DialogBridge::call(const QString& method, const QVariantMap& arguments, QString* result) {
    if (!m_window) {
        m_error = QStringLiteral("no dialog is open");
        return false;
    }
    const QString json =
        QString::fromUtf8(QJsonDocument::fromVariant(arguments).toJson(QJsonDocument::Compact));
    const QVariantMap reply = minihost::callBridge(m_window, method, json);
    if (!reply.value(QStringLiteral("ok")).toBool()) {
        m_error = reply.value(QStringLiteral("error")).toString();
        return false;
    }
    if (result) *result = reply.value(QStringLiteral("result")).toString();
    return true;
}

bool DialogBridge::readingEntries(const QString& reply, QJsonArray* entries) {
    const QJsonValue result =
        QJsonDocument::fromJson(reply.toUtf8()).object().value(QStringLiteral("result"));
    if (!result.isObject()) return false;
    *entries = result.toObject()
                   .value(QStringLiteral("data"))
                   .toObject()
                   .value(QStringLiteral("phonetic"))
                   .toArray();
    return true;
}

QJsonArray DialogBridge::confirmedItems(const QJsonArray& entries, QMap<int, QString>* picks) {
    QJsonArray items;
    for (const QJsonValue& value : entries) {
        const QJsonObject entry = value.toObject();
        const int index = entry.value(QStringLiteral("index")).toInt();
        QString pinyin = picks && picks->contains(index)
                             ? picks->take(index)
                             : entry.value(QStringLiteral("pinyin")).toString();
        // The readings document gives two spaces for a character without a reading.
        if (pinyin.trimmed().isEmpty()) pinyin.clear();
        items.append(QJsonObject{{QStringLiteral("index"), index},
                                 {QStringLiteral("pinyin"), pinyin},
                                 {QStringLiteral("text"), entry.value(QStringLiteral("text"))}});
    }
    return items;
}

bool DialogBridge::confirm(const QJsonArray& items, int style, int bracket) {
    const QVariantMap arguments{
        {QStringLiteral("styleType"), style},
        {QStringLiteral("bracketType"), bracket},
        {QStringLiteral("phonetic"),
         QString::fromUtf8(QJsonDocument(items).toJson(QJsonDocument::Compact))}};
    return call(QStringLiteral("setPhoneticText"), arguments, nullptr);
}

void DialogBridge::finish() {
    QPointer<nvolite::ZxCommonWebWidget> window = m_window;
    QCoreApplication::processEvents();
    if (window) window->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_window = nullptr;
}
