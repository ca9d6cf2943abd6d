#pragma once

// What the host's interfaces and its plug-ins share: the platform headers (through this one proxy), the smart pointer,
// and the host's own codes.

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

// Macros of the platform that would rename methods of ours (`GetObject` would be compiled, and traced, as
// `GetObjectW`). Call the platform's functions by their full names.
#undef CreateFile
#undef GetObject
#undef GetMessage

#include <utility>

namespace Qorv {

/// The host's code for an operation that the user or the host's cancel flag ended.
inline constexpr HRESULT ErrorCanceled = static_cast<HRESULT>(0x821704C7);

/// Text passed to an interface: NUL-terminated UTF-16, only valid during the call.
using PCStr = const wchar_t*;

/// Counted reference to a COM object. Converts to the plain pointer for calls and comparisons; `&pointer` releases the
/// held object and returns the address for an out argument.
template <typename T>
class ComPtr {
public:
    ComPtr() noexcept = default;
    ComPtr(std::nullptr_t) noexcept {}
    ComPtr(T* i_object) noexcept : p(i_object) { AddRefSafe(); }
    ComPtr(const ComPtr& i_other) noexcept : p(i_other.p) { AddRefSafe(); }
    ComPtr(ComPtr&& io_other) noexcept : p(io_other.Detach()) {}
    template <typename U>
    requires std::is_convertible_v<U*, T*> ComPtr(const ComPtr<U>& i_other)
    noexcept : p(i_other.p) { AddRefSafe(); }
    ~ComPtr() { Reset(); }

    ComPtr& operator=(ComPtr i_other) noexcept {
        std::swap(p, i_other.p);
        return *this;
    }

    operator T*() const noexcept { return p; }
    T* operator->() const noexcept { return p; }
    T& operator*() const noexcept { return *p; }
    T* Get() const noexcept { return p; }

    /// For out arguments: releases the held object first.
    T** operator&() noexcept {
        Reset();
        return &p;
    }

    /// Releases the object; the pointer is null before the object can call back.
    void Reset() noexcept {
        if (T* object = Detach())
            object->Release();
    }

    /// Gives up the reference: the caller releases it.
    [[nodiscard]] T* Detach() noexcept { return std::exchange(p, nullptr); }

    /// Takes over a reference from the caller.
    void Attach(T* i_object) noexcept {
        Reset();
        p = i_object;
    }

    /// Copies a new reference to an out argument, which must not be null.
    void CopyTo(T** o_object) const noexcept {
        AddRefSafe();
        *o_object = p;
    }

    /// Another SDK interface of the same object; null if it lacks it.
    template <typename U>
    [[nodiscard]] ComPtr<U> As() const noexcept {
        ComPtr<U> other;
        if (p != nullptr && FAILED(p->QueryInterface(U::Id, reinterpret_cast<void**>(&other))))
            other.p = nullptr;
        return other;
    }

    T* p = nullptr; ///< The plain pointer, for expressions such as `item.p->put_v(value)`.

private:
    void AddRefSafe() const noexcept {
        if (p != nullptr)
            p->AddRef();
    }
};

} // namespace Qorv
