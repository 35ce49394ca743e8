// SPDX-License-Identifier: MIT
// The host's runtime functions: BSTRs, task memory, VARIANT clearing, UTF-16 C strings and
// dynamic loading.
#include "nvo/runtime.h"

#include "minihost/nvo/hostconfig.h"
#include "minihost/nvo/hostjournal_p.h"

#include <dlfcn.h>

#include <QString>
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace {

// A BSTR is preceded by its length in bytes (32 bits) and followed by a NUL unit.
constexpr std::size_t kPrefix = sizeof(std::uint32_t);

BSTR allocBstr(const OLECHAR* text, std::size_t length) {
    if (length > (std::numeric_limits<std::uint32_t>::max() / sizeof(OLECHAR)) - 1) return nullptr;
    auto* block =
        static_cast<unsigned char*>(std::malloc(kPrefix + (length + 1) * sizeof(OLECHAR)));
    if (!block) return nullptr;
    const auto bytes = static_cast<std::uint32_t>(length * sizeof(OLECHAR));
    std::memcpy(block, &bytes, kPrefix);
    auto* chars = reinterpret_cast<OLECHAR*>(block + kPrefix);
    if (text)
        std::memcpy(chars, text, length * sizeof(OLECHAR));
    else
        std::memset(chars, 0, length * sizeof(OLECHAR));
    chars[length] = 0;
    return chars;
}

QString utf16Path(const char16_t* path) {
    return QString::fromUtf16(path, static_cast<int>(_Xu2_strlen(path)));
}

// Entry points found, by module and name. The add-on looks its entry points up again for every
// text it tags (for every character of a text whose readings it lists), and dlsym takes far
// longer to say the same thing again. A module's entries go when it is freed. A process looks up
// a handful of names: a list searched from the front, compared without converting them.
struct FoundSymbol {
    HMODULE module;
    std::u16string name;
    void* function;
};
struct FoundSymbols {
    std::mutex lock;
    std::vector<FoundSymbol> list;
};
FoundSymbols& foundSymbols() {
    static FoundSymbols found;
    return found;
}

}  // namespace

extern "C" {

BSTR _XSysAllocString(const OLECHAR* text) {
    if (!text) return nullptr;
    return allocBstr(text, _Xu2_strlen(text));
}

BSTR _XSysAllocStringLen(const OLECHAR* text, unsigned int length) {
    return allocBstr(text, length);
}

int _XSysReAllocString(BSTR* bstr, const OLECHAR* text) {
    if (!bstr) return 0;
    BSTR fresh = _XSysAllocString(text);
    if (text && !fresh) return 0;
    _XSysFreeString(*bstr);
    *bstr = fresh;
    return 1;
}

void _XSysFreeString(BSTR bstr) {
    if (bstr) std::free(reinterpret_cast<unsigned char*>(bstr) - kPrefix);
}

unsigned int _XSysStringLen(BSTR bstr) {
    if (!bstr) return 0;
    std::uint32_t bytes;
    std::memcpy(&bytes, reinterpret_cast<unsigned char*>(bstr) - kPrefix, kPrefix);
    return bytes / sizeof(OLECHAR);
}

void* _XCoTaskMemAlloc(std::size_t size) {
    return std::malloc(size ? size : 1);
}

void _XCoTaskMemFree(void* block) {
    std::free(block);
}

HRESULT _MVariantClear(VARIANT* value) {
    if (!value) return E_INVALIDARG;
    if (value->vt == VT_BSTR)
        _XSysFreeString(value->bstrVal);
    else if (value->vt == VT_UNKNOWN && value->punkVal)
        value->punkVal->Release();
    value->vt = VT_EMPTY;
    value->llVal = 0;
    return S_OK;
}

std::size_t _Xu2_strlen(const char16_t* text) {
    std::size_t n = 0;
    while (text[n]) ++n;
    return n;
}

char16_t* _Xu2_strchr(const char16_t* text, char16_t ch) {
    for (;; ++text) {
        if (*text == ch) return const_cast<char16_t*>(text);
        if (!*text) return nullptr;
    }
}

char16_t* _Xu2_strcpy(char16_t* destination, const char16_t* source) {
    char16_t* out = destination;
    while ((*out++ = *source++)) {
    }
    return destination;
}

char16_t* _Xu2_strncpy(char16_t* destination, const char16_t* source, std::size_t count) {
    std::size_t i = 0;
    for (; i < count && source[i]; ++i) destination[i] = source[i];
    for (; i < count; ++i) destination[i] = 0;
    return destination;
}

HMODULE _Xloadlibrary(const char16_t* path, std::uint32_t flags) {
    minihost::noteHostCall(QStringLiteral("_Xloadlibrary(%1, %2)")
                               .arg(path ? utf16Path(path) : QStringLiteral("null"))
                               .arg(flags));
    if (!path || flags != 0) return nullptr;
    const QByteArray local = utf16Path(path).toLocal8Bit();
    // Bound lazily, as Qt loads its plugins: a function is looked up when first called, and the
    // add-on and the tagging library call few of the functions they and their libraries import
    // (binding them all at once was about 2% of a command's start). What lazy binding gives up,
    // a missing symbol found at load, the libraries' versions still catch then.
    return dlopen(local.constData(), RTLD_LAZY | RTLD_LOCAL);
}

HRESULT _Xgetprocaddr(HMODULE module, const char16_t* name, void** function) {
    if (!function) return E_POINTER;
    *function = nullptr;
    if (!module || !name) return E_POINTER;
    FoundSymbols& found = foundSymbols();
    const std::lock_guard<std::mutex> hold(found.lock);
    const std::u16string_view wanted(name);
    for (const FoundSymbol& known : found.list)
        if (known.module == module && known.name == wanted) {
            *function = known.function;
            return S_OK;
        }
    // Latin-1 as QString::toLatin1 makes it ("?" for what it cannot hold).
    std::string symbol;
    for (const char16_t* unit = name; *unit; ++unit)
        symbol += *unit < 0x100 ? static_cast<char>(*unit) : '?';
    *function = dlsym(module, symbol.c_str());
    if (!*function) return E_FAIL;
    found.list.push_back({module, std::u16string(wanted), *function});
    return S_OK;
}

int _Xfreelibrary(HMODULE module) {
    if (!module) return 0;
    {
        FoundSymbols& found = foundSymbols();
        const std::lock_guard<std::mutex> hold(found.lock);
        found.list.erase(std::remove_if(found.list.begin(), found.list.end(),
                                        [&](const FoundSymbol& f) { return f.module == module; }),
                         found.list.end());
    }
    return dlclose(module) == 0 ? 1 : 0;
}

}  // extern "C"
