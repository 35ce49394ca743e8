// SPDX-License-Identifier: MIT
// The host's side of ZCoreApplication: what host programs and tests set on it.
#pragma once

#include <QList>
#include <QPair>
#include <memory>

#include "hostexport.h"
#include "nvo/dcinfo.h"
#include "nvo/translators.h"
#include "nvo/zapplication.h"

class ZHOST_API ZCoreApplicationPrivate {
public:
    ZCoreApplicationPrivate();
    ~ZCoreApplicationPrivate();
    ZCoreApplicationPrivate(const ZCoreApplicationPrivate&) = delete;
    ZCoreApplicationPrivate& operator=(const ZCoreApplicationPrivate&) = delete;

    // The view activeView() answers (not owned; null = no presentation window).
    void setActiveView(slxoldapi::DocumentView* view) { m_activeView = view; }
    slxoldapi::DocumentView* activeView() const { return m_activeView; }

    // Offers `service` under `serviceId`, taking a reference (AddRef); a service already offered
    // under that id is released and replaced. A null `service` unregisters.
    void registerService(const GUID& serviceId, IUnknown* service);
    // Releases the service offered under `serviceId`; unknown ids are ignored.
    void unregisterService(const GUID& serviceId);
    // The service offered under `serviceId`, without a new reference; null when none.
    IUnknown* service(const GUID& serviceId) const;
    // Releases every service (also done at destruction).
    void unregisterAllServices();

    // Replaces the translation manager; null makes translator() answer null.
    void setTranslator(std::unique_ptr<zrt::ZAppTranslators> translator);
    zrt::ZAppTranslators* translator() const { return m_translator.get(); }
    // Replaces the usage collector; null makes getDcInfo() answer null.
    void setDcInfo(std::unique_ptr<ZDcInfoC> collector);
    ZDcInfoC* dcInfo() const { return m_dcInfo.get(); }

    // References taken by AddRef and not yet given back by Release (starts at 0; the
    // ZxApplication owns the object itself).
    std::uint32_t references = 0;

private:
    slxoldapi::DocumentView* m_activeView = nullptr;
    QList<QPair<GUID, IUnknown*>> m_services;
    std::unique_ptr<zrt::ZAppTranslators> m_translator;
    std::unique_ptr<ZDcInfoC> m_dcInfo;
};
