// SPDX-License-Identifier: MIT
// The add-on's entry object and its command dispatch.
#pragma once

#include <QObject>

class ZAppObj;
class ZAppContext;

// What the host holds for the add-on. Its only meta method, `trigger`, is invoked by name by the
// host's command system. Destroying any entry object releases the shared model (the tagging
// library, the readings, the translations) for all of them: initialisation is per process, not
// per object, and a later GetAppEntryObject initialises again.
class ZxPhoneticSymbolObject : public QObject {
    Q_OBJECT
public:
    ZxPhoneticSymbolObject();
    // Releases the model when it is initialised (ZPhoneticSymbolModel::releaseModel).
    ~ZxPhoneticSymbolObject() override;

    // Runs the command named by the context's "action". `obj` is not used.
    Q_INVOKABLE void trigger(ZAppObj* obj, ZAppContext* context);
};

// "PhoneticSymbol" opens the dialog, "PhoneticOneKey" applies readings at once; the action is
// compared as a QVariant, so a string must match exactly, case included. Any other action, no
// action, or no context does nothing.
void dispatchCommand(ZAppObj* obj, ZAppContext* context);
