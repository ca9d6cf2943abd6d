#pragma once

#include "core/trace/FailureReason.h"
#include "ui/folder/FolderItems.h"
#include "ui/folder/StoppableFileSystem.h"

#include <atomic>

namespace Ui {

/// One load of a folder on a worker thread, into its own copies, which nothing else touches meanwhile.
class FolderLoad {
public:
    /// Ends early when `i_is_running`, which must outlive it, becomes false, and at once where a call of the provider
    /// heeds the flag. The parent may be null: then it is looked up.
    FolderLoad(const StoppableFileSystem& i_file_system, Qorv::IAFS_Name* i_folder_or_file_item,
               Qorv::IAFS_Name* i_parent_folder, const std::atomic<bool>& i_is_running);

    /// The first failure's code; `Qorv::ErrorCanceled` when it was stopped.
    HRESULT Run() noexcept;

    const StoppableFileSystem m_file_system;
    Qorv::ComPtr<Qorv::IAFS_Name> m_folder; ///< Replaced by the file's folder if the name turns out to be a file's.
    Qorv::ComPtr<Qorv::IAFS_Name> m_parent_folder; ///< Null for a root.
    FolderItems m_items;
    FailureReason m_failure_reason; ///< Why the load failed; empty when nothing is known but the code.

private:
    HRESULT Load() noexcept;
    HRESULT FindFolders();
    HRESULT ReadItems();

    const std::atomic<bool>& m_is_running;
};

} // namespace Ui
