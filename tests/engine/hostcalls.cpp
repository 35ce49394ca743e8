// SPDX-License-Identifier: MIT
#include "hostcalls.h"

#include <QString>

#include "nvo/platform.h"
#include "nvo/runtime.h"

namespace {

std::vector<std::string>& calls() {
    static std::vector<std::string> journal;
    return journal;
}

}  // namespace

namespace hostcalls {

const std::vector<std::string>& journal() {
    return calls();
}

void clear() {
    calls().clear();
}

}  // namespace hostcalls

// The linker sends the add-on's calls here and the __real_ names to the host's functions.
extern "C" {

HRESULT __real__nvo_GetDirInfo(std::int32_t, std::int32_t, std::int32_t, char16_t*, std::int32_t,
                               std::int32_t);
HMODULE __real__Xloadlibrary(const char16_t*, std::uint32_t);

HRESULT __wrap__nvo_GetDirInfo(std::int32_t dirId, std::int32_t reserved1, std::int32_t create,
                               char16_t* buffer, std::int32_t capacity, std::int32_t reserved2) {
    calls().push_back("GetDirInfo " + std::to_string(dirId));
    return __real__nvo_GetDirInfo(dirId, reserved1, create, buffer, capacity, reserved2);
}

HMODULE __wrap__Xloadlibrary(const char16_t* path, std::uint32_t flags) {
    calls().push_back("loadlibrary " + QString::fromUtf16(path).toStdString());
    return __real__Xloadlibrary(path, flags);
}

}  // extern "C"
