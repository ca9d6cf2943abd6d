#pragma once

#include "qorv/Afs.h"
#include "ui/folder/StopFlag.h"

#include <cstddef>

namespace Ui {

/// The file system as one load uses it: calls without a cancel flag get the load's, so that they end early when it is
/// stopped. Do not pass the flag in the load's own source: a failed call is logged as it is written there, with a null
/// for the flag, and that text is part of the log's format.
class StoppableFileSystem {
public:
    StoppableFileSystem(Qorv::IAFS_FileSys* i_file_system, StopFlag* i_stop_flag)
        : m_file_system(i_file_system), m_stop_flag(i_stop_flag) {}

    const StoppableFileSystem* operator->() const noexcept { return this; }

    HRESULT GetFileInfo(Qorv::IAFS_Name* i_name, Qorv::IQorv_ErrorDetails* o_details, std::nullptr_t,
                        Qorv::IAFS_FileInfo** o_information) const noexcept {
        return m_file_system->GetFileInfo(i_name, o_details, m_stop_flag, o_information);
    }
    HRESULT EnumFolder(Qorv::IAFS_Name* i_name, Qorv::IQorv_ErrorDetails* o_details, std::nullptr_t,
                       Qorv::IAFS_EnumFolder** o_enum_folder) const noexcept {
        return m_file_system->EnumFolder(i_name, o_details, m_stop_flag, o_enum_folder);
    }
    HRESULT NameGetParent(Qorv::IAFS_Name* i_name, Qorv::IAFS_Name** o_parent) const noexcept {
        return m_file_system->NameGetParent(i_name, o_parent);
    }

private:
    Qorv::ComPtr<Qorv::IAFS_FileSys> m_file_system;
    Qorv::ComPtr<StopFlag> m_stop_flag;
};

} // namespace Ui
