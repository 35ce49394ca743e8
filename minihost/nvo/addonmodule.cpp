// SPDX-License-Identifier: MIT
#include "minihost/nvo/addonmodule.h"

#include <dlfcn.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QObject>

#include "nvo/runtime.h"
#include "nvo/zapplication.h"

namespace minihost {

QString addonModulePath(const QString& name) {
    return QCoreApplication::applicationDirPath() + QStringLiteral("/addons/") + name +
           QStringLiteral("/lib") + name + QStringLiteral(".so");
}

bool AddonModule::load(const QString& path) {
    unload();
    m_error.clear();
    if (!QFileInfo(path).isFile()) {
        m_error = path + QStringLiteral(": no such file");
        return false;
    }
    dlerror();  // forget any earlier failure, so the message below is this load's
    m_module = _Xloadlibrary(reinterpret_cast<const char16_t*>(path.utf16()), 0);
    if (!m_module) {
        const char* reason = dlerror();
        m_error = path + QStringLiteral(": ") +
                  (reason ? QString::fromLocal8Bit(reason) : QStringLiteral("cannot be loaded"));
        return false;
    }
    void* function = nullptr;
    if (_Xgetprocaddr(m_module, u"GetAppEntryObject", &function) != S_OK) {
        m_error = path + QStringLiteral(": does not export GetAppEntryObject");
        unload();
        return false;
    }
    m_entryFunction = reinterpret_cast<QObject* (*)()>(function);
    return true;
}

QObject* AddonModule::createEntryObject() const {
    return m_entryFunction ? m_entryFunction() : nullptr;
}

void AddonModule::unload() {
    m_entryFunction = nullptr;
    if (m_module) _Xfreelibrary(m_module);
    m_module = nullptr;
}

AddonSession::AddonSession() = default;

// The entry object goes first: its destructor releases the add-on's model while the module is
// still loaded.
AddonSession::~AddonSession() {
    m_entry.reset();
}

bool AddonSession::open() {
    if (!m_module.load(addonModulePath(QStringLiteral("zphoneticsymbol")))) return false;
    m_entry.reset(m_module.createEntryObject());
    return m_entry != nullptr;
}

bool AddonSession::trigger(const QString& action, ZAppObj* source) {
    return m_entry && triggerCommand(m_entry.get(), action, source);
}

bool triggerCommand(QObject* entry, const QString& action, ZAppObj* source) {
    if (!entry) return false;
    ZAppContext context;
    context.setArgument(QStringLiteral("action"), action);
    ZAppContext* contextArgument = &context;
    // By name, as the host's command system does: the add-on's meta-object records the two
    // parameter types by name only.
    return QMetaObject::invokeMethod(entry, "trigger", Qt::DirectConnection,
                                     QGenericArgument("ZAppObj*", &source),
                                     QGenericArgument("ZAppContext*", &contextArgument));
}

}  // namespace minihost
