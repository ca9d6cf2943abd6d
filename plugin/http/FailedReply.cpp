#include "http/FailedReply.h"

#include "core/trace/Secret.h"
#include "core/trace/Text.h"
#include "http/RequestUri.h"
#include "http/ResponseBody.h"
#include "http/ServiceWords.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::wstring_view plain_text = L"text/plain";

// Failures in here are logged where they happen; they must not hide the status that is being reported.

/// Only the log needs the whole body: the service's own word is at its start.
std::string ReadableBody(Http::Response& io_response) {
    TRACE_FUNCTION();
    constexpr std::size_t limit_without_log = 65'536; // Bytes.
    std::string body;
    try {
        Http::AppendBody(io_response, body, IsLogEnabled() ? std::string::npos : limit_without_log);
    } catch (const Exception&) {
        // Keep what has been read so far.
    }
    return body;
}

/// The authorization in one of the service's OAuth challenges is as good as a token: it stays out of the log.
std::wstring_view WithoutSecret(std::wstring_view i_line) {
    TRACE_FUNCTION();
    static constexpr std::wstring_view challenge_header = L"WWW-Authenticate:", scheme = L"OAuth ";
    const std::size_t at = i_line.find(scheme);
    const bool is_challenge = EqualsNoCase(i_line.substr(0, challenge_header.size()), challenge_header);
    return !is_challenge || at == std::wstring_view::npos ? i_line : i_line.substr(0, at + scheme.size());
}

std::wstring HeaderLines(const std::wstring& i_raw_headers) {
    TRACE_FUNCTION();
    std::wstring lines;
    for (std::size_t start = 0; start < i_raw_headers.size();) {
        const std::size_t end = std::min(i_raw_headers.find(L'\0', start), i_raw_headers.size());
        if (end > start)
            lines.append(WithoutSecret({&i_raw_headers[start], end - start})).append(L"\n");
        start = end + 1;
    }
    return lines;
}

/// The first line of a plain-text reply, in which the service says why it cannot make sense of a request.
std::wstring PlainSentence(const Http::Response& i_response, const std::wstring& i_body) {
    TRACE_FUNCTION();
    const auto types = i_response.GetHeaders(L"Content-Type");
    if (types.empty() || !EqualsNoCase(std::wstring_view(types.front()).substr(0, plain_text.size()), plain_text))
        return {};
    return Http::PlainWords(std::wstring_view(i_body).substr(0, i_body.find_first_of(L"\r\n")));
}

std::wstring ServiceWords(const Http::Response& i_response, const std::wstring& i_body) {
    TRACE_FUNCTION();
    std::wstring summary = Http::ErrorSummary(i_body);
    if (!summary.empty())
        return summary;
    try {
        return PlainSentence(i_response, i_body);
    } catch (const Exception&) {
        return {};
    }
}

} // namespace

std::wstring Http::LogFailedReply(Response& io_response, const FunctionName& i_caller) {
    TRACE_FUNCTION();
    const std::wstring body = WithoutSecrets(FromUtf8(ReadableBody(io_response))); // Before anything is cut short.
    try {
        if (IsLogEnabled())
            TraceText(i_caller, WithoutSecrets(L"Unexpected HTTP code:\n" + GetRequestUri(io_response.Handle()) +
                                               L"\n" + HeaderLines(io_response.GetHeaders())) +
                                    L"\n" + body);
    } catch (const Exception&) {
        // The log does without this entry.
    }
    return ServiceWords(io_response, body);
}
