// SPDX-License-Identifier: MIT
// What every object-model call does at its edge: nothing thrown crosses it, and the journal
// shows each call with its arguments.
#pragma once

#include <QString>
#include <new>

#include "nvo/com.h"
#include "nvo/runtime.h"

namespace minihost {

// Runs `body`; an exception becomes E_OUTOFMEMORY or E_FAIL.
template <typename Body>
HRESULT guarded(Body&& body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_FAIL;
    }
}

// A BSTR argument as text (its stored length; null is empty).
inline QString fromBstr(BSTR text) {
    return text ? QString::fromUtf16(text, static_cast<int>(_XSysStringLen(text))) : QString();
}
inline BSTR toBstr(const QString& text) {
    return _XSysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.utf16()),
                               static_cast<unsigned>(text.size()));
}
// How the journal shows a string argument: in double quotes, with \ " and controls escaped.
QString journalText(const QString& text);
// How the journal shows a float: shortest form ("48", "12.5").
inline QString journalNumber(double value) {
    return QString::number(value, 'g', 9);
}

}  // namespace minihost
