#include "http/FailedReply.h"

#include "core/trace/Secret.h"
#include "core/trace/Text.h"
#include "http/RequestUri.h"
#include "http/ResponseBody.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::wstring_view plain_text = L"text/plain";

// What goes wrong in here is logged where it happens, and must not hide the status that is being reported.

/// All of it is for the log alone: the service's own word stands at the beginning.
std::string ReadableBody(Http::Response& io_response) {
    TRACE_FUNCTION();
    constexpr std::size_t limit_without_log = 65'536; // Bytes.
    std::string body;
    try {
        Http::AppendBody(io_response, body, IsLogEnabled() ? std::string::npos : limit_without_log);
    } catch (const Exception&) {
        // As far as it came.
    }
    return body;
}

/// The service's answers to a challenge are as good as a token: they stay out of the log.
std::wstring_view WithoutSecret(std::wstring_view i_line) {
    TRACE_FUNCTION();
    static constexpr std::wstring_view challenge = L"OAuth ";
    const std::size_t at = i_line.find(challenge);
    return at == std::wstring_view::npos ? i_line : i_line.substr(0, at + challenge.size());
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

/// The text of the member "error_summary". The service writes only tag names into it, which need no unescaping; a
/// whole parser for this one word would be too much for a layer that knows nothing of what it carries.
std::wstring ErrorSummary(const std::wstring& i_body) {
    TRACE_FUNCTION();
    static constexpr std::wstring_view key = L"\"error_summary\"";
    const std::size_t key_at = i_body.find(key);
    if (key_at == std::wstring::npos)
        return {};
    const std::size_t start = i_body.find(L'"', key_at + key.size());
    const std::size_t end = start == std::wstring::npos ? start : i_body.find(L'"', start + 1);
    return end == std::wstring::npos ? std::wstring{} : i_body.substr(start + 1, end - start - 1);
}

/// The first line of a reply that is plain text, which is the service's sentence about a request that it can't make
/// sense of. Cut to a length that a message can show.
std::wstring PlainSentence(const Http::Response& i_response, const std::wstring& i_body) {
    TRACE_FUNCTION();
    constexpr std::size_t longest_sentence = 300;
    const auto types = i_response.GetHeaders(L"Content-Type");
    if (types.empty() || !EqualsNoCase(std::wstring_view(types.front()).substr(0, plain_text.size()), plain_text))
        return {};
    return i_body.substr(0, std::min(i_body.find_first_of(L"\r\n"), longest_sentence));
}

std::wstring ServiceWords(const Http::Response& i_response, const std::wstring& i_body) {
    TRACE_FUNCTION();
    std::wstring summary = ErrorSummary(i_body);
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
    const std::wstring body = FromUtf8(ReadableBody(io_response));
    try {
        if (IsLogEnabled())
            TraceText(i_caller,
                      WithoutSecrets(L"Unexpected HTTP code:\n" + GetRequestUri(io_response.Handle()) + L"\n" +
                                     HeaderLines(io_response.GetHeaders()) + L"\n" + body));
    } catch (const Exception&) {
        // The line is lost.
    }
    return ServiceWords(io_response, body);
}
