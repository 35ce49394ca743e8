// SPDX-License-Identifier: MIT
// The undo step a writing command works in: "set phonetic symbol".
#pragma once

#include <QString>

#include "nvo/transaction.h"

class ZxApplication;

// Opens the command's own undo step named `name`, or, while the host has its own transaction
// open, joins that one and renames it to `name` instead of starting a step.
class PhoneticTransaction {
public:
    PhoneticTransaction(ZxApplication* application, const QString& name);
    PhoneticTransaction(const PhoneticTransaction&) = delete;
    PhoneticTransaction& operator=(const PhoneticTransaction&) = delete;

    // Commits the command's own step; leaves the host's transaction open when it joined one.
    // Without commit() the step is rolled back when this object goes.
    void commit();

private:
    ZFormatTransGuard m_guard;
};
