// SPDX-License-Identifier: MIT
#include "minihost/slxcore/liveobjects.h"

#include "minihost/slxcore/hostobject_p.h"

namespace minihost {
namespace {

// The object model runs on the GUI thread only, so plain globals suffice. A list, in the order
// the objects were made, from which each leaves in constant time however many are alive.
std::list<HostObjectBase*>& registry() {
    static std::list<HostObjectBase*> objects;
    return objects;
}
int g_overReleases = 0;

}  // namespace

HostObjectBase::HostObjectBase(const char* kind, bool ownedByHost)
    : m_kind(kind),
      m_hostHolds(ownedByHost),
      m_clientRefs(ownedByHost ? 0 : 1),
      m_registered(registry().insert(registry().end(), this)) {}

HostObjectBase::~HostObjectBase() {
    registry().erase(m_registered);
}

std::uint32_t HostObjectBase::addClientReference() {
    return ++m_clientRefs + (m_hostHolds ? 1 : 0);
}

bool HostObjectBase::dropClientReference(std::uint32_t* remaining) {
    if (m_clientRefs == 0) {
        ++g_overReleases;
        *remaining = m_hostHolds ? 1 : 0;
        return false;
    }
    --m_clientRefs;
    *remaining = m_clientRefs + (m_hostHolds ? 1 : 0);
    return *remaining == 0;
}

bool HostObjectBase::dropHostReference() {
    m_hostHolds = false;
    return m_clientRefs == 0;
}

int liveObjectCount() {
    int count = 0;
    for (HostObjectBase* object : registry()) count += static_cast<int>(object->clientReferences());
    return count;
}

std::vector<IUnknown*> liveObjects() {
    std::vector<IUnknown*> result;
    for (HostObjectBase* object : registry())
        if (object->clientReferences() > 0) result.push_back(object->asUnknown());
    return result;
}

QStringList liveObjectKinds() {
    QStringList kinds;
    for (HostObjectBase* object : registry())
        if (object->clientReferences() > 0) kinds << QString::fromLatin1(object->kind());
    return kinds;
}

int overReleaseCount() {
    return g_overReleases;
}

}  // namespace minihost
