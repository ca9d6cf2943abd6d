#pragma once

#include "core/trace/FailureReason.h"

#include <string>

// The exceptions of the plug-in's inner layers. None leaves a COM method: the boundary turns them into codes.

/// The base of all: a failure with words but without a code.
class Exception {
public:
    /// If the reason has no words, the message takes their place.
    explicit Exception(std::wstring i_message, FailureReason i_reason = {});
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
    virtual ~Exception() = default;

    /// For the log: the system's texts are in the log's language.
    const std::wstring& Message() const noexcept { return m_message; }
    /// For the user, and for code that examines the failure.
    const FailureReason& Reason() const noexcept { return m_reason; }

private:
    std::wstring m_message;
    FailureReason m_reason;
};

/// A failure with the code that the boundary returns.
class HResultException : public Exception {
public:
    HResultException(std::wstring i_message, HRESULT i_result, FailureReason i_reason = {})
        : Exception(std::move(i_message), std::move(i_reason)), m_hresult(i_result) {}

    /// Only the code's own text.
    explicit HResultException(HRESULT i_result);

    HRESULT m_hresult;
};

/// A failed call of the platform.
class ApiException : public Exception {
public:
    /// An empty message is replaced by the text of the last error.
    explicit ApiException(const std::wstring& i_message = {});

    /// The thread's last error, read after the message was composed.
    DWORD Error() const noexcept { return m_error; }

private:
    DWORD m_error;
};

/// The exception for a failed WinINet or platform call: the code of the last error and its text. A last error of 0
/// becomes E_FAIL, because a failure must not look like a success.
HResultException LastErrorException();
