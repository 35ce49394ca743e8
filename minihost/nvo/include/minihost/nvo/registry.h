// SPDX-License-Identifier: MIT
// The host's side of the registry and of the user information: writing values, making the
// queries fail, and counting the objects handed out.
//
// The registry is an INI file, <config>/registry.ini, with one group per scope ("User",
// "Machine"); a sub-key is a nested group ("Office\\Common" -> "User/Office/Common"). The
// product scope (4) reads the user's value first, then the machine's.
#pragma once

#include <QString>
#include <QVariant>

#include "hostexport.h"

namespace minihost {

// Writes `name` under `subKey` (empty = the scope's root) of scope 1 (user) or 2 (machine);
// an invalid `value` removes it. Other scopes are ignored.
ZHOST_API void setRegistryValue(int scope, const QString& subKey, const QString& name,
                                const QVariant& value);
// The path of the registry file.
ZHOST_API QString registryPath();

// False makes _nvo_CreateRegistry fail (E_FAIL, no object), as a host without a registry does.
ZHOST_API void setRegistryAvailable(bool available);
// False makes _nvo_GetUserInformation fail (E_FAIL, no object).
ZHOST_API void setUserInformationAvailable(bool available);

// Registry and user information objects handed out and not yet released to zero.
ZHOST_API int liveIdentityObjects();

}  // namespace minihost
