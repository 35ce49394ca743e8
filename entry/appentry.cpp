// SPDX-License-Identifier: MIT
#include "entry/appentry.h"

#include <memory>

#include "common/hostapplication.h"
#include "entry/phoneticsymbolobject.h"
#include "model/phoneticsymbolmodel.h"
#include "nvo/ribbon.h"

QObject* GetAppEntryObject() {
    // Held until returned: if initialisation throws, the object is destroyed before the
    // exception leaves.
    auto object = std::make_unique<ZxPhoneticSymbolObject>();
    ZPhoneticSymbolModel* model = ZPhoneticSymbolModel::instance();
    ZxApplication* app = hostApplication();
    ZMainWindow* mainWindow = app ? app->currentMainWindow() : nullptr;
    if (!model->coreApp) model->initModel(mainWindow);
    return object.release();
}
