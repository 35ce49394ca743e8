// SPDX-License-Identifier: MIT
// The host reading service path of tagText (feature 0x1000018 off).
#include "common/comptr.h"
#include "engine/providers.h"
#include "engine/readingblock.h"
#include "nvo/readingservice.h"
#include "nvo/zapplication.h"

namespace {

constexpr std::uint32_t kChinesePrc = 0x804;

}  // namespace

ReadingBlock* tagWithHostService(IZApplication* coreApplication, const char16_t* filtered) {
    if (!coreApplication) return nullptr;
    ComPtr<IUnknown> service;
    coreApplication->QueryService(SID_ZReadingService, service.put());
    const ComPtr<IZReadingTagger> tagger = service.query<IZReadingTagger>(IID_IZReadingTagger);
    if (!tagger) return nullptr;
    ZReadingRecord* record = nullptr;
    const HRESULT status = tagger->TagText(
        filtered, static_cast<std::int32_t>(_Xu2_strlen(filtered)), kChinesePrc, &record);
    ReadingBlock* block = status == S_OK && record ? makeHostBlock(*record) : nullptr;
    _XCoTaskMemFree(record);
    return block;
}
