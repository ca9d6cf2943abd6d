#pragma once

#include "ui/folder/FoldersNavigator.h"
#include "ui/folder/Reaper.h"

#include <functional>
#include <memory>
#include <optional>

namespace Ui {

/// The folders of one account as a dialog goes through them, and the way in which the dialog hears of them: a message
/// that is posted to its window when a load is over. UI thread. What still loads at its end is left to the reaper.
class FolderConnection {
public:
    /// `i_message` has the load's number as its first parameter.
    FolderConnection(Qorv::IQorv_Inst* i_host_instance, Qorv::IAFS_FileSys* i_file_system, HWND i_window,
                     UINT i_message, Reaper& io_reaper);
    ~FolderConnection();
    FolderConnection(const FolderConnection&) = delete;
    FolderConnection& operator=(const FolderConnection&) = delete;

    /// Loads a folder, or a file's folder. S_FALSE when it is the one that was loaded last: nothing follows then.
    HRESULT Show(Qorv::IAFS_Name* i_folder_or_file);
    /// Loads the folder again, after a failure too.
    HRESULT Reload();
    bool IsLoading() const noexcept { return m_is_loading; }

    /// The result of the load that a message speaks of. No value for a load that was followed by another one.
    std::optional<HRESULT> TakeResult(WPARAM i_load) noexcept;

    // Of the load whose result was taken, until the next one begins.
    Qorv::IAFS_Name* GetFolder() const noexcept { return m_navigator->GetFolder(); }
    Qorv::IAFS_Name* GetParentFolder() const noexcept { return m_navigator->GetParentFolder(); }
    const FolderItems& GetItems() const noexcept { return m_navigator->GetItems(); }
    const FailureReason& GetFailureReason() const noexcept { return m_navigator->GetFailureReason(); }

private:
    /// What the navigator's completion has: nothing of a window, since it may be destroyed on another thread.
    struct Completion {
        HWND window;
        UINT message;
        WPARAM load = 0;
        HRESULT result = E_UNEXPECTED;
    };

    HRESULT Begin(const std::function<HRESULT()>& i_begin);

    Reaper& m_reaper;
    std::shared_ptr<Completion> m_completion;
    std::shared_ptr<FoldersNavigator> m_navigator;
    bool m_is_loading = false;
};

} // namespace Ui
