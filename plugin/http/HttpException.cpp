#include "http/HttpException.h"

#include "core/trace/ErrorText.h"
#include "core/trace/Secret.h"
#include "core/trace/Trace.h"
#include "http/RequestHandle.h"
#include "http/ServiceWords.h"

// Like everything exceptions are made of, this is not traced, except for the query of the status text.

namespace {

constexpr DWORD text_capacity = 1024; // Characters.
const std::wstring no_status = L"HTTP (failed to get status information): ";

std::wstring GetRequestText(HINTERNET request_handle) {
    TRACE_FUNCTION();
    wchar_t text[text_capacity];
    DWORD size = sizeof text; // In bytes.
    if (!HttpQueryInfoW(request_handle, HTTP_QUERY_STATUS_TEXT, text, &size, nullptr))
        return no_status + LastErrorText();
    return L"HTTP " + std::to_wstring(HttpStatusCode(request_handle)) + L": " +
           std::wstring(text, size / sizeof(wchar_t));
}

/// What a person is told: the message, and the service's own word.
FailureReason ReasonOf(const std::wstring& i_message, HINTERNET i_request, std::wstring i_error_summary) {
    const DWORD status = HttpStatusCode(i_request) & 0xFFFF;
    std::wstring words =
        i_message.starts_with(no_status) ? connection_broke : Http::PlainWords(WithoutSecrets(i_message));
    if (!i_error_summary.empty())
        words += L" (" + i_error_summary + L")";
    return {std::move(words), status, std::move(i_error_summary)};
}

} // namespace

std::wstring HttpStatusText(HINTERNET i_request) {
    return GetRequestText(i_request);
}

DWORD HttpStatusCode(HINTERNET i_request) noexcept {
    DWORD status = 0;
    DWORD size = sizeof status;
    if (!HttpQueryInfoW(i_request, HTTP_QUERY_FLAG_NUMBER | HTTP_QUERY_STATUS_CODE, &status, &size, nullptr))
        return 0;
    return status;
}

HResultException NoStatusException() {
    const HResultException exception = Http::RequestFailure();
    if (exception.m_hresult == Qorv::ErrorCanceled)
        return exception;
    return {exception.Message(), exception.m_hresult, {.words = connection_broke}};
}

HttpException::HttpException(const std::wstring& i_message, HINTERNET i_request, std::wstring i_error_summary)
    : Exception(i_message, ReasonOf(i_message, i_request, std::move(i_error_summary))) {}

HttpException::HttpException(HINTERNET i_request, std::wstring i_message, std::wstring i_error_summary)
    : HttpException(i_message.empty() ? HttpStatusText(i_request) : std::move(i_message), i_request,
                    std::move(i_error_summary)) {}
