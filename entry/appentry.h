// SPDX-License-Identifier: MIT
// The add-on module's one exported function.
#pragma once

class QObject;

// A new ZxPhoneticSymbolObject with no parent, owned by the caller from then on. The first call
// in a process (or the first after an entry object was destroyed) also initialises the shared
// model: translations, core application, main window, tagging library. Later calls only ask the
// application for its main window. Exported unmangled; the only symbol the module exports.
extern "C" __attribute__((visibility("default"))) QObject* GetAppEntryObject();
