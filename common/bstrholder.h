// SPDX-License-Identifier: MIT
// Owns one BSTR and converts between BSTRs and QStrings.
#pragma once

#include <QString>
#include <utility>

#include "nvo/com.h"
#include "nvo/runtime.h"

class BstrHolder {
public:
    BstrHolder() = default;
    // A new BSTR holding `text` (up to its first NUL, as the host's string functions read it).
    explicit BstrHolder(const QString& text)
        : m_bstr(_XSysAllocString(reinterpret_cast<const OLECHAR*>(text.utf16()))) {}
    BstrHolder(const BstrHolder&) = delete;
    BstrHolder& operator=(const BstrHolder&) = delete;
    ~BstrHolder() { _XSysFreeString(m_bstr); }

    BSTR get() const { return m_bstr; }
    // Frees the held string and returns the address for an out-pointer call.
    BSTR* put() {
        _XSysFreeString(std::exchange(m_bstr, nullptr));
        return &m_bstr;
    }
    // Reuses the buffer for `text` (_XSysReAllocString); false when that fails.
    bool reassign(const QString& text) {
        return _XSysReAllocString(&m_bstr, reinterpret_cast<const OLECHAR*>(text.utf16())) != 0;
    }
    // The text up to the first NUL; empty for a null BSTR.
    QString toQString() const { return m_bstr ? QString::fromUtf16(m_bstr, -1) : QString(); }

private:
    BSTR m_bstr = nullptr;
};
