// SPDX-License-Identifier: MIT
// The model's dialog operations: opening the dialog for the selection (or its guide view, or
// the warning), and sizing it.
#include "common/comptr.h"
#include "common/hostapplication.h"
#include "dialog/phoneticsymbolwebwindow.h"
#include "document/textaccess.h"
#include "engine/readings.h"
#include "model/phoneticsymbolmodel.h"
#include "nvo/zlitestyle.h"
#include "slxcore/slxoldapi.h"
#include "usage/usageevents.h"

void ZPhoneticSymbolModel::openPhoneticDialog() {
    if (dialog) return;
    postUsageEvent(QStringLiteral("action"), QStringLiteral("symbol"));
    bool guide = true;
    if (tagger && coreApp) {
        readings.clear();
        candidates.clear();
        slxoldapi::Shape* selected = nullptr;
        // `style` is not reset first: what cannot be read for this selection keeps its last value.
        readSelectionStyle(coreApp, style, selected);
        if (selected) {
            guide = false;
            bool readable = false;
            {
                const ComPtr<slxoldapi::Shape> shape = ComPtr<slxoldapi::Shape>::adopt(selected);
                if (!style.text.isEmpty()) {
                    if (style.text.size() > kDialogTextUnits) style.text.truncate(kDialogTextUnits);
                    tagAlternatives(tagger, style.text, candidates);
                    tagReadings(tagger, style.text, &candidates, readings);
                    readable = !readings.isEmpty() && !candidates.isEmpty();
                }
            }
            if (readable) {
                dialog = new ZPhoneticSymbolWebWindow(mainWindow);
                dialog->showPinyinPage();
            } else {
                warnNothingToAnnotate();
            }
        }
    }
    if (guide) {
        dialog = new ZPhoneticSymbolWebWindow(mainWindow);
        dialog->showGuidePage();
    }
    if (dialog) connect(dialog, SIGNAL(signalClose()), this, SLOT(onWindowClose()));
}

void ZPhoneticSymbolModel::resizeDialog(int width, int height) {
    if (!dialog) return;
    // The extra pixel each way is deliberate.
    dialog->setFixedSize(static_cast<int>(ZLiteStyle::dpiScaled(width + 1)),
                         static_cast<int>(ZLiteStyle::dpiScaled(height + 1)));
}
