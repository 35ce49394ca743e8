// SPDX-License-Identifier: MIT
#include "dialogbridge.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QPointer>

#include "addonsession.h"
#include "minihost/nvo/hostcontrol.h"
#include "minihost/nvolite/webhost.h"
#include "nvolite/zxcommonwebwidget.h"

bool DialogBridge::open(AddonSession& session) {
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

void DialogBridge::finish() {
    QPointer<nvolite::ZxCommonWebWidget> window = m_window;
    QCoreApplication::processEvents();
    if (window) window->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_window = nullptr;
}
