// SPDX-License-Identifier: MIT
#include "minihost/nvolite/zxcommonjsapi_p.h"
#include "nvolite/zxcommonjsapi.h"

ZxWebViewJSContext::ZxWebViewJSContext(const QString& method, const QString& argumentsJson)
    : d(std::make_unique<ZxWebViewJSContextPrivate>()) {
    d->method = method;
    d->argumentsJson = argumentsJson;
}

ZxWebViewJSContext::~ZxWebViewJSContext() = default;

QString ZxWebViewJSContext::method() const {
    return d->method;
}
QString ZxWebViewJSContext::argumentsJson() const {
    return d->argumentsJson;
}
bool ZxWebViewJSContext::hasResult() const {
    return d->hasResult;
}
QVariant ZxWebViewJSContext::result() const {
    return d->result;
}
