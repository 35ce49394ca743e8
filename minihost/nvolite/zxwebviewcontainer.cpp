// SPDX-License-Identifier: MIT
#include "nvolite/zxcommonwebwidget.h"

#include <QVBoxLayout>

#include "minihost/nvolite/bridgechannel.h"
#include "minihost/nvolite/zxwebviewcontainer_p.h"
#include "nvolite/zxcommonjsapi.h"

ZxWebViewContainer::ZxWebViewContainer(QWidget* parent)
    : QWidget(parent), d(std::make_unique<ZxWebViewContainerPrivate>()) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
}

ZxWebViewContainer::~ZxWebViewContainer() {
    // The page goes first (it still uses the object its channel publishes), then the bridge.
    d->page.reset();
    delete d->bridge;
    delete d->jsApi;
}
