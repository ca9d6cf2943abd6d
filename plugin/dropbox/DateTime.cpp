#include "dropbox/DateTime.h"

#include "core/Check.h"

#include <cwchar>

std::uint64_t Dropbox::Utility::ParseDateTime(const wchar_t* text) {
    TRACE_FUNCTION();
    SYSTEMTIME time{};
    const int parsed_items = std::swscanf(text, L"%4hu-%2hu-%2huT%2hu:%2hu:%2huZ", &time.wYear, &time.wMonth,
                                          &time.wDay, &time.wHour, &time.wMinute, &time.wSecond);
    CHECK_THROW(6 == parsed_items,
                Exception(std::wstring(L"Date-time format returned by server has unexpected format: ") + text));
    FILETIME file_time{}; // Stays 0 for a date that does not exist: one odd date must not hide a whole folder.
    SystemTimeToFileTime(&time, &file_time);
    return std::uint64_t{file_time.dwHighDateTime} << 32 | file_time.dwLowDateTime;
}
