#pragma once

#include "core/trace/FailureReason.h"

#include <string>

// The exceptions of the plug-in's inner layers. None leaves a COM method: the boundary turns it into a code.

/// Root of all: a failure that has words, but no code.
class Exception {
public:
    /// The words of the reason are the message when there are none.
    explicit Exception(std::wstring i_message, FailureReason i_reason = {});
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
    virtual ~Exception() = default;

    /// For the log: what the system says is in the log's language.
    const std::wstring& Message() const noexcept { return m_message; }
    /// For a person, and for code that asks.
    const FailureReason& Reason() const noexcept { return m_reason; }

private:
    std::wstring m_message;
    FailureReason m_reason;
};

/// A failure with the code that the boundary answers.
class HResultException : public Exception {
public:
    HResultException(std::wstring i_message, HRESULT i_result, FailureReason i_reason = {})
        : Exception(std::move(i_message), std::move(i_reason)), m_hresult(i_result) {}

    /// The text of the code alone.
    explicit HResultException(HRESULT i_result);

    HRESULT m_hresult;
};

/// A failed call of the platform.
class ApiException : public Exception {
public:
    /// An empty message stands for the text of the last error.
    explicit ApiException(const std::wstring& i_message = {});

    /// The thread's last error, read after the message was built.
    DWORD Error() const noexcept { return m_error; }

private:
    DWORD m_error;
};

/// The exception of a failed WinINet or platform call: the code of the last error and its text. A last error of 0
/// becomes E_FAIL, because a failure must not look like a success.
HResultException LastErrorException();
