// SPDX-License-Identifier: MIT
#include "document/phonetictransaction.h"

#include "nvo/zapplication.h"

PhoneticTransaction::PhoneticTransaction(ZxApplication* application, const QString& name)
    : m_guard(application->coreApplication(), name, true) {
    ZFormatStaticTransGuard* hostTransaction = ZFormatStaticTransGuard::instance();
    if (hostTransaction->isActive())
        hostTransaction->setName(name);
    else
        m_guard.start();
}

void PhoneticTransaction::commit() {
    if (!ZFormatStaticTransGuard::instance()->isActive()) m_guard.commit();
}
