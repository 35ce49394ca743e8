// SPDX-License-Identifier: MIT
// How a host program loads an add-on and runs its commands: dlopen the module, call its
// GetAppEntryObject, and invoke the entry object's "trigger" by meta-method name.
#pragma once

#include <QString>
#include <memory>

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

// The add-on loaded as a host loads it, for as long as a program (or one of its windows) works
// with it: the module <application directory>/addons/zphoneticsymbol/, one entry object,
// commands triggered by name, and the entry object destroyed when the session ends (which
// releases the add-on's model; the module stays loaded, see AddonModule).
class ZHOST_API AddonSession {
public:
    AddonSession();
    ~AddonSession();
    AddonSession(const AddonSession&) = delete;
    AddonSession& operator=(const AddonSession&) = delete;

    // Loads the module and makes the entry object. False with errorString() set
    // ("<module path>: <reason>").
    bool open();
    bool isOpen() const { return m_entry != nullptr; }
    QString errorString() const { return m_module.errorString(); }

    // Runs the command `action` ("PhoneticOneKey", "PhoneticSymbol") through the entry object's
    // "trigger", from the command source `source` (may be null). False when no entry object is
    // open or it has no such method.
    bool trigger(const QString& action, ZAppObj* source = nullptr);

private:
    AddonModule m_module;
    std::unique_ptr<QObject> m_entry;
};

// Invokes `entry`'s meta method "trigger(ZAppObj*,ZAppContext*)" by name, directly, with a
// context whose "action" is `action` and the command source `source` (may be null). False when
// the object has no such method.
ZHOST_API bool triggerCommand(QObject* entry, const QString& action, ZAppObj* source = nullptr);

}  // namespace minihost
