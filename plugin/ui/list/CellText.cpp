#include "ui/list/CellText.h"

#include "core/host/LocalizedText.h"
#include "core/trace/Trace.h"

#include <array>

#include <shlwapi.h>

namespace Ui {
namespace {

/// A size as the system writes sizes: "1.17 MB". The system knows no singular.
std::wstring SizeText(ULONGLONG i_size, const std::wstring& i_one_byte) {
    TRACE_FUNCTION();
    if (i_size == 1)
        return i_one_byte;
    std::array<wchar_t, 64> text{};
    StrFormatByteSizeW(static_cast<LONGLONG>(i_size), text.data(), static_cast<UINT>(text.size()));
    return text.data();
}

/// A file time in local time, with the daylight saving of its own date, in the user's short format; empty for 0 and
/// for a time outside the calendar.
std::wstring DateText(ULONGLONG i_time, const TIME_ZONE_INFORMATION* i_time_zone) {
    TRACE_FUNCTION();
    const FILETIME file_time{static_cast<DWORD>(i_time), static_cast<DWORD>(i_time >> 32)};
    SYSTEMTIME utc{}, local{};
    std::array<wchar_t, 128> date{}, time{};
    const int capacity = static_cast<int>(date.size());
    if (i_time == 0 || !FileTimeToSystemTime(&file_time, &utc) ||
        !SystemTimeToTzSpecificLocalTime(i_time_zone, &utc, &local) ||
        GetDateFormatEx(LOCALE_NAME_USER_DEFAULT, DATE_SHORTDATE, &local, nullptr, date.data(), capacity, nullptr) ==
            0 ||
        GetTimeFormatEx(LOCALE_NAME_USER_DEFAULT, TIME_NOSECONDS, &local, nullptr, time.data(), capacity) == 0)
        return {};
    return std::wstring(date.data()) + L' ' + time.data();
}

} // namespace

CellText::CellText(Qorv::IQorv_Inst* host_instance, const TIME_ZONE_INFORMATION* i_time_zone)
    : m_time_zone(i_time_zone)
    , m_folder(FormatString(host_instance, L"db.kind.folder"))
    , m_file(FormatString(host_instance, L"db.kind.file"))
    , m_one_byte(FormatString(host_instance, L"db.str.oneByte"))
    , m_extension_file(FormatString(host_instance, L"db.kind.extension")) {
    TRACE_FUNCTION();
}

std::wstring CellText::Text(const FileRow& i_row, FileColumn i_column) const {
    TRACE_FUNCTION();
    switch (i_column) {
    case FileColumn::name:
        return i_row.title;
    case FileColumn::size:
        return i_row.is_folder ? std::wstring() : SizeText(i_row.size, m_one_byte);
    case FileColumn::kind:
        return Kind(i_row);
    case FileColumn::date:
        return DateText(i_row.modified, m_time_zone);
    }
    return {};
}

std::wstring CellText::Kind(const FileRow& i_row) const {
    TRACE_FUNCTION();
    if (i_row.is_folder)
        return m_folder;
    if (i_row.extension.empty())
        return m_file;
    std::wstring text = m_extension_file;
    if (const std::size_t place = text.find(L"%1"); place != std::wstring::npos)
        text.replace(place, 2, i_row.extension);
    return text;
}

} // namespace Ui
