// SPDX-License-Identifier: MIT
// The host's plain functions for features, directories, the registry and the user information.
#pragma once

#include <cstdint>

#include "hostexport.h"
#include "nvo/com.h"

// {5D0C5F4E-2B7A-4C61-9E55-0B8A3E1F7C21}
inline constexpr GUID IID_IZRegistry = {
    0x5D0C5F4E, 0x2B7A, 0x4C61, {0x9E, 0x55, 0x0B, 0x8A, 0x3E, 0x1F, 0x7C, 0x21}};
// {A3F1C7B2-6E44-4D0B-8C19-2F5E7A9D4B63}
inline constexpr GUID IID_IZUserInformation = {
    0xA3F1C7B2, 0x6E44, 0x4D0B, {0x8C, 0x19, 0x2F, 0x5E, 0x7A, 0x9D, 0x4B, 0x63}};

using ZRegKey = void*;

// The host registry: a tree of keys holding named values.
struct IZRegistry : IUnknown {
    // The key the registry object was opened on. Valid while the object lives; never null.
    virtual ZRegKey rootKey() = 0;
    // Reads the string value `name` of `key` into *value (a new BSTR the caller frees).
    // S_OK; S_FALSE with *value null when the value is absent; negative on a bad key.
    virtual HRESULT QueryStringValue(ZRegKey key, const char16_t* name, BSTR* value) = 0;
};

// What the host knows about its user and itself.
struct IZUserInformation : IUnknown {
    // The product version text, e.g. "1.0.0.0" (a new BSTR the caller frees).
    virtual HRESULT get_Version(BSTR* version) = 0;
};

// The features _nvo_QueryFeatureState answers for.
enum ZFeatureId : std::uint32_t {
    // On: the add-on reads with the tagging library; off: it asks the host's reading service.
    ZFeatureTaggingLibrary = 0x1000018,
};

// The directories _nvo_GetDirInfo reports.
enum ZDirId : std::int32_t {
    ZDirTaggingLibrary = 2,  // the directory of the tagging library, libPinyinTagger.so
    ZDirDictionaries = 27,   // the directory of its three dictionaries
};

// Registry scopes.
enum ZRegScope : std::int32_t {
    ZRegScopeUser = 1,
    ZRegScopeMachine = 2,
    ZRegScopeProduct = 4,  // the product's own settings, user first, then machine
};

extern "C" {

// 1 when the feature `featureId` is on, 0 when it is off (unknown features are off).
ZHOST_API int _nvo_QueryFeatureState(std::uint32_t featureId);

// Writes the directory `dirId` as a NUL-terminated UTF-16 path into `buffer` (at most
// `capacity` units, NUL included), as the host is configured: with or without a trailing
// separator. `reserved1`, `create` and `reserved2` are accepted for compatibility (0, 1, 1 are
// the usual values). S_OK; E_FAIL for an unknown id (see ZDirId) or a path that does not fit (the
// buffer is then left unchanged).
ZHOST_API HRESULT _nvo_GetDirInfo(std::int32_t dirId, std::int32_t reserved1, std::int32_t create,
                                  char16_t* buffer, std::int32_t capacity, std::int32_t reserved2);

// Reads the integer value `name` of the registry scope `scope` under `subKey` (null = the
// scope's root) into *value. S_OK when the value exists and is an integer; otherwise *value is
// `defaultValue` and the result is S_FALSE (absent) or negative (bad arguments).
ZHOST_API HRESULT _nvo_RegQueryValueI(std::int32_t scope, const char16_t* subKey,
                                      const char16_t* name, std::int32_t defaultValue,
                                      std::int32_t* value);

// Opens the registry of `scope` as an object (AddRef'd into *registry).
ZHOST_API HRESULT _nvo_CreateRegistry(std::int32_t scope, IZRegistry** registry);

// The host's user information object (AddRef'd into *information).
ZHOST_API HRESULT _nvo_GetUserInformation(IZUserInformation** information);

}  // extern "C"
