// SPDX-License-Identifier: MIT
// The public controls over the private sides of ZxApplication, ZCoreApplication and the usage
// collector. (The ribbon's controls live with the ribbon, in ribbon.cpp.)
#include "minihost/nvo/hostcontrol.h"

#include <memory>

#include "minihost/nvo/dcinfo_p.h"
#include "minihost/nvo/translators_p.h"
#include "minihost/nvo/zcoreapplication_p.h"
#include "minihost/nvo/zxapplication_p.h"

namespace {

ZxApplicationPrivate* application() {
    ZxApplication* app = minihost::hostApplication();
    return app ? app->d_func() : nullptr;
}

ZCoreApplicationPrivate* core() {
    ZxApplication* app = minihost::hostApplication();
    return app ? app->coreApplication()->d_func() : nullptr;
}

ZCoreApplicationPrivate* core(const ZCoreApplication* application) {
    return application ? application->d_func() : nullptr;
}

ZDcInfoCPrivate* collector() {
    ZxApplication* app = minihost::hostApplication();
    ZDcInfoC* dcInfo = app ? app->coreApplication()->getDcInfo() : nullptr;
    return dcInfo ? dcInfo->d_func() : nullptr;
}

zrt::ZAppTranslatorsPrivate* translators() {
    ZxApplication* app = minihost::hostApplication();
    zrt::ZAppTranslators* translator = app ? app->coreApplication()->translator() : nullptr;
    return translator ? translator->d_func() : nullptr;
}

}  // namespace

namespace minihost {

ZxApplication* hostApplication() {
    return qobject_cast<ZxApplication*>(QCoreApplication::instance());
}

void setCurrentMainWindow(ZMainWindow* window) {
    if (ZxApplicationPrivate* app = application()) app->setCurrentMainWindow(window);
}

void setActiveView(slxoldapi::DocumentView* view) {
    if (ZCoreApplicationPrivate* c = core()) c->setActiveView(view);
}

slxoldapi::DocumentView* activeView() {
    ZCoreApplicationPrivate* c = core();
    return c ? c->activeView() : nullptr;
}

void registerService(const GUID& serviceId, IUnknown* service) {
    if (ZCoreApplicationPrivate* c = core()) c->registerService(serviceId, service);
}

void unregisterService(const GUID& serviceId) {
    if (ZCoreApplicationPrivate* c = core()) c->unregisterService(serviceId);
}

IUnknown* service(const GUID& serviceId) {
    ZCoreApplicationPrivate* c = core();
    return c ? c->service(serviceId) : nullptr;
}

void registerService(ZCoreApplication* application, const GUID& serviceId, IUnknown* service) {
    if (ZCoreApplicationPrivate* c = core(application)) c->registerService(serviceId, service);
}

void unregisterService(ZCoreApplication* application, const GUID& serviceId) {
    if (ZCoreApplicationPrivate* c = core(application)) c->unregisterService(serviceId);
}

int installedTranslations(const QString& directory) {
    zrt::ZAppTranslatorsPrivate* t = translators();
    return t ? t->installedCount(directory) : 0;
}

void setTranslatorAvailable(bool available) {
    if (ZCoreApplicationPrivate* c = core())
        c->setTranslator(available ? std::make_unique<zrt::ZAppTranslators>() : nullptr);
}

void setUsageCollectorAvailable(bool available) {
    if (ZCoreApplicationPrivate* c = core())
        c->setDcInfo(available ? std::make_unique<ZDcInfoC>() : nullptr);
}

bool isHeadless() {
    ZxApplicationPrivate* app = application();
    return !app || app->headless();
}

void setShowMessageBoxes(bool show) {
    if (ZxApplicationPrivate* app = application()) app->showMessageBoxes = show;
}

bool showsMessageBoxes() {
    ZxApplicationPrivate* app = application();
    return app && app->showMessageBoxes;
}

void setUnshownMessageBoxAnswer(int answer) {
    if (ZxApplicationPrivate* app = application()) app->headlessAnswer = answer;
}

QList<RecordedMessage> messagesShown() {
    ZxApplicationPrivate* app = application();
    return app ? app->messages : QList<RecordedMessage>();
}

void clearMessagesShown() {
    if (ZxApplicationPrivate* app = application()) app->messages.clear();
}

QList<QUrl> urlsOpened() {
    ZxApplicationPrivate* app = application();
    return app ? app->openedUrls : QList<QUrl>();
}

void clearUrlsOpened() {
    if (ZxApplicationPrivate* app = application()) app->openedUrls.clear();
}

QList<UsageEvent> usageEvents() {
    ZDcInfoCPrivate* c = collector();
    return c ? c->events : QList<UsageEvent>();
}

void clearUsageEvents() {
    if (ZDcInfoCPrivate* c = collector()) c->events.clear();
}

}  // namespace minihost
