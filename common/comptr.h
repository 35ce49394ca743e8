// SPDX-License-Identifier: MIT
// RAII holders for host objects and strings: every object released exactly once and every BSTR
// freed on every path, unwinding included.
#pragma once

#include <utility>

#include "nvo/com.h"

// Owns one reference to a COM-like object.
template <typename T>
class ComPtr {
public:
    ComPtr() = default;
    ComPtr(const ComPtr&) = delete;
    ComPtr& operator=(const ComPtr&) = delete;
    ComPtr(ComPtr&& other) noexcept : m_ptr(std::exchange(other.m_ptr, nullptr)) {}
    ComPtr& operator=(ComPtr&& other) noexcept {
        if (this != &other) reset(std::exchange(other.m_ptr, nullptr));
        return *this;
    }
    ~ComPtr() { reset(); }

    // Takes over a reference the caller already holds (an out-pointer's object).
    static ComPtr adopt(T* ptr) {
        ComPtr p;
        p.m_ptr = ptr;
        return p;
    }
    // Takes a new reference to `ptr` (AddRef).
    static ComPtr share(T* ptr) {
        if (ptr) ptr->AddRef();
        return adopt(ptr);
    }

    T* get() const { return m_ptr; }
    T* operator->() const { return m_ptr; }
    explicit operator bool() const { return m_ptr != nullptr; }

    // Releases the held object and returns the address for an out-pointer call.
    T** put() {
        reset();
        return &m_ptr;
    }
    void** putVoid() { return reinterpret_cast<void**>(put()); }
    // Gives the reference away to the caller.
    T* detach() { return std::exchange(m_ptr, nullptr); }
    void reset(T* ptr = nullptr) {
        T* old = std::exchange(m_ptr, ptr);
        if (old) old->Release();
    }

    // This object as interface `U` with id `iid`, or an empty holder.
    template <typename U>
    ComPtr<U> query(REFIID iid) const {
        ComPtr<U> result;
        if (m_ptr) m_ptr->QueryInterface(iid, result.putVoid());
        return result;
    }

private:
    T* m_ptr = nullptr;
};
