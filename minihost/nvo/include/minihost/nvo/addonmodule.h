// SPDX-License-Identifier: MIT
// How a host program loads an add-on and runs its commands: dlopen the module, call its
// GetAppEntryObject, and invoke the entry object's "trigger" by meta-method name.
#pragma once

#include <QString>

#include "hostexport.h"

class QObject;
class ZAppObj;

namespace minihost {

// <application directory>/addons/<name>/lib<name>.so, where a host looks for add-on `name`.
ZHOST_API QString addonModulePath(const QString& name);

// One loaded add-on module. The library stays loaded when this object goes, as a host keeps its
// add-ons until it exits (their objects and Qt's records of their classes may outlive any one
// caller); unload() unloads it explicitly.
class ZHOST_API AddonModule {
public:
    AddonModule() = default;
    AddonModule(const AddonModule&) = delete;
    AddonModule& operator=(const AddonModule&) = delete;

    // Loads the module at `path` and finds its GetAppEntryObject. False with errorString() set
    // ("<path>: <reason>") when the file cannot be loaded or does not export the function.
    bool load(const QString& path);
    bool isLoaded() const { return m_entryFunction != nullptr; }
    QString errorString() const { return m_error; }

    // A new entry object from GetAppEntryObject, owned by the caller; null when not loaded.
    QObject* createEntryObject() const;
    // Unloads the module (after the caller destroyed every object it made).
    void unload();

private:
    void* m_module = nullptr;
    QObject* (*m_entryFunction)() = nullptr;
    QString m_error;
};

// Invokes `entry`'s meta method "trigger(ZAppObj*,ZAppContext*)" by name, directly, with a
// context whose "action" is `action` and the command source `source` (may be null). False when
// the object has no such method.
ZHOST_API bool triggerCommand(QObject* entry, const QString& action, ZAppObj* source = nullptr);

}  // namespace minihost
