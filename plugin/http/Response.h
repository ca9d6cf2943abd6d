#pragma once

#include "http/RequestHandle.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Http {

/// A reply, whose body is read once, front to back. Copies share it.
class Response {
public:
    /// Has no handle until the session gives it one.
    Response();

    /// Reads at most `max_size` bytes; 0 means that the body is exhausted. A body that is shorter or longer than
    /// announced is a failure, not an end.
    std::uint32_t Read(void* buffer, std::size_t max_size);

    /// The body's length in bytes, if the reply announces it. Without it, a body that was cut off looks like one that
    /// ended.
    std::optional<std::uint64_t> Length() const;

    /// The values of every header of that name, in any case of letters.
    std::vector<std::wstring> GetHeaders(const std::wstring& name) const;

    /// The raw header block: lines separated by a NUL, with two at the end.
    std::wstring GetHeaders() const;

    /// The request's handle, which the response owns.
    HINTERNET Handle() const noexcept { return m_impl->handle; }

private:
    friend class Request;
    friend class Session;

    struct Impl {
        RequestHandle handle;
        std::uint16_t status = 0;            ///< Set on success only.
        std::optional<std::uint64_t> length; ///< Of the body, when announced. Known from the first read on.
        std::uint64_t received = 0;
    };

    void CheckLength(bool i_is_end) const;

    std::shared_ptr<Impl> m_impl;
};

} // namespace Http
