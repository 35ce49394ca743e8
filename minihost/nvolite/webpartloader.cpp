// SPDX-License-Identifier: MIT
#include "minihost/nvolite/webpartloader.h"

#include <dlfcn.h>
#include <QFileInfo>

#include "minihost/nvolite/webpart.h"

namespace nvolite {

namespace {

struct LoadedPart {
    WebPart* part = nullptr;
    QString why;
};

LoadedPart load() {
    LoadedPart loaded;
#ifdef ZPHONETIC_WEB_PART
    // The module sits beside this library, in the build tree and once installed.
    Dl_info self{};
    if (!dladdr(reinterpret_cast<void*>(&webPart), &self) || !self.dli_fname) {
        loaded.why = QStringLiteral("cannot tell where libnvolite is");
        return loaded;
    }
    const QString path = QFileInfo(QString::fromLocal8Bit(self.dli_fname)).absolutePath() +
                         QStringLiteral("/" ZPHONETIC_WEB_PART);
    // Never unloaded: the web engine cannot be taken out of a process once it has run.
    void* module = dlopen(QFile::encodeName(path).constData(), RTLD_NOW | RTLD_LOCAL);
    if (!module) {
        loaded.why = QString::fromLocal8Bit(dlerror());
        return loaded;
    }
    auto* entry = reinterpret_cast<WebPart* (*)()>(dlsym(module, "nvoliteWebPart"));
    if (!entry) {
        loaded.why = QStringLiteral("%1: no nvoliteWebPart").arg(path);
        return loaded;
    }
    loaded.part = entry();
    if (!loaded.part) loaded.why = QStringLiteral("%1: no web part").arg(path);
#else
    loaded.why = QStringLiteral("this build has no web engine");
#endif
    return loaded;
}

}  // namespace

WebPart* webPart(QString* why) {
    static const LoadedPart loaded = load();
    if (!loaded.part && why) *why = loaded.why;
    return loaded.part;
}

}  // namespace nvolite
