// SPDX-License-Identifier: MIT
// A core application for the engine's tests: an IZApplication that offers the host's real
// reading service (backed by a scripted reading function) and counts what is asked of it.
#pragma once

#include <map>

#include "minihost/nvo/readingservice.h"
#include "nvo/readingservice.h"
#include "nvo/zapplication.h"

// An object that answers IUnknown only: a service that cannot be queried for anything.
class PlainUnknown final : public IUnknown {
public:
    HRESULT QueryInterface(REFIID iid, void** out) override {
        *out = nullptr;
        if (iid != IID_IUnknown) return E_NOINTERFACE;
        *out = this;
        AddRef();
        return S_OK;
    }
    std::uint32_t AddRef() override { return ++references; }
    std::uint32_t Release() override { return --references; }
    int references = 0;
};

class FakeCoreApplication final : public IZApplication {
public:
    // `readings` maps a character to what the reading service answers for it; a character
    // without an entry makes the whole text fail.
    explicit FakeCoreApplication(std::map<char16_t, QString> readings = {})
        : m_service(minihost::createReadingService(
              [this, readings](const QString& text, QVector<minihost::HostReading>& out) {
                  serviceTexts.append(text);
                  for (QChar character : text) {
                      const auto found = readings.find(character.unicode());
                      if (found == readings.end()) return false;
                      out.append({found->second, 1});
                  }
                  return true;
              })) {}
    ~FakeCoreApplication() { m_service->Release(); }

    HRESULT QueryInterface(REFIID iid, void** out) override {
        *out = nullptr;
        if (iid != IID_IUnknown && iid != IID_IZApplication) return E_NOINTERFACE;
        *out = this;
        AddRef();
        return S_OK;
    }
    std::uint32_t AddRef() override { return ++references; }
    std::uint32_t Release() override { return --references; }
    slxoldapi::DocumentView* activeView() override { return nullptr; }
    HRESULT QueryService(REFIID serviceId, IUnknown** service) override {
        ++serviceQueries;
        *service = nullptr;
        if (serviceId != SID_ZReadingService) return E_NOINTERFACE;
        IUnknown* offered = plainService ? plainService : offerService ? m_service : nullptr;
        if (!offered) return E_NOINTERFACE;
        offered->AddRef();
        *service = offered;
        return S_OK;
    }

    bool offerService = true;              // false: the reading service lookup fails
    PlainUnknown* plainService = nullptr;  // set: hand this out instead of the service
    int references = 0;                    // AddRef minus Release on this object
    int serviceQueries = 0;
    QStringList serviceTexts;  // every text the reading service was asked to read

private:
    IUnknown* m_service;
};
