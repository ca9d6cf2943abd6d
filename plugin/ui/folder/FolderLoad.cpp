#include "ui/folder/FolderLoad.h"

#include "core/trace/Check.h"

namespace Ui {

FolderLoad::FolderLoad(const StoppableFileSystem& i_file_system, Qorv::IAFS_Name* i_folder_or_file_item,
                       Qorv::IAFS_Name* i_parent_folder, const std::atomic<bool>& i_is_running)
    : m_file_system(i_file_system)
    , m_folder(i_folder_or_file_item)
    , m_parent_folder(i_parent_folder)
    , m_is_running(i_is_running) {
    TRACE_FUNCTION();
}

HRESULT FolderLoad::Run() noexcept {
    TRACE_FUNCTION();
    const HRESULT result = Load();
    if (FAILED(result))
        m_failure_reason = TakeThreadReason();
    CHECK_HRESULT(result);
    return TRACE_RESULT(S_OK);
}

HRESULT FolderLoad::Load() noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        CHECK_HRESULT(FindFolders());
        CHECK_HRESULT(ReadItems());
        return TRACE_RESULT(S_OK);
    };
}

HRESULT FolderLoad::FindFolders() {
    TRACE_FUNCTION();
    Qorv::ComPtr<Qorv::IAFS_FileInfo> information;
    CHECK_HRESULT(m_file_system->GetFileInfo(m_folder, nullptr, nullptr, &information));
    ULONG attributes = 0;
    CHECK_HRESULT(information->get_Attributes(&attributes));
    if ((attributes & Qorv::AFS_Attribute_Folder) == 0) {
        Qorv::ComPtr<Qorv::IAFS_Name> parent;
        CHECK_HRESULT(m_file_system->NameGetParent(m_folder, &parent));
        m_folder = parent;
        m_parent_folder.Reset(); // It was the file's parent, not the folder's.
    }
    if (m_parent_folder == nullptr)
        CHECK_HRESULT(m_file_system->NameGetParent(m_folder, &m_parent_folder));
    return TRACE_RESULT(S_OK);
}

HRESULT FolderLoad::ReadItems() {
    TRACE_FUNCTION();
    Qorv::ComPtr<Qorv::IAFS_EnumFolder> enum_folder;
    CHECK_HRESULT(m_file_system->EnumFolder(m_folder, nullptr, nullptr, &enum_folder));
    for (;;) {
        CHECK_RETURN(m_is_running, Qorv::ErrorCanceled);
        Qorv::ComPtr<Qorv::IAFS_EnumFolderItem> enum_item;
        CHECK_HRESULT(enum_folder->Next(&enum_item));
        if (enum_item == nullptr)
            break;
        Qorv::ComPtr<Qorv::IAFS_Name> name;
        CHECK_HRESULT(enum_item->get_Name(&name));
        m_items[name] = enum_item;
    }
    CHECK_RETURN(m_is_running, Qorv::ErrorCanceled);
    return TRACE_RESULT(S_OK);
}

} // namespace Ui
