// SPDX-License-Identifier: MIT
// Creation of the model and the dialog's close notification. Initialisation and release are the
// entry's (entry/modellifecycle.cpp); the commands belong to their own folders.
#include "model/phoneticsymbolmodel.h"

#include "common/hostapplication.h"
#include "dialog/phoneticsymbolwebwindow.h"

ZPhoneticSymbolModel::ZPhoneticSymbolModel() : QObject(nullptr) {}

ZPhoneticSymbolModel* ZPhoneticSymbolModel::instance() {
    // A function-local static is initialised exactly once even under concurrent first calls.
    // Never deleted, deliberately: host objects may still call into the model during shutdown.
    static ZPhoneticSymbolModel* const model = new ZPhoneticSymbolModel;
    return model;
}

void ZPhoneticSymbolModel::onWindowClose() {
    if (!dialog) return;
    dialog->deleteLater();
    dialog = nullptr;
}

void ZPhoneticSymbolModel::warnNothingToAnnotate() {
    if (ZxApplication* application = hostApplication())
        application->messageBox(tr("please select one character at least"),
                                ZxApplication::IconWarning | ZxApplication::ButtonsOk);
}
