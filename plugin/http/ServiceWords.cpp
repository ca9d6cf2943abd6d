#include "http/ServiceWords.h"

#include "core/trace/Trace.h"

#include <algorithm>
#include <charconv>
#include <cwctype>

namespace {

constexpr std::size_t longest_words = 300;

// The next two and `PlainWords` are not traced, because exceptions are made with them.

/// Invisible characters that change the direction of the text around them.
bool IsUnseen(wchar_t i_unit) noexcept {
    static constexpr std::wstring_view units = L"\x061C\x200E\x200F\x202A\x202B\x202C\x202D\x202E\x2066\x2067\x2068"
                                               L"\x2069\xFEFF";
    return units.find(i_unit) != std::wstring_view::npos;
}

bool IsControl(wchar_t i_unit) noexcept {
    return i_unit < L' ' || (i_unit >= L'\x7F' && i_unit <= L'\x9F') || i_unit == L'\x2028' || i_unit == L'\x2029';
}

/// The UTF-16 unit that an escape's four hexadecimal digits stand for, or U+FFFD if they are not digits.
wchar_t EscapedUnit(std::wstring_view i_digits) {
    TRACE_FUNCTION();
    const std::string digits(i_digits.begin(), i_digits.end());
    unsigned unit = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), unit, 16);
    return digits.size() == 4 && end == digits.data() + digits.size() ? static_cast<wchar_t>(unit) : L'\xFFFD';
}

std::wstring_view AfterSpaces(std::wstring_view i_json) {
    TRACE_FUNCTION();
    return i_json.substr(std::min(i_json.find_first_not_of(L" \t\r\n"), i_json.size()));
}

/// The text of a JSON string that follows its first quotation mark; empty if the string does not end. A whole parser
/// for this one word would be too much for a layer that knows nothing about what it carries.
std::wstring Unescaped(std::wstring_view i_json) {
    TRACE_FUNCTION();
    std::wstring text;
    for (std::size_t i = 0; i < i_json.size(); ++i) {
        if (i_json[i] == L'"')
            return text;
        if (i_json[i] != L'\\') {
            text += i_json[i];
            continue;
        }
        const wchar_t escape = ++i < i_json.size() ? i_json[i] : L'\0';
        if (escape == L'u') {
            text += EscapedUnit(i_json.substr(i + 1, 4));
            i += 4;
        } else {
            // The others stand for control characters; show a space.
            text += escape == L'"' || escape == L'\\' || escape == L'/' ? escape : L' ';
        }
    }
    return {};
}

} // namespace

std::wstring Http::PlainWords(std::wstring_view i_words) {
    std::wstring words;
    for (const wchar_t unit : i_words.substr(0, 4 * longest_words)) {
        if (words.size() == longest_words)
            break;
        if (!IsUnseen(unit))
            words += IsControl(unit) ? L' ' : unit;
    }
    if (!words.empty() && words.size() == longest_words && IS_HIGH_SURROGATE(words.back()))
        words.pop_back();
    while (!words.empty() && std::iswspace(words.back()) != 0)
        words.pop_back();
    return words;
}

std::wstring Http::ErrorSummary(std::wstring_view i_json) {
    TRACE_FUNCTION();
    static constexpr std::wstring_view key = L"\"error_summary\"";
    const std::size_t key_at = i_json.find(key);
    if (key_at == std::wstring_view::npos)
        return {};
    std::wstring_view value = AfterSpaces(i_json.substr(key_at + key.size()));
    if (!value.starts_with(L':'))
        return {};
    value = AfterSpaces(value.substr(1));
    return value.starts_with(L'"') ? PlainWords(Unescaped(value.substr(1))) : std::wstring{};
}
