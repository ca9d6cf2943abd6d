#pragma once

#include "qorv/Base.h"

#include <wininet.h>

#include <string>

// The exceptions of the plug-in's inner layers. None leaves a COM method: the boundary turns it into a code.

/// Root of all: a failure that has words, but no code.
class Exception {
public:
    explicit Exception(std::wstring i_message) : m_message(std::move(i_message)) {}
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
    virtual ~Exception() = default;

    const std::wstring& Message() const noexcept { return m_message; }

private:
    std::wstring m_message;
};

/// A failure with the code that the boundary answers.
class HResultException : public Exception {
public:
    HResultException(std::wstring i_message, HRESULT i_result) : Exception(std::move(i_message)), m_hresult(i_result) {}

    /// The text of the code alone.
    explicit HResultException(HRESULT i_result);

    HRESULT m_hresult;
};

/// A reply whose status is no success.
class HttpException : public Exception {
public:
    /// An empty message stands for the request's status text. `i_error_summary` is the service's own word for the
    /// failure, such as "path/not_found/..", or empty.
    explicit HttpException(HINTERNET i_request, std::wstring i_message = {}, std::wstring i_error_summary = {});

    /// The HTTP status code, 0 when the request could not tell it.
    DWORD Status() const noexcept { return m_status; }
    const std::wstring& ErrorSummary() const noexcept { return m_error_summary; }

private:
    DWORD m_status;
    std::wstring m_error_summary;
};

/// A failed call of the platform.
class ApiException : public Exception {
public:
    /// An empty message stands for the text of the last error.
    explicit ApiException(std::wstring i_message = {});

    /// The thread's last error, read after the message was built.
    DWORD Error() const noexcept { return m_error; }

private:
    DWORD m_error;
};

/// The exception of a failed WinINet or platform call: the code of the last error and its text. A last error of 0
/// becomes E_FAIL, because a failure must not look like a success.
HResultException LastErrorException();
