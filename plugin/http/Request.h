#pragma once

#include "http/RequestHandle.h"
#include "http/Response.h"

#include <cstdint>
#include <memory>

namespace Http {

/// An upload whose body is written piece by piece. Dropped before `Send`, it is aborted: the service keeps what it had.
/// Copies share it.
class Request {
public:
    /// Without a handle, until the session gives it one.
    Request();

    /// Writes at most `size` bytes and returns how many were written: callers go on until all are.
    std::uint32_t Write(const void* data, std::size_t size);

    /// Ends the body and waits for the reply, which takes the handle over. Throws unless the status is a success.
    Response Send();

private:
    friend class Session;

    struct Impl {
        RequestHandle handle;
    };
    std::shared_ptr<Impl> m_impl;
};

} // namespace Http
