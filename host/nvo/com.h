// SPDX-License-Identifier: MIT
// The COM-like conventions every host object model interface follows.
//
// - Every interface derives from IUnknown: QueryInterface, AddRef and Release stand first and in
//   that order, and a published interface never changes its slot order.
// - Every other operation returns an HRESULT: a signed 32-bit status, negative = failure.
// - An operation that hands out an object writes it to an out-pointer already AddRef'd; the
//   receiver Releases it exactly once.
// - Strings cross interfaces as BSTR: UTF-16, NUL-terminated, with its length in bytes stored in
//   the 32 bits before the first character. Only the _XSys* functions of nvo/runtime.h make and
//   free them.
#pragma once

#include <cstdint>
#include <cstring>

using HRESULT = std::int32_t;
using OLECHAR = char16_t;
using BSTR = OLECHAR*;

constexpr HRESULT S_OK = 0;
constexpr HRESULT S_FALSE = 1;
constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001u);
constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002u);
constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003u);
constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005u);
constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000Eu);
constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057u);

constexpr bool SUCCEEDED(HRESULT hr) {
    return hr >= 0;
}
constexpr bool FAILED(HRESULT hr) {
    return hr < 0;
}

// A 16-byte interface or service id, written {Data1-Data2-Data3-Data4[0..1]-Data4[2..7]}.
struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};

constexpr bool operator==(const GUID& a, const GUID& b) {
    if (a.Data1 != b.Data1 || a.Data2 != b.Data2 || a.Data3 != b.Data3) return false;
    for (int i = 0; i < 8; ++i)
        if (a.Data4[i] != b.Data4[i]) return false;
    return true;
}
constexpr bool operator!=(const GUID& a, const GUID& b) {
    return !(a == b);
}

using REFIID = const GUID&;

// {00000000-0000-0000-C000-000000000046}
inline constexpr GUID IID_IUnknown = {
    0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

struct IUnknown {
    // Writes the object as the interface `iid` (AddRef'd) to *out, or null and E_NOINTERFACE.
    virtual HRESULT QueryInterface(REFIID iid, void** out) = 0;
    virtual std::uint32_t AddRef() = 0;
    // Drops one reference; the object destroys itself when the last one goes.
    virtual std::uint32_t Release() = 0;

protected:
    ~IUnknown() = default;  // objects are destroyed by Release, never through an interface
};

// A minimal tagged union. Only the tags below are used across the host interfaces.
enum VARENUM : std::uint16_t {
    VT_EMPTY = 0,
    VT_I4 = 3,        // lVal: a 32-bit signed integer (the 1-based index of a collection item)
    VT_BSTR = 8,      // bstrVal, owned by the VARIANT: _MVariantClear frees it
    VT_UNKNOWN = 13,  // punkVal, owned by the VARIANT: _MVariantClear releases it
};

struct VARIANT {
    std::uint16_t vt;
    std::uint16_t wReserved1;
    std::uint16_t wReserved2;
    std::uint16_t wReserved3;
    union {
        std::int32_t lVal;
        BSTR bstrVal;
        IUnknown* punkVal;
        std::int64_t llVal;
    };
};
