// SPDX-License-Identifier: MIT
// "PhoneticOneKey": one new text box of readings per selected text, as one undo step.
#include <vector>

#include "common/comptr.h"
#include "common/hostapplication.h"
#include "document/joinreadings.h"
#include "document/phonetictransaction.h"
#include "document/textaccess.h"
#include "engine/readings.h"
#include "model/phoneticsymbolmodel.h"
#include "slxcore/slxoldapi.h"
#include "usage/usageevents.h"

using slxoldapi::Shape;
using slxoldapi::TextFrame;
using slxoldapi::TextRange;

namespace {
constexpr int kCharWidth = 12;
}  // namespace

void ZPhoneticSymbolModel::applyOneKey() {
    // Every invocation counts, also one that ends in the warning.
    postUsageEvent(QStringLiteral("action"), QStringLiteral("onekey"));

    ZxApplication* application = hostApplication();
    if (!application) return;
    QStringList texts;
    readSelectedTexts(coreApp, texts);
    if (texts.isEmpty()) {
        warnNothingToAnnotate();
        return;
    }

    PhoneticTransaction transaction(application, tr("set phonetic symbol"));
    QMap<QChar, QStringList> alternatives;  // kept across the texts of this command
    std::vector<ComPtr<Shape>> createdShapes;
    int lastResult = 0;
    for (const QString& text : texts) {
        QStringList readings;
        tagAlternatives(tagger, text, alternatives);
        tagReadings(tagger, text, &alternatives, readings);
        if (readings.isEmpty()) continue;
        const QString joined = joinReadings(readings);
        if (joined.isEmpty()) continue;

        ComPtr<Shape> shape;
        lastResult = insertReadingTextBox(coreApp, joined, nullptr, kReadingBoxLeft, kReadingBoxTop,
                                          shape.put(), kCharWidth);
        if (!lastResult) continue;
        ComPtr<TextFrame> frame;
        shape->get_TextFrame(frame.put());
        ComPtr<TextRange> range;
        if (frame) frame->get_TextRange(range.put());
        // The 700-point box shrinks to its text.
        if (frame) frame->put_AutoSize(1);
        createdShapes.push_back(ComPtr<Shape>::share(shape.get()));
    }

    if (!createdShapes.empty()) {
        createdShapes.front()->Select(-1);
        for (std::size_t i = 1; i < createdShapes.size(); ++i) createdShapes[i]->Select(0);
        createdShapes.clear();
    }
    transaction.commit();
    // After the commit, so boxes made for earlier texts stay; it speaks of the last attempt only.
    if (lastResult == 0) warnNothingToAnnotate();
}
