// SPDX-License-Identifier: MIT
// The host's runtime functions: BSTR strings, task memory, VARIANT clearing, UTF-16 C strings and
// dynamic loading. Plain C functions exported by libnvo.
#pragma once

#include <cstddef>
#include <cstdint>

#include "hostexport.h"
#include "nvo/com.h"

extern "C" {

// ---- BSTR strings ---------------------------------------------------------------------------
// A new BSTR holding a copy of the NUL-terminated `text` (null `text` gives null). Null on
// exhaustion. Free with _XSysFreeString.
ZHOST_API BSTR _XSysAllocString(const OLECHAR* text);
// A new BSTR of `length` units copied from `text` (which may hold NULs), or zero-filled when
// `text` is null. Always NUL-terminated after the `length` units.
ZHOST_API BSTR _XSysAllocStringLen(const OLECHAR* text, unsigned int length);
// Replaces *bstr by a new BSTR holding `text`, freeing the old one. Returns 1 on success and
// 0 on failure (then *bstr is unchanged).
ZHOST_API int _XSysReAllocString(BSTR* bstr, const OLECHAR* text);
// Frees a BSTR; null is allowed.
ZHOST_API void _XSysFreeString(BSTR bstr);
// The stored length in UTF-16 units (not up to the first NUL); 0 for null.
ZHOST_API unsigned int _XSysStringLen(BSTR bstr);

// ---- task memory ----------------------------------------------------------------------------
// Memory that crosses module boundaries: whoever receives it frees it with _XCoTaskMemFree,
// whatever module allocated it. Null on exhaustion; a size of 0 gives a unique non-null block.
ZHOST_API void* _XCoTaskMemAlloc(std::size_t size);
ZHOST_API void _XCoTaskMemFree(void* block);

// ---- VARIANT --------------------------------------------------------------------------------
// Frees what the VARIANT owns (VT_BSTR, VT_UNKNOWN) and sets it to VT_EMPTY. S_OK, or
// E_INVALIDARG for null.
ZHOST_API HRESULT _MVariantClear(VARIANT* value);

// ---- UTF-16 C strings -----------------------------------------------------------------------
ZHOST_API std::size_t _Xu2_strlen(const char16_t* text);
// The first occurrence of `ch` in `text` (the terminating NUL included when `ch` is 0), or null.
ZHOST_API char16_t* _Xu2_strchr(const char16_t* text, char16_t ch);
ZHOST_API char16_t* _Xu2_strcpy(char16_t* destination, const char16_t* source);
// Copies at most `count` units and pads with NULs up to `count`, like strncpy.
ZHOST_API char16_t* _Xu2_strncpy(char16_t* destination, const char16_t* source, std::size_t count);

// ---- dynamic loading ------------------------------------------------------------------------
using HMODULE = void*;
// Loads the shared library at the UTF-16 path `path` (dlopen, now-binding, local symbols;
// `flags` is reserved and must be 0). Null when it cannot be loaded.
ZHOST_API HMODULE _Xloadlibrary(const char16_t* path, std::uint32_t flags);
// Looks up the exported function whose UTF-16 name is `name` and writes its address to
// *function (null when absent). S_OK when found, E_FAIL otherwise, E_POINTER for null arguments.
ZHOST_API HRESULT _Xgetprocaddr(HMODULE module, const char16_t* name, void** function);
// Unloads a library loaded by _Xloadlibrary. Non-zero on success.
ZHOST_API int _Xfreelibrary(HMODULE module);

}  // extern "C"
