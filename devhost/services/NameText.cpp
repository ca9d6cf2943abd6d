#include "services/NameText.h"

#include "base/Failure.h"
#include "qorv/Values.h"

namespace DevHost {
namespace {

std::wstring TextOf(Qorv::IAFS_Name* i_name, ULONG i_flags) {
    Qorv::ComPtr<Qorv::IAFS_FileSys> file_system;
    Check(i_name->get_FileSys(&file_system), L"Cannot read a location");
    Qorv::Bstr text;
    Check(file_system->NameToString(i_name, i_flags, nullptr, &text), L"Cannot read a location");
    return std::wstring(text.View());
}

} // namespace

std::wstring LocationOf(Qorv::IAFS_Name* i_name) {
    return TextOf(i_name, 0);
}

std::wstring DisplayPathOf(Qorv::IAFS_Name* i_name) {
    const std::wstring path = TextOf(i_name, Qorv::AFS_Name2String_ForDisplay);
    return path.empty() ? L"/" : path;
}

} // namespace DevHost
