// SPDX-License-Identifier: MIT
#include "engine/sentencetagging.h"

#include <string>
#include <vector>

#include "common/bstrholder.h"
#include "engine/providers.h"
#include "engine/readingblock.h"
#include "engine/taggablerange.h"
#include "nvo/platform.h"

namespace {

constexpr std::uint32_t kFeatureTaggingLibrary = 0x1000018;

}  // namespace

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
    const unsigned int filteredLength = _XSysStringLen(filtered.get());
    bool taggable = filteredLength > 0;
    for (unsigned int i = 0; taggable && i < filteredLength; ++i)
        taggable = isTaggable(filtered.get()[i]);
    if (!taggable) return;

    ReadingBlockPtr result(_nvo_QueryFeatureState(kFeatureTaggingLibrary) == 0
                               ? tagWithHostService(coreApplication, filtered.get())
                               : tagWithLibrary(library, filtered.get()));
    if (result && !removed.empty()) result.reset(widenBlock(*result, removed));
    *block = result.release();
}
