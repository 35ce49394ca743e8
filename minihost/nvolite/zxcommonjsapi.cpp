// SPDX-License-Identifier: MIT
#include "nvolite/zxcommonjsapi.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaMethod>
#include <QMetaObject>
#include <QPointer>
#include <QUrl>
#include <QWidget>
#include <cmath>
#include <limits>

#include "minihost/nvolite/zxcommonjsapi_p.h"
#include "nvolite/zxcommonwebwidget.h"

namespace nvolite {

namespace {

const char kContextType[] = "ZxWebViewJSContext&";
const char kBrowserSignal[] = "openPromeBrowser";

// JSON numbers arrive as doubles; slots expect integers where the page sent whole numbers.
QVariant fromJson(const QJsonValue& value) {
    switch (value.type()) {
        case QJsonValue::Double: {
            const double number = value.toDouble();
            if (std::isfinite(number) && std::trunc(number) == number) {
                if (number >= std::numeric_limits<int>::min() &&
                    number <= std::numeric_limits<int>::max())
                    return QVariant(static_cast<int>(number));
                if (std::fabs(number) < 9007199254740992.0)  // exactly representable as an integer
                    return QVariant(static_cast<qlonglong>(number));
            }
            return QVariant(number);
        }
        case QJsonValue::Array: {
            QVariantList list;
            for (const QJsonValue& element : value.toArray()) list.append(fromJson(element));
            return list;
        }
        case QJsonValue::Object: {
            QVariantMap map;
            const QJsonObject object = value.toObject();
            for (auto it = object.begin(); it != object.end(); ++it)
                map.insert(it.key(), fromJson(it.value()));
            return map;
        }
        default:
            return value.toVariant();
    }
}

// An http or https address of a host: what a browser shows as a web page.
bool isWebAddress(const QString& text) {
    const QUrl url(text, QUrl::StrictMode);
    return url.isValid() && !url.host().isEmpty() &&
           (url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http"));
}

QVariantMap errorReply(const QString& error) {
    return QVariantMap{{QStringLiteral("ok"), false}, {QStringLiteral("error"), error}};
}

// The slot the page may call by `name`: public or private, but only with the context parameter.
int callableSlot(const QMetaObject* meta, const QByteArray& name) {
    for (int i = meta->methodCount() - 1; i >= 0; --i) {
        const QMetaMethod method = meta->method(i);
        if (method.methodType() == QMetaMethod::Slot && method.name() == name &&
            method.parameterCount() == 1 && method.parameterTypes().constFirst() == kContextType)
            return i;
    }
    return -1;
}

}  // namespace

QVariantMap dispatchBridgeCall(ZxCommonJsApi& api, const QString& method,
                               const QString& argumentsJson, bool fromRemotePage) {
    if (fromRemotePage && !api.allowRemoteOrigin())
        return errorReply(
            QStringLiteral("%1: this bridge does not answer remote pages").arg(method));
    if (method == QLatin1String(kBrowserSignal)) {
        ZxWebViewJSContext context(method, argumentsJson);
        const QString url = api.parseContextArgs(context).value(QStringLiteral("url")).toString();
        // A page opens web pages in the user's browser, nothing else: not the user's files, not
        // another program through a scheme of its own. (An empty address goes through: the
        // bridge decides what to do without one.)
        if (!url.isEmpty() && !isWebAddress(url))
            return errorReply(QStringLiteral("%1: not a web address: %2").arg(method, url));
        emit api.openPromeBrowser(url);
        return QVariantMap{{QStringLiteral("ok"), true}, {QStringLiteral("result"), QVariant()}};
    }
    const int index = callableSlot(api.metaObject(), method.toUtf8());
    if (index < 0) return errorReply(QStringLiteral("%1: no such method").arg(method));
    ZxWebViewJSContext context(method, argumentsJson);
    void* arguments[] = {nullptr, &context};
    // Direct only: the reply is read right after the slot returns.
    QMetaObject::metacall(&api, QMetaObject::InvokeMetaMethod, index, arguments);
    return QVariantMap{
        {QStringLiteral("ok"), true},
        {QStringLiteral("result"), context.hasResult() ? context.result() : QVariant()}};
}

ZxCommonJsApi::ZxCommonJsApi(ZxWebViewContainer* container)
    : d(std::make_unique<ZxCommonJsApiPrivate>()) {
    d->container = container;
}

ZxCommonJsApi::~ZxCommonJsApi() = default;

bool ZxCommonJsApi::init() {
    return true;
}
bool ZxCommonJsApi::allowRemoteOrigin() {
    return true;
}
bool ZxCommonJsApi::allowNavigation() {
    return true;
}

QMap<QString, QVariant> ZxCommonJsApi::parseContextArgs(ZxWebViewJSContext& context) {
    const QJsonDocument document = QJsonDocument::fromJson(context.argumentsJson().toUtf8());
    if (!document.isObject()) return {};
    return fromJson(document.object()).toMap();
}

void ZxCommonJsApi::setResult(ZxWebViewJSContext& context, const QVariant& result) {
    context.d_func()->result = result;
    context.d_func()->hasResult = true;
}

void ZxCommonJsApi::closeWindow() {
    if (!d->container) return;
    // Queued, so that the reply of the call that asked for it still reaches the page.
    QPointer<QWidget> window = d->container->window();
    QMetaObject::invokeMethod(
        this,
        [window] {
            if (window) window->close();
        },
        Qt::QueuedConnection);
}

ZxWebViewContainer* ZxCommonJsApi::container() const {
    return d->container;
}

}  // namespace nvolite
