// SPDX-License-Identifier: MIT
// Initialisation and release of the shared model: once per process, keyed on coreApp.
#include <QWidget>

#include "common/hostapplication.h"
#include "engine/taggerbinding.h"
#include "entry/addonresources.h"
#include "model/phoneticsymbolmodel.h"

void ZPhoneticSymbolModel::initModel(QWidget* window) {
    ZxApplication* app = hostApplication();
    // Without a host application there is no core application to record: stay uninitialised.
    if (coreApp || !app) return;
    installAddonTranslation();
    coreApp = app->coreApplication();
    mainWindow = window;
    tagger = new PinyinTaggerHandle;
    // Not examined: a library that failed to load leaves the handle empty, and the commands
    // show the guide view or write nothing.
    loadPinyinTagger(*tagger, coreApp);
}

void ZPhoneticSymbolModel::releaseModel() {
    if (!coreApp) return;
    if (tagger) {
        unloadPinyinTagger(*tagger);
        delete tagger;
        tagger = nullptr;
    }
    coreApp = nullptr;
    readings.clear();
    candidates.clear();
    uninstallAddonTranslation();
}
