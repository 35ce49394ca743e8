// SPDX-License-Identifier: MIT
#include "engine/sentencetagging.h"

#include <string>
#include <vector>

#include "common/bstrholder.h"
#include "engine/providers.h"
#include "engine/readingblock.h"
#include "engine/taggablerange.h"
#include "engine/taggerentrypoints.h"
#include "nvo/platform.h"

void tagText(HMODULE* library, IZApplication* coreApplication, BSTR text, ReadingBlock** block) {
    if (!block) return;
    *block = nullptr;

    std::u16string kept;
    std::vector<int> removed;
    const unsigned int length = _XSysStringLen(text);
    for (unsigned int i = 0; i < length; ++i) {
        if (isTaggable(text[i]))
            kept.push_back(text[i]);
        else
            removed.push_back(static_cast<int>(i));
    }
    BstrHolder filtered;
    *filtered.put() = _XSysAllocStringLen(kept.data(), static_cast<unsigned int>(kept.size()));
    // Null when memory ran out; empty when nothing was taggable. Either way there is nothing to
    // ask.
    if (_XSysStringLen(filtered.get()) == 0) return;

    ReadingBlockPtr result(_nvo_QueryFeatureState(ZFeatureTaggingLibrary) == 0
                               ? tagWithHostService(coreApplication, filtered.get())
                               : tagWithLibrary(library, filtered.get()));
    if (result && !removed.empty()) result.reset(widenBlock(*result, removed));
    *block = result.release();
}
