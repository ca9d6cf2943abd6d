#include "http/Response.h"

#include "core/trace/Check.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>

namespace Http {

namespace {

constexpr std::size_t first_value_capacity = 256; // Bytes; most values are shorter.

struct Free {
    void operator()(void* i_memory) const noexcept { std::free(i_memory); }
};
using Buffer = std::unique_ptr<wchar_t, Free>;

HResultException OutOfMemory() {
    TRACE_FUNCTION();
    return HResultException(E_OUTOFMEMORY);
}

/// Empty for anything but digits.
std::optional<std::uint64_t> Number(const std::wstring& i_text) {
    TRACE_FUNCTION();
    const std::string digits(i_text.begin(), i_text.end());
    const char* const digits_end = digits.data() + digits.size();
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits_end, number);
    return error == std::errc() && end == digits_end ? std::optional(number) : std::nullopt;
}

} // namespace

Response::Response() : m_impl(std::make_shared<Impl>()) {
    TRACE_FUNCTION();
}

std::uint32_t Response::Read(void* buffer, std::size_t max_size) {
    TRACE_FUNCTION();
    max_size = std::min<std::size_t>(max_size, MAXDWORD);
    DWORD read_size = 0;
    CHECK_THROW(InternetReadFile(m_impl->handle, buffer, static_cast<DWORD>(max_size), &read_size), RequestFailure());
    if (m_impl->received == 0)
        m_impl->length = Length();
    m_impl->received += read_size;
    CheckLength(read_size == 0);
    return read_size;
}

std::optional<std::uint64_t> Response::Length() const {
    TRACE_FUNCTION();
    if (!GetHeaders(L"Transfer-Encoding").empty())
        return std::nullopt; // The body ends where its last chunk says (RFC 9112, 6.3).
    const auto lengths = GetHeaders(L"Content-Length");
    return lengths.empty() ? std::nullopt : Number(lengths.front());
}

void Response::CheckLength(bool i_is_end) const {
    TRACE_FUNCTION();
    const std::uint64_t length = m_impl->length.value_or(m_impl->received);
    CHECK_THROW(m_impl->received <= length, HResultException(L"The reply is longer than it was announced",
                                                             HRESULT_FROM_WIN32(ERROR_HTTP_INVALID_SERVER_RESPONSE)));
    // WinINet reports a body that was cut off as if it had ended normally.
    CHECK_THROW(!i_is_end || m_impl->received == length,
                HResultException(L"The connection was closed before the whole reply had arrived",
                                 HRESULT_FROM_WIN32(ERROR_INTERNET_CONNECTION_ABORTED)));
}

std::vector<std::wstring> Response::GetHeaders(const std::wstring& name) const {
    TRACE_FUNCTION();
    const std::size_t name_size = (name.size() + 1) * sizeof(wchar_t);
    std::size_t capacity = std::max(first_value_capacity, name_size); // Bytes, as all sizes here.
    Buffer buffer(static_cast<wchar_t*>(std::malloc(capacity)));
    CHECK_THROW(buffer != nullptr, OutOfMemory());

    std::vector<std::wstring> values;
    for (DWORD index = 0;;) { // WinINet advances it past each value.
        std::memcpy(buffer.get(), name.c_str(), name_size);
        DWORD size = static_cast<DWORD>(capacity);
        if (HttpQueryInfoW(Handle(), HTTP_QUERY_CUSTOM, buffer.get(), &size, &index)) {
            values.emplace_back(buffer.get(), size / sizeof(wchar_t));
            continue;
        }
        if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
            CHECK_THROW(GetLastError() == ERROR_HTTP_HEADER_NOT_FOUND, RequestFailure());
            return values;
        }
        Buffer new_buffer(static_cast<wchar_t*>(std::malloc(size)));
        CHECK_THROW(new_buffer != nullptr, OutOfMemory());
        buffer = std::move(new_buffer);
        capacity = size;
    }
}

std::wstring Response::GetHeaders() const {
    TRACE_FUNCTION();
    DWORD size = 0; // In bytes.
    SetLastError(ERROR_SUCCESS);
    HttpQueryInfoW(Handle(), HTTP_QUERY_RAW_HEADERS, nullptr, &size, nullptr);
    CHECK_THROW(GetLastError() == 0 || GetLastError() == ERROR_INSUFFICIENT_BUFFER, RequestFailure());
    std::wstring headers(size / sizeof(wchar_t), L'\0');
    CHECK_THROW(HttpQueryInfoW(Handle(), HTTP_QUERY_RAW_HEADERS, headers.data(), &size, nullptr), RequestFailure());
    headers.resize(size / sizeof(wchar_t));
    return headers;
}

} // namespace Http
