#include "dropbox/DateTime.h"

#include "core/trace/Check.h"
#include "dropbox/Json.h"

#include <algorithm>
#include <cwchar>
#include <string_view>

namespace {

constexpr std::wstring_view usual_form = L"0000-00-00T00:00:00Z"; // A 0 matches any digit.

bool HasUsualForm(std::wstring_view i_text) {
    TRACE_FUNCTION();
    return std::ranges::equal(i_text, usual_form, [](wchar_t i_character, wchar_t i_wanted) {
        return i_wanted == L'0' ? L'0' <= i_character && i_character <= L'9' : i_character == i_wanted;
    });
}

WORD Number(std::wstring_view i_digits) {
    TRACE_FUNCTION();
    int number = 0;
    for (const wchar_t digit : i_digits)
        number = number * 10 + (digit - L'0');
    return static_cast<WORD>(number);
}

/// Returns how many of the six items it found.
int Scan(const wchar_t* text, SYSTEMTIME& o_time) {
    TRACE_FUNCTION();
    // The library's scan allocates memory for every number, which is far too slow for long listings.
    if (const std::wstring_view form = text; HasUsualForm(form)) {
        o_time.wYear = Number(form.substr(0, 4));
        o_time.wMonth = Number(form.substr(5, 2));
        o_time.wDay = Number(form.substr(8, 2));
        o_time.wHour = Number(form.substr(11, 2));
        o_time.wMinute = Number(form.substr(14, 2));
        o_time.wSecond = Number(form.substr(17, 2));
        return 6;
    }
    return std::swscanf(text, L"%4hu-%2hu-%2huT%2hu:%2hu:%2huZ", &o_time.wYear, &o_time.wMonth, &o_time.wDay,
                        &o_time.wHour, &o_time.wMinute, &o_time.wSecond);
}

} // namespace

std::uint64_t Dropbox::Utility::ParseDateTime(const wchar_t* text) {
    TRACE_FUNCTION();
    SYSTEMTIME time{};
    const int parsed_items = Scan(text, time);
    CHECK_THROW(6 == parsed_items,
                ReplyException(std::wstring(L"Date-time format returned by server has unexpected format: ") + text));
    FILETIME file_time{}; // Stays 0 for an impossible date: one odd date must not hide a whole folder.
    SystemTimeToFileTime(&time, &file_time);
    return std::uint64_t{file_time.dwHighDateTime} << 32 | file_time.dwLowDateTime;
}
