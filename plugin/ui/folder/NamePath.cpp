#include "ui/folder/NamePath.h"

#include "core/trace/Trace.h"
#include "qorv/Values.h"

namespace Ui {

std::wstring PathOf(Qorv::IAFS_FileSys* i_file_system, Qorv::IAFS_Name* i_name) {
    TRACE_FUNCTION();
    Qorv::Bstr path;
    if (FAILED(i_file_system->NameToString(i_name, Qorv::AFS_Name2String_ForDisplay, nullptr, &path)))
        return {};
    return std::wstring(path.View());
}

std::wstring TitleOf(Qorv::IAFS_FileSys* i_file_system, Qorv::IAFS_Name* i_name) {
    TRACE_FUNCTION();
    const std::wstring path = PathOf(i_file_system, i_name);
    return path.substr(path.rfind(L'/') + 1); // npos + 1 is 0.
}

std::wstring UserNameOf(Qorv::IAFS_FileSys* i_file_system, Qorv::IAFS_Name* i_bound_name) {
    TRACE_FUNCTION();
    Qorv::Variant value;
    if (FAILED(i_file_system->get_Prop(i_bound_name, L"UserName", &value)) || value->vt != VT_BSTR ||
        value->bstrVal == nullptr)
        return {};
    return {value->bstrVal, SysStringLen(value->bstrVal)};
}

Qorv::ComPtr<Qorv::IAFS_Name> RootOf(Qorv::IAFS_FileSys* i_file_system, Qorv::IAFS_Name* i_name) {
    TRACE_FUNCTION();
    Qorv::ComPtr<Qorv::IAFS_Name> root;
    for (Qorv::ComPtr<Qorv::IAFS_Name> name(i_name); name != nullptr;) {
        root = name;
        Qorv::ComPtr<Qorv::IAFS_Name> parent;
        i_file_system->NameGetParent(name, &parent);
        name = parent;
    }
    return root;
}

} // namespace Ui
