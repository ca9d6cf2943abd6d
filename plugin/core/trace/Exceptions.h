#pragma once

#include "qorv/Base.h"

#include <wininet.h>

#include <string>

// The exceptions of the plug-in's inner layers. None leaves a COM method: the boundary turns it into a code.

/// Root of all: a failure that has words, but no code.
class Exception {
public:
    /// `i_words` is what a person is told, when that is not the message.
    explicit Exception(std::wstring i_message, std::wstring i_words = {})
        : m_message(std::move(i_message)), m_words(std::move(i_words)) {}
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
    virtual ~Exception() = default;

    /// For the log: what the system says is in the log's language.
    const std::wstring& Message() const noexcept { return m_message; }
    /// For a person: what the system says is in the user's language.
    const std::wstring& Words() const noexcept { return m_words.empty() ? m_message : m_words; }

private:
    std::wstring m_message;
    std::wstring m_words;
};

/// A failure with the code that the boundary answers.
class HResultException : public Exception {
public:
    HResultException(std::wstring i_message, HRESULT i_result, std::wstring i_words = {})
        : Exception(std::move(i_message), std::move(i_words)), m_hresult(i_result) {}

    /// The text of the code alone.
    explicit HResultException(HRESULT i_result);

    HRESULT m_hresult;
};

/// A reply whose status is no success.
class HttpException : public Exception {
public:
    /// An empty message stands for the request's status text. `i_error_summary` is the service's own word for the
    /// failure, such as "path/not_found/..", or its sentence, or empty.
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
