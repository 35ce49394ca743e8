// SPDX-License-Identifier: MIT
// Undo transactions: every change made between start() and commit() is one undo step.
#pragma once

#include <QString>
#include <memory>

#include "hostexport.h"
#include "nvo/com.h"

struct IZApplication;
class ZFormatTransGuardPrivate;
class ZFormatStaticTransGuardPrivate;

// One undo step, scoped. `start()` opens the step named `name`; `commit()` closes it;
// destroying the guard after start() without commit() rolls the changes back. With
// `recordUndo` false the changes are made but no undo step is recorded.
class ZHOST_API ZFormatTransGuard {
public:
    ZFormatTransGuard(IZApplication* application, const QString& name, bool recordUndo);
    ~ZFormatTransGuard();
    ZFormatTransGuard(const ZFormatTransGuard&) = delete;
    ZFormatTransGuard& operator=(const ZFormatTransGuard&) = delete;

    // Opens the step. S_OK; E_FAIL when a step is already open (then this guard stays idle).
    HRESULT start();
    // Closes the step this guard opened. S_OK; E_FAIL when it opened none.
    HRESULT commit();

private:
    std::unique_ptr<ZFormatTransGuardPrivate> d;
};

// The host's own, process-wide transaction: a step the host itself has open around a larger
// operation (a script, a compound command). While it is active, a command does not start a step
// of its own: its changes join the host's step, and it may rename that step. Steps opened by
// ZFormatTransGuard::start() do not make it active.
class ZHOST_API ZFormatStaticTransGuard {
public:
    static ZFormatStaticTransGuard* instance();
    // True while the host's own step is open.
    bool isActive() const;
    // The host's step's display name (empty when none is open).
    QString name() const;
    // Renames the host's open step; ignored when none is open.
    void setName(const QString& name);

    ZFormatStaticTransGuardPrivate* d_func() const { return d.get(); }

private:
    ZFormatStaticTransGuard();
    ~ZFormatStaticTransGuard();
    std::unique_ptr<ZFormatStaticTransGuardPrivate> d;
};
