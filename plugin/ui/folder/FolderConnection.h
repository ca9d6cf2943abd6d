#pragma once

#include "ui/folder/FolderSource.h"
#include "ui/folder/FoldersNavigator.h"
#include "ui/folder/Reaper.h"

#include <functional>
#include <memory>

namespace Ui {

/// The folders of one account, loaded by a navigator. When a load ends, a message is posted to the dialog's window.
/// Whatever still loads when the connection ends is left to the reaper.
class FolderConnection final : public FolderSource {
public:
    /// `i_message` has the load's number as its first parameter.
    FolderConnection(Qorv::IQorv_Inst* i_host_instance, Qorv::IAFS_FileSys* i_file_system, HWND i_window,
                     UINT i_message, Reaper& io_reaper);
    ~FolderConnection() override;
    FolderConnection(const FolderConnection&) = delete;
    FolderConnection& operator=(const FolderConnection&) = delete;

    HRESULT Show(Qorv::IAFS_Name* i_folder_or_file) override;
    HRESULT Reload() override;
    bool IsLoading() const noexcept override { return m_phase != Phase::idle; }
    std::optional<HRESULT> TakeResult(WPARAM i_load) noexcept override;
    std::optional<HRESULT> TakeUntoldResult() noexcept override;

    Qorv::IAFS_Name* GetFolder() const noexcept override { return m_navigator->GetFolder(); }
    Qorv::IAFS_Name* GetParentFolder() const noexcept override { return m_navigator->GetParentFolder(); }
    const FolderItems& GetItems() const noexcept override { return m_navigator->GetItems(); }
    const FailureReason& GetFailureReason() const noexcept override { return m_navigator->GetFailureReason(); }

private:
    /// The state for the navigator's completion. It refers to no window, because it may be destroyed on another thread.
    struct Completion {
        HWND window;
        UINT message;
        WPARAM load = 0;
        HRESULT result = E_UNEXPECTED;
    };

    enum class Phase { idle, beginning, loading };

    void MakeNavigator();
    void LeaveNavigator() noexcept;
    bool IsLikeness(Qorv::IAFS_Name* i_name) const;
    HRESULT Begin(const std::function<HRESULT()>& i_begin);

    Qorv::ComPtr<Qorv::IQorv_Inst> m_host_instance;
    Qorv::ComPtr<Qorv::IAFS_FileSys> m_file_system;
    Reaper& m_reaper;
    std::shared_ptr<Completion> m_completion;
    std::shared_ptr<FoldersNavigator> m_navigator;
    Phase m_phase = Phase::idle;
};

} // namespace Ui
