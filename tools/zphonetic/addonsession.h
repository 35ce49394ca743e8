// SPDX-License-Identifier: MIT
// The add-on loaded as a host loads it, for one subcommand: the module from
// <bin>/addons/zphoneticsymbol/, one entry object, commands triggered by name, and the entry
// object destroyed when the session ends (which releases the add-on's model).
#pragma once

#include <QString>
#include <memory>

#include "minihost/nvo/addonmodule.h"

class QObject;

class AddonSession {
public:
    AddonSession();
    ~AddonSession();
    AddonSession(const AddonSession&) = delete;
    AddonSession& operator=(const AddonSession&) = delete;

    // Loads the module and makes the entry object. False with errorString() set
    // ("<module path>: <reason>").
    bool open();
    QString errorString() const { return m_module.errorString(); }

    // Runs the command `action` ("PhoneticOneKey", "PhoneticSymbol") through the entry object's
    // "trigger". False when no entry object is open or it has no such method.
    bool trigger(const QString& action);

private:
    minihost::AddonModule m_module;
    std::unique_ptr<QObject> m_entry;
};
