#include "core/trace/Exceptions.h"

#include "core/trace/ErrorText.h"

HResultException::HResultException(HRESULT i_result)
    : HResultException(HResultText(i_result), i_result, HResultText(i_result, user_language)) {}

HttpException::HttpException(HINTERNET i_request, std::wstring i_message, std::wstring i_error_summary)
    : Exception(i_message.empty() ? HttpStatusText(i_request) : std::move(i_message))
    , m_status(HttpStatusCode(i_request) & 0xFFFF)
    , m_error_summary(std::move(i_error_summary)) {}

ApiException::ApiException(std::wstring i_message)
    : Exception(i_message.empty() ? LastErrorText() : i_message, i_message.empty() ? LastErrorText(user_language) : L"")
    , m_error(GetLastError()) {}

HResultException LastErrorException() {
    const DWORD error = GetLastError();
    std::wstring text = LastErrorText();
    std::wstring words = LastErrorText(user_language);
    return {std::move(text), error == ERROR_SUCCESS ? E_FAIL : HRESULT_FROM_WIN32(error), std::move(words)};
}
