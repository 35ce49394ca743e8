// SPDX-License-Identifier: MIT
// The reference counting every object of the stand-in object model shares, with the bookkeeping
// behind liveobjects.h.
#pragma once

#include <cstdint>
#include <list>

#include "nvo/com.h"

namespace minihost {

// Registry entry of one object; the registry lists the objects with client references.
class HostObjectBase {
public:
    HostObjectBase(const char* kind, bool ownedByHost);
    virtual ~HostObjectBase();
    HostObjectBase(const HostObjectBase&) = delete;
    HostObjectBase& operator=(const HostObjectBase&) = delete;

    const char* kind() const { return m_kind; }
    virtual IUnknown* asUnknown() = 0;
    std::uint32_t clientReferences() const { return m_clientRefs; }

protected:
    std::uint32_t addClientReference();
    // True when the object must now be destroyed.
    bool dropClientReference(std::uint32_t* remaining);
    // For objects the host owns: true when the host's own reference was the last one.
    bool dropHostReference();

private:
    const char* m_kind;
    bool m_hostHolds;
    std::uint32_t m_clientRefs = 0;
    std::list<HostObjectBase*>::iterator m_registered;  // this object's entry in the registry
};

// IUnknown for a host object answering interface `Iface`, and its id `iid` (null: only IUnknown).
template <typename Iface>
class HostObject : public Iface, public HostObjectBase {
public:
    HostObject(const char* kind, const GUID* iid, bool ownedByHost = false)
        : HostObjectBase(kind, ownedByHost), m_iid(iid) {}

    HRESULT QueryInterface(REFIID iid, void** out) override {
        if (!out) return E_POINTER;
        if (iid == IID_IUnknown || (m_iid && iid == *m_iid) || answersPrivately(iid)) {
            AddRef();
            *out = static_cast<Iface*>(this);
            return S_OK;
        }
        *out = nullptr;
        return E_NOINTERFACE;
    }
    std::uint32_t AddRef() override { return addClientReference(); }
    std::uint32_t Release() override {
        std::uint32_t remaining = 0;
        if (dropClientReference(&remaining)) delete this;
        return remaining;
    }
    IUnknown* asUnknown() override { return static_cast<Iface*>(this); }

protected:
    // Extra ids an object answers inside the host library (never published).
    virtual bool answersPrivately(REFIID) const { return false; }

private:
    const GUID* m_iid;
};

}  // namespace minihost
