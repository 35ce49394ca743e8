// SPDX-License-Identifier: MIT
#include "minihost/nvolite/bridgechannel.h"

#include "minihost/nvolite/zxcommonjsapi_p.h"
#include "minihost/nvolite/zxwebviewcontainer_p.h"

BridgeChannel::BridgeChannel(ZxWebViewContainer* container) : m_container(container) {}

QVariantMap BridgeChannel::call(const QString& method, const QString& argumentsJson) {
    ZxWebViewContainerPrivate* d = m_container->d_func();
    if (!d->jsApi)
        return QVariantMap{
            {QStringLiteral("ok"), false},
            {QStringLiteral("error"), QStringLiteral("%1: the page has no bridge").arg(method)}};
    // A host driving the bridge without a rendered page speaks for the page it would have shown.
    const QUrl origin = d->page ? d->page->url() : d->url;
    return nvolite::dispatchBridgeCall(*d->jsApi, method, argumentsJson,
                                       !nvolite::isLocalUrl(origin));
}
