#pragma once

#include "http/RequestHandle.h"
#include "http/Response.h"

#include <cstdint>
#include <memory>

namespace Http {

/// An upload whose body is written piece by piece. Dropping it before `Send` aborts it: the service keeps what it had.
/// Copies share it.
class Request {
public:
    /// Has no handle until the session gives it one.
    Request();

    /// Writes at most `size` bytes and returns how many were written: callers loop until everything is written.
    std::uint32_t Write(const void* data, std::size_t size);

    /// Ends the body and waits for the reply, which takes over the handle. Throws unless the status is a success.
    Response Send();

private:
    friend class Session;

    struct Impl {
        RequestHandle handle;
    };
    std::shared_ptr<Impl> m_impl;
};

} // namespace Http
