// SPDX-License-Identifier: MIT
// Loading the web part (webpart.h) on first use.
#pragma once

#include <QString>

namespace nvolite {

class WebPart;

// The web part, loaded from the module beside libnvolite the first time it is asked for; the
// module stays loaded until the process ends. Null when it cannot be had, with *why saying why
// ("this build has no web engine", or the loader's own message, which names the file); a failed
// load is not tried again.
WebPart* webPart(QString* why);

}  // namespace nvolite
