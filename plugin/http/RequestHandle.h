#pragma once

#include "core/trace/Exceptions.h"
#include "qorv/Base.h"

#include <wininet.h>

#include <memory>

namespace Http {

/// The owned handle of one request. It belongs to one thread, with one deliberate exception: when the operation that
/// the request is part of is stopped (`StopSignal`), the thread that stops it closes the handle. That ends the call
/// that the request hangs in (documentation of `InternetCloseHandle`). The handle is closed once, by one of the two.
///
/// Converts to the plain handle, so that it can stand in calls and comparisons: null without a request and after the
/// stop, and then a call with it fails.
class RequestHandle {
public:
    RequestHandle() noexcept;
    /// Joins the operation of this thread.
    explicit RequestHandle(HINTERNET i_handle);
    RequestHandle(RequestHandle&& io_other) noexcept;
    RequestHandle& operator=(RequestHandle&& io_other) noexcept;
    ~RequestHandle();

    operator HINTERNET() const noexcept;

private:
    class Closing;
    std::unique_ptr<Closing> m_closing; ///< Null without a request.
};

/// The exception of a call with a request's handle that failed just now: the last error's, or, when the operation of
/// this thread was stopped, the host's code for that.
HResultException RequestFailure();

/// Throws as above when the operation of this thread was stopped: it begins nothing more.
void CheckIsWanted();

} // namespace Http
