#pragma once

#include "http/InternetHandle.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Http {

/// A reply, whose body is read once, front to back.
class Response {
public:
    /// Takes a request that was sent.
    explicit Response(InternetHandle i_handle);

    /// Reads at most `max_size` bytes; 0 means that the body is exhausted. A body that ends before its announced length
    /// is a failure, not an end.
    std::uint32_t Read(void* buffer, std::size_t max_size);

    /// The values of every header of that name.
    std::vector<std::wstring> GetHeaders(const std::wstring& name) const;

    /// The raw header block: lines, each ended by a NUL.
    std::wstring GetHeaders() const;

    /// Queries the final status and returns it. Throws when there is none.
    std::uint32_t QueryStatus();

    /// Throws an `HttpException` unless 200 <= status < 400, as the caller's function: one of 400 or more is written to
    /// the log before, headers, body and all.
    /// (See `CheckStatus` in StatusCheck.h.)
    HINTERNET Handle() const noexcept { return m_impl->handle.get(); }

private:
    struct Impl {
        InternetHandle handle;
        std::uint16_t status = 0;
        std::optional<std::uint64_t> length; ///< As announced, when it is.
        std::uint64_t received = 0;
    };
    std::shared_ptr<Impl> m_impl;
};

} // namespace Http
