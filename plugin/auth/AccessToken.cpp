#include "auth/AccessToken.h"

#include "core/trace/Text.h"
#include "core/trace/Trace.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr std::wstring_view header_name = L"Authorization:";
constexpr std::wstring_view token_type = L"Bearer ";
constexpr std::wstring_view token_type_word = L"Bearer"; // Any spaces may follow.
constexpr std::wstring_view blanks = L" \t\r\n";

std::wstring_view Trimmed(std::wstring_view i_text) noexcept {
    TRACE_FUNCTION();
    const std::size_t start = std::min(i_text.find_first_not_of(blanks), i_text.size());
    const std::size_t end = i_text.find_last_not_of(blanks) + 1; // npos + 1 is 0.
    return i_text.substr(start, std::max(start, end) - start);
}

std::wstring_view WithoutPrefix(std::wstring_view i_text, std::wstring_view i_prefix) noexcept {
    TRACE_FUNCTION();
    return EqualsNoCase(i_text.substr(0, i_prefix.size()), i_prefix) ? i_text.substr(i_prefix.size()) : i_text;
}

} // namespace

std::wstring BareToken(std::wstring_view i_token) {
    TRACE_FUNCTION();
    const std::wstring_view value = Trimmed(WithoutPrefix(Trimmed(i_token), header_name));
    const std::wstring_view token = WithoutPrefix(value, token_type_word);
    const bool has_type = token.empty() || blanks.find(token.front()) != std::wstring_view::npos;
    return std::wstring(has_type ? Trimmed(token) : value);
}

std::wstring AuthorizationHeader(const std::wstring& i_token) {
    TRACE_FUNCTION();
    std::wstring header(header_name);
    return header.append(token_type).append(i_token) + L'\n';
}
