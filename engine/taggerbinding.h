// SPDX-License-Identifier: MIT
// Loading the tagging library libPinyinTagger.so and its three dictionaries, once per process.
#pragma once

#include "nvo/runtime.h"

struct IZApplication;

// The loaded tagging library, owned by the model.
struct PinyinTaggerHandle {
    // An owned heap cell holding the handle _Xloadlibrary returned; null while no library is
    // loaded (feature off, load failed, or unloaded). Never a cell holding null.
    HMODULE* library = nullptr;
    // The host core application; set by the first load and never changed afterwards.
    IZApplication* coreApplication = nullptr;
};

// Loads and opens the tagging library into `handle` unless it holds one already. With feature
// 0x1000018 off nothing is loaded (the host's reading service answers instead) and the result is
// true. False only when the library could not be loaded; `handle.library` is then null.
bool loadPinyinTagger(PinyinTaggerHandle& handle, IZApplication* coreApplication);

// Closes the dictionaries and unloads the library; nothing for an empty handle. Never throws.
void unloadPinyinTagger(PinyinTaggerHandle& handle) noexcept;
