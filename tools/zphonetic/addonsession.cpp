// SPDX-License-Identifier: MIT
#include "addonsession.h"

#include <QObject>

AddonSession::AddonSession() = default;

// The entry object goes first: its destructor releases the add-on's model while the module is
// still loaded (the module itself stays loaded until the process ends, as in any host).
AddonSession::~AddonSession() {
    m_entry.reset();
}

bool AddonSession::open() {
    if (!m_module.load(minihost::addonModulePath(QStringLiteral("zphoneticsymbol")))) return false;
    m_entry.reset(m_module.createEntryObject());
    return m_entry != nullptr;
}

bool AddonSession::trigger(const QString& action) {
    return m_entry && minihost::triggerCommand(m_entry.get(), action);
}
