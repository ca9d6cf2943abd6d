#include "core/trace/Text.h"

#include "core/trace/Trace.h"
#include "qorv/Base.h"

#include <algorithm>

/// Not traced: the log uses it.
std::string ToUtf8(std::wstring_view i_text) {
    const int length = static_cast<int>(i_text.size());
    const int size = WideCharToMultiByte(CP_UTF8, 0, i_text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, i_text.data(), length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

std::wstring FromUtf8(std::string_view i_bytes) {
    TRACE_FUNCTION();
    const int size = static_cast<int>(i_bytes.size());
    const int length = MultiByteToWideChar(CP_UTF8, 0, i_bytes.data(), size, nullptr, 0);
    std::wstring text(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, i_bytes.data(), size, text.data(), length);
    return text;
}

int StringCompare(std::wstring_view i_text, std::wstring_view i_other, int i_length) noexcept {
    TRACE_FUNCTION();
    // The platform would read past the end of a shorter text.
    const std::wstring_view other = i_other.substr(0, static_cast<std::size_t>(std::max(i_length, 0)));
    // The platform ignores characters without width, but only an empty text may equal an empty text.
    if (i_text.empty() || other.empty())
        return static_cast<int>(other.empty()) - static_cast<int>(i_text.empty());
    if (i_text == other)
        return 0; // Most comparisons end here; the platform's is slow.
    return CompareStringW(LOCALE_INVARIANT, NORM_IGNORECASE, i_text.data(), static_cast<int>(i_text.size()),
                          other.data(), static_cast<int>(other.size())) -
           CSTR_EQUAL;
}

bool EqualsNoCase(std::wstring_view i_text, std::wstring_view i_other) noexcept {
    TRACE_FUNCTION();
    return StringCompare(i_text, i_other, static_cast<int>(i_other.size())) == 0;
}

bool IsSameName(std::wstring_view i_text, std::wstring_view i_other) noexcept {
    TRACE_FUNCTION();
    return i_text == i_other || CompareStringOrdinal(i_text.data(), static_cast<int>(i_text.size()), i_other.data(),
                                                     static_cast<int>(i_other.size()), TRUE) == CSTR_EQUAL;
}
