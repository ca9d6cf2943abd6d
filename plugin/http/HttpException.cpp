#include "http/HttpException.h"

#include "core/trace/ErrorText.h"
#include "core/trace/Trace.h"

// Like all that exceptions are made of this is not traced, but for the query of the status text.

namespace {

constexpr DWORD text_capacity = 1024; // Characters.

std::wstring GetRequestText(HINTERNET request_handle) {
    TRACE_FUNCTION();
    wchar_t text[text_capacity];
    DWORD size = sizeof text; // In bytes.
    if (!HttpQueryInfoW(request_handle, HTTP_QUERY_STATUS_TEXT, text, &size, nullptr))
        return L"HTTP (failed to get status information): " + LastErrorText();
    return L"HTTP " + std::to_wstring(HttpStatusCode(request_handle)) + L": " +
           std::wstring(text, size / sizeof(wchar_t));
}

/// What a person is told: the message, and the service's own word.
FailureReason ReasonOf(const std::wstring& i_message, HINTERNET i_request, std::wstring i_error_summary) {
    const std::wstring words = i_error_summary.empty() ? i_message : i_message + L" (" + i_error_summary + L")";
    return {words, HttpStatusCode(i_request) & 0xFFFF, std::move(i_error_summary)};
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

HttpException::HttpException(const std::wstring& i_message, HINTERNET i_request, std::wstring i_error_summary)
    : Exception(i_message, ReasonOf(i_message, i_request, std::move(i_error_summary))) {}

HttpException::HttpException(HINTERNET i_request, std::wstring i_message, std::wstring i_error_summary)
    : HttpException(i_message.empty() ? HttpStatusText(i_request) : std::move(i_message), i_request,
                    std::move(i_error_summary)) {}
