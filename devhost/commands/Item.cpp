#include "commands/Item.h"

#include "qorv/Values.h"
#include "services/NameText.h"

#include <array>
#include <cwchar>

namespace DevHost {
namespace {

SYSTEMTIME SystemTimeOf(std::uint64_t i_file_time) {
    const FILETIME file_time{static_cast<DWORD>(i_file_time), static_cast<DWORD>(i_file_time >> 32)};
    SYSTEMTIME time{};
    FileTimeToSystemTime(&file_time, &time);
    return time;
}

std::wstring Iso8601(std::uint64_t i_file_time) {
    const SYSTEMTIME time = SystemTimeOf(i_file_time);
    std::array<wchar_t, 32> text{};
    std::swprintf(text.data(), text.size(), L"%04d-%02d-%02dT%02d:%02d:%02dZ", time.wYear, time.wMonth, time.wDay,
                  time.wHour, time.wMinute, time.wSecond);
    return text.data();
}

} // namespace

Item Item::Read(Qorv::IAFS_FileSys& i_file_system, Qorv::IAFS_Name* i_name, const Operation& i_operation) {
    Qorv::ComPtr<Qorv::IAFS_FileInfo> info;
    i_operation.Check(i_file_system.GetFileInfo(i_name, i_operation.Details(), i_operation.Cancel(), &info));
    Item item;
    Qorv::Bstr title;
    ULONG attributes = 0;
    i_operation.Check(info->get_Title(&title));
    i_operation.Check(info->get_Attributes(&attributes));
    i_operation.Check(info->get_LastWriteTime(&item.modified));
    item.is_folder = (attributes & Qorv::AFS_Attribute_Folder) != 0;
    if (!item.is_folder)
        i_operation.Check(info->get_Size(&item.size));
    item.title = title.View();
    item.location = LocationOf(i_name);
    return item;
}

void Item::Write(JsonValue& io_json) const {
    io_json.Begin().Text("location", location).Text("name", title).Truth("is_folder", is_folder);
    if (is_folder)
        io_json.Null("size");
    else
        io_json.Number("size", size);
    if (modified == 0)
        io_json.Null("modified");
    else
        io_json.Text("modified", Iso8601(modified));
    io_json.End();
}

std::wstring Item::SizeText() const {
    if (is_folder)
        return {};
    std::wstring text = std::to_wstring(size);
    for (std::size_t digits = 3; digits < text.size(); digits += 4)
        text.insert(text.size() - digits, 1, L' ');
    return text;
}

std::wstring Item::ModifiedText() const {
    if (modified == 0)
        return {};
    const SYSTEMTIME utc = SystemTimeOf(modified);
    SYSTEMTIME local{};
    SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local);
    std::array<wchar_t, 32> text{};
    std::swprintf(text.data(), text.size(), L"%04d-%02d-%02d %02d:%02d", local.wYear, local.wMonth, local.wDay,
                  local.wHour, local.wMinute);
    return text.data();
}

bool IsThere(Qorv::IAFS_FileSys& i_file_system, Qorv::IAFS_Name* i_name, bool i_as_folder,
             const Operation& i_operation) {
    try {
        return Item::Read(i_file_system, i_name, i_operation).is_folder == i_as_folder;
    } catch (const Failure&) {
        return false;
    }
}

} // namespace DevHost
