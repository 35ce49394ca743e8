// SPDX-License-Identifier: MIT
#include "nvolite/zxcommonwebwidget.h"

#include <QVBoxLayout>
#include <QWebChannel>
#include <QWebEngineView>

#include "minihost/nvolite/bridgechannel.h"
#include "minihost/nvolite/localcontent.h"
#include "minihost/nvolite/zxcommonjsapi_p.h"
#include "minihost/nvolite/zxwebviewcontainer_p.h"
#include "nvolite/zxcommonjsapi.h"

ZxWebViewContainer::ZxWebViewContainer(QWidget* parent)
    : QWidget(parent), d(std::make_unique<ZxWebViewContainerPrivate>()) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
}

ZxWebViewContainer::~ZxWebViewContainer() {
    // The page goes first, while its view is whole: deleted as the view's child, it would tear
    // down its rendering widget inside the view's destructor. Then the view, the channel and the
    // objects it publishes, and the bridge last.
    delete d->page;
    delete d->view;
    delete d->channel;
    delete d->bridge;
    delete d->jsApi;
}
