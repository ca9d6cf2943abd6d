#include "dropbox/RemotePath.h"

#include "core/trace/Text.h"
#include "core/trace/Trace.h"

#include <algorithm>

namespace {

constexpr wchar_t last_ascii = 0x7F;

/// Empty for text that is not valid UTF-16.
std::wstring Composed(std::wstring_view i_text) {
    TRACE_FUNCTION();
    const int length = static_cast<int>(i_text.size());
    std::wstring composed;
    int capacity = NormalizeString(NormalizationC, i_text.data(), length, nullptr, 0);
    while (capacity > static_cast<int>(composed.size())) {
        composed.resize(static_cast<std::size_t>(capacity));
        const int result = NormalizeString(NormalizationC, i_text.data(), length, composed.data(), capacity);
        if (result > 0)
            return composed.substr(0, static_cast<std::size_t>(result));
        capacity = -result; // The first capacity is an estimate; a failure gives a better one, negated.
    }
    return {};
}

std::wstring Escaped(wchar_t i_unit) {
    TRACE_FUNCTION();
    constexpr wchar_t digits[] = L"0123456789abcdef";
    return {L'\\',
            L'u',
            digits[i_unit >> 12 & 0xF],
            digits[i_unit >> 8 & 0xF],
            digits[i_unit >> 4 & 0xF],
            digits[i_unit & 0xF]};
}

} // namespace

bool Dropbox::IsWellFormed(std::wstring_view i_path) noexcept {
    TRACE_FUNCTION();
    if (i_path.empty())
        return true;
    if (std::ranges::any_of(i_path, [](wchar_t i_unit) { return i_unit < L' '; }))
        return false;
    return WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, i_path.data(), static_cast<int>(i_path.size()), nullptr,
                               0, nullptr, nullptr) != 0;
}

bool Dropbox::CanBeSent(std::wstring_view i_path) noexcept {
    TRACE_FUNCTION();
    return IsWellFormed(i_path) && i_path.find_first_of(L"\"\\") == std::wstring_view::npos;
}

std::wstring Dropbox::HeaderText(std::wstring_view i_text, UINT i_code_page) {
    TRACE_FUNCTION();
    if (i_code_page == CP_UTF8)
        return std::wstring(i_text);
    std::wstring text;
    text.reserve(i_text.size());
    for (const wchar_t unit : i_text)
        if (unit <= last_ascii)
            text += unit;
        else
            text += Escaped(unit);
    return text;
}

bool Dropbox::IsSamePath(std::wstring_view i_asked, std::wstring_view i_answered) {
    TRACE_FUNCTION();
    const std::wstring asked = Composed(i_asked);
    return IsSameName(i_asked, i_answered) || (!asked.empty() && IsSameName(asked, Composed(i_answered)));
}
