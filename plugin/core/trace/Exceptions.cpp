#include "core/trace/Exceptions.h"

#include "core/trace/ErrorText.h"
#include "core/trace/Secret.h"
#include "core/trace/Trace.h"

Exception::Exception(std::wstring i_message, FailureReason i_reason)
    : m_message(WithoutSecrets(std::move(i_message))), m_reason(std::move(i_reason)) {
    m_reason.words = WithoutSecrets(std::move(m_reason.words));
    m_reason.summary = WithoutSecrets(std::move(m_reason.summary));
    if (m_reason.words.empty())
        m_reason.words = m_message;
}

HResultException::HResultException(HRESULT i_result)
    : HResultException(HResultText(i_result), i_result, {.words = HResultText(i_result, user_language)}) {}

ApiException::ApiException(const std::wstring& i_message)
    : Exception(i_message.empty() ? LastErrorText() : i_message,
                FailureReason{.words = i_message.empty() ? LastErrorText(user_language) : i_message})
    , m_error(GetLastError()) {}

HResultException LastErrorException() {
    TRACE_FUNCTION();
    const DWORD error = GetLastError();
    std::wstring text = LastErrorText();
    std::wstring words = LastErrorText(user_language);
    return {std::move(text), error == ERROR_SUCCESS ? E_FAIL : HRESULT_FROM_WIN32(error), {.words = std::move(words)}};
}
