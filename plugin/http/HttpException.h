#pragma once

#include "core/trace/Exceptions.h"

#include <wininet.h>

#include <string>

/// "HTTP 409: " and the status text of a request's reply.
std::wstring HttpStatusText(HINTERNET i_request);

/// The status code of a request's reply, or 0 if it could not be queried.
DWORD HttpStatusCode(HINTERNET i_request) noexcept;

/// What a person is told about a reply without a status.
inline constexpr wchar_t connection_broke[] = L"The connection to the service broke";

/// The exception of a status that cannot be queried, with the code of the last error.
HResultException NoStatusException();

/// A reply whose status is not a success.
class HttpException : public Exception {
public:
    /// An empty message stands for the request's status text. `i_error_summary` is the service's own word for the
    /// failure, such as "path/not_found/..", or its sentence, or empty.
    explicit HttpException(HINTERNET i_request, std::wstring i_message = {}, std::wstring i_error_summary = {});

    /// The HTTP status code, or 0 if it could not be queried.
    DWORD Status() const noexcept { return Reason().http_status; }
    const std::wstring& ErrorSummary() const noexcept { return Reason().summary; }

private:
    HttpException(const std::wstring& i_message, HINTERNET i_request, std::wstring i_error_summary);
};
