// SPDX-License-Identifier: MIT
#include "dialog/phoneticsymboljsapi.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>

#include "model/phoneticsymbolmodel.h"
#include "model/phonetictextexport.h"
#include "model/phonetictextimport.h"
#include "nvo/zrt.h"
#include "usage/clientinfo.h"

namespace {

QVariant replyText(const Json::Value& reply) {
    return QVariant(QString::fromStdString(reply.toStyledString()));
}

}  // namespace

ZPhoneticSymbolJsApi::ZPhoneticSymbolJsApi(ZxWebViewContainer* container)
    : nvolite::ZxCommonJsApi(container) {
    connect(this, SIGNAL(openPromeBrowser(QString)), this, SLOT(onOpenPromeBrowser(QString)));
}

ZPhoneticSymbolJsApi::~ZPhoneticSymbolJsApi() = default;

bool ZPhoneticSymbolJsApi::allowRemoteOrigin() {
    return false;
}

bool ZPhoneticSymbolJsApi::allowNavigation() {
    return false;
}

void ZPhoneticSymbolJsApi::getPhoneticText(ZxWebViewJSContext& context) {
    setResult(context, replyText(exportPhoneticText(*ZPhoneticSymbolModel::instance(),
                                                    parseContextArgs(context))));
}

void ZPhoneticSymbolJsApi::setPhoneticText(ZxWebViewJSContext& context) {
    Json::Value reply(Json::objectValue);
    reply["callstatus"] = "ok";
    const PhoneticImport imported = importPhoneticText(parseContextArgs(context));
    if (!imported.items.isEmpty())
        ZPhoneticSymbolModel::instance()->applyPhoneticItems(imported.items, imported.styleType,
                                                             imported.bracketType);
    setResult(context, replyText(reply));
    // Whatever happened, the dialog is done.
    closeWindow();
}

void ZPhoneticSymbolJsApi::changeSize(ZxWebViewJSContext& context) {
    const QMap<QString, QVariant> args = parseContextArgs(context);
    const int width =
        args.contains(QStringLiteral("width")) ? args.value(QStringLiteral("width")).toInt() : 0;
    const int height =
        args.contains(QStringLiteral("height")) ? args.value(QStringLiteral("height")).toInt() : 0;
    if (width != 0 && height != 0) ZPhoneticSymbolModel::instance()->resizeDialog(width, height);
}

void ZPhoneticSymbolJsApi::onOpenPromeBrowser(const QString& url) {
    if (url.isEmpty()) return;
    const ClientInfo& info = ClientInfo::instance();
    const QString dist = QStringLiteral("&app_dist=") + info.appDist;
    const QString version = QStringLiteral("&app_version=") + info.appVersion;
    const QString name = QStringLiteral("&app_name=") + QCoreApplication::applicationName();
    // Built once per process and never replaced: later pages' URLs are ignored (kept on purpose).
    static QString cached;
    if (cached.isEmpty()) cached = url + QStringLiteral("&app_type=client") + name + version + dist;
    QDesktopServices::openUrl(QUrl(cached, QUrl::TolerantMode));
}

void ZPhoneticSymbolJsApi::onGetIsEnterprise(ZxWebViewJSContext& context) {
    QJsonObject flag;
    flag.insert(QStringLiteral("isEnterprise"), zrt::product::isEnterprise() ? 1 : 0);
    const QByteArray bytes = QJsonDocument(flag).toJson(QJsonDocument::Compact);
    setResult(context, QVariant(QString::fromUtf8(bytes.constData())));
}
