#pragma once

#include "qorv/Base.h"

#include <wininet.h>

#include <utility>

namespace Http {

/// An owned WinINet handle. Converts to the plain one, so that it can stand in calls and comparisons.
class InternetHandle {
public:
    InternetHandle() = default;
    explicit InternetHandle(HINTERNET i_handle) noexcept : m_handle(i_handle) {}
    InternetHandle(InternetHandle&& io_other) noexcept : m_handle(std::exchange(io_other.m_handle, nullptr)) {}
    InternetHandle& operator=(InternetHandle i_other) noexcept {
        std::swap(m_handle, i_other.m_handle);
        return *this;
    }
    ~InternetHandle() {
        if (m_handle != nullptr)
            InternetCloseHandle(m_handle);
    }

    operator HINTERNET() const noexcept { return m_handle; }

private:
    HINTERNET m_handle = nullptr;
};

} // namespace Http
