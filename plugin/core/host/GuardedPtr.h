#pragma once

#include "core/trace/Exceptions.h"
#include "qorv/Base.h"

#include <mutex>

/// Counted reference to a COM object that the host's main thread may release while other threads still use it. Each use
/// takes its own reference: `pointer->Do()` holds one until the call returns. Throws E_UNEXPECTED as an
/// `HResultException` if the object has already been released.
template <typename T>
class GuardedPtr {
public:
    GuardedPtr() = default;
    explicit GuardedPtr(T* i_object) : m_object(i_object) {}
    GuardedPtr(const GuardedPtr&) = delete;
    GuardedPtr& operator=(const GuardedPtr&) = delete;

    GuardedPtr& operator=(Qorv::ComPtr<T> i_object) {
        const std::lock_guard guard(m_lock);
        std::swap(m_object.p, i_object.p); // Release the old object outside the lock: it may call back.
        return *this;
    }

    /// Null when there is none.
    Qorv::ComPtr<T> Get() const {
        const std::lock_guard guard(m_lock);
        return m_object;
    }

    Qorv::ComPtr<T> operator->() const { return Required(); }
    operator Qorv::ComPtr<T>() const { return Required(); }

    /// Null when there is none. Takes no reference, so only the thread that releases the object may call it.
    operator T*() const { return Get(); }

    friend bool operator==(const GuardedPtr& i_pointer, const T* i_object) { return i_pointer.Get().Get() == i_object; }

    void Reset() { *this = Qorv::ComPtr<T>(); }

    /// For an out argument, before other threads can see the pointer.
    T** operator&() noexcept { return &m_object; }

private:
    Qorv::ComPtr<T> Required() const {
        auto object = Get();
        if (object == nullptr)
            throw HResultException(E_UNEXPECTED);
        return object;
    }

    mutable std::mutex m_lock;
    Qorv::ComPtr<T> m_object;
};
