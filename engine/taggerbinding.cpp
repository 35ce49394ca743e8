// SPDX-License-Identifier: MIT
#include "engine/taggerbinding.h"

#include <string>

#include "common/comptr.h"
#include "engine/taggerentrypoints.h"
#include "nvo/platform.h"
#include "nvo/readingservice.h"
#include "nvo/zapplication.h"

namespace {

constexpr std::int32_t kPathCapacity = 4096;

// Asks the host for directory `dirId` into `buffer` and makes it end in a separator. The result
// of the lookup is deliberately not tested: whatever the buffer holds afterwards (possibly the
// previous directory, possibly nothing) is the directory.
std::u16string directory(std::int32_t dirId, char16_t (&buffer)[kPathCapacity]) {
    _nvo_GetDirInfo(dirId, 0, 1, buffer, kPathCapacity, 1);
    std::size_t length = 0;
    while (length < kPathCapacity && buffer[length]) ++length;
    const bool separated =
        length > 0 && (buffer[length - 1] == u'/' || buffer[length - 1] == u'\\');
    // The separator goes into the buffer itself, where the next lookup may leave it.
    if (!separated && length + 2 <= kPathCapacity) {
        buffer[length++] = u'/';
        buffer[length] = 0;
    }
    return std::u16string(buffer, length);
}

}  // namespace

bool loadPinyinTagger(PinyinTaggerHandle& handle, IZApplication* coreApplication) {
    if (handle.library) return true;
    if (!handle.coreApplication) handle.coreApplication = coreApplication;
    if (_nvo_QueryFeatureState(ZFeatureTaggingLibrary) == 0) {
        handle.library = nullptr;  // the host's reading service answers instead
        return true;
    }

    char16_t buffer[kPathCapacity] = {};
    const std::u16string libraryPath =
        directory(ZDirTaggingLibrary, buffer) + u"libPinyinTagger.so";
    const std::u16string dictionaries = directory(ZDirDictionaries, buffer);
    const std::u16string pinyinDic = dictionaries + u"Pinyin.dic";
    const std::u16string firstRules = dictionaries + u"firrule.dic";
    const std::u16string secondRules = dictionaries + u"secrule.dic";

    auto* cell = new HMODULE(nullptr);
    *cell = _Xloadlibrary(libraryPath.c_str(), 0);
    if (!*cell) {
        delete cell;
        handle.library = nullptr;
        return false;
    }

    ComPtr<IUnknown> service;
    if (handle.coreApplication)
        handle.coreApplication->QueryService(SID_ZReadingService, service.put());
    const ComPtr<IZReadingHost> host = service.query<IZReadingHost>(IID_IZReadingHost);

    // Deliberately unguarded: a library without these entry points is a broken installation.
    taggerabi::entryPoint<taggerabi::LoadPinYinLibraryFn>(
        *cell, taggerabi::kLoadPinYinLibrary)(host.get());
    taggerabi::entryPoint<taggerabi::OpenDictionaryFn>(*cell, taggerabi::kOpenDictionary)(
        pinyinDic.c_str(), firstRules.c_str(), secondRules.c_str());
    handle.library = cell;
    return true;
}

void unloadPinyinTagger(PinyinTaggerHandle& handle) noexcept {
    if (!handle.library) return;
    taggerabi::entryPoint<taggerabi::CloseDictionaryFn>(*handle.library,
                                                        taggerabi::kCloseDictionary)();
    if (*handle.library) _Xfreelibrary(*handle.library);
    delete handle.library;
    handle.library = nullptr;
}
