// SPDX-License-Identifier: MIT
#include "minihost/nvo/zcoreapplication_p.h"

#include <utility>

#include "minihost/nvo/hostjournal_p.h"

ZCoreApplicationPrivate::ZCoreApplicationPrivate()
    : m_translator(std::make_unique<zrt::ZAppTranslators>()),
      m_dcInfo(std::make_unique<ZDcInfoC>()) {}

ZCoreApplicationPrivate::~ZCoreApplicationPrivate() {
    unregisterAllServices();
}

void ZCoreApplicationPrivate::registerService(const GUID& serviceId, IUnknown* service) {
    if (!service) {
        unregisterService(serviceId);
        return;
    }
    service->AddRef();
    for (auto& entry : m_services) {
        if (entry.first == serviceId) {
            // AddRef before Release: registering the same object again must not destroy it.
            IUnknown* old = entry.second;
            entry.second = service;
            old->Release();
            return;
        }
    }
    m_services.append({serviceId, service});
}

void ZCoreApplicationPrivate::unregisterService(const GUID& serviceId) {
    for (int i = 0; i < m_services.size(); ++i) {
        if (m_services.at(i).first == serviceId) {
            IUnknown* service = m_services.takeAt(i).second;
            service->Release();
            return;
        }
    }
}

IUnknown* ZCoreApplicationPrivate::service(const GUID& serviceId) const {
    for (const auto& entry : m_services)
        if (entry.first == serviceId) return entry.second;
    return nullptr;
}

void ZCoreApplicationPrivate::unregisterAllServices() {
    // Taken out first, so a service whose Release reaches back into the host sees a consistent
    // list.
    const auto services = std::exchange(m_services, {});
    for (const auto& entry : services) entry.second->Release();
}

void ZCoreApplicationPrivate::setTranslator(std::unique_ptr<zrt::ZAppTranslators> translator) {
    m_translator = std::move(translator);
}

void ZCoreApplicationPrivate::setDcInfo(std::unique_ptr<ZDcInfoC> collector) {
    m_dcInfo = std::move(collector);
}

ZCoreApplication::ZCoreApplication() : d(std::make_unique<ZCoreApplicationPrivate>()) {}

ZCoreApplication::~ZCoreApplication() = default;

HRESULT ZCoreApplication::QueryInterface(REFIID iid, void** out) {
    if (!out) return E_POINTER;
    if (iid == IID_IUnknown || iid == IID_IZApplication) {
        *out = static_cast<IZApplication*>(this);
        AddRef();
        return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
}

std::uint32_t ZCoreApplication::AddRef() {
    ++d->references;
    minihost::noteHostCall(QStringLiteral("ZCoreApplication.AddRef() = %1").arg(d->references));
    return d->references;
}

// The application object lives as long as the ZxApplication that owns it: the count only keeps
// track of references (in the host's journal too) and never destroys the object.
std::uint32_t ZCoreApplication::Release() {
    if (d->references > 0) --d->references;
    minihost::noteHostCall(QStringLiteral("ZCoreApplication.Release() = %1").arg(d->references));
    return d->references;
}

slxoldapi::DocumentView* ZCoreApplication::activeView() {
    return d->activeView();
}

HRESULT ZCoreApplication::QueryService(REFIID serviceId, IUnknown** service) {
    if (!service) return E_POINTER;
    *service = d->service(serviceId);
    if (!*service) return E_NOINTERFACE;
    (*service)->AddRef();
    return S_OK;
}

zrt::ZAppTranslators* ZCoreApplication::translator() const {
    return d->translator();
}

ZDcInfoC* ZCoreApplication::getDcInfo() const {
    return d->dcInfo();
}
