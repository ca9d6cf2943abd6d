#pragma once

#include "qorv/Host.h"
#include "ui/folder/FolderLoad.h"
#include "ui/folder/StopFlag.h"
#include "ui/folder/WorkerTask.h"

#include <functional>

/// Loads the contents of one folder at a time on a worker thread, so that no window waits for the network, and tells
/// the UI thread when that is done.
///
/// Created and called on the UI thread. After `Abandon` it may be destroyed on another thread, so that a hanging
/// listing holds up no window; the completion callback is then destroyed there too.
class FoldersNavigator {
public:
    /// `i_completion` is called on the UI thread, once for each load that was not stopped, with the load's result, or
    /// with S_FALSE when there is no folder. It records the result and posts a message: no modal window, and no
    /// `SetFolder`, `Refresh` or `Stop`, while the worker waits for it.
    FoldersNavigator(Qorv::IQorv_Inst* i_host_instance, Qorv::IAFS_FileSys* i_file_system,
                     std::function<void(HRESULT)> i_completion);
    /// Stops.
    ~FoldersNavigator();
    FoldersNavigator(const FoldersNavigator&) = delete;
    FoldersNavigator& operator=(const FoldersNavigator&) = delete;

    /// Shows a folder, or a file's folder. Does nothing if it is already shown; `Refresh` tries again. E_FAIL while a
    /// load runs.
    HRESULT SetFolder(Qorv::IAFS_Name* folder_or_file_item);

    /// Loads the folder again. S_OK when a load was started, S_FALSE when there is no folder, E_FAIL while a load runs.
    HRESULT Refresh();

    /// Ends a running load, without a completion, and waits for its end; thread-safe calls to this thread are served
    /// meanwhile, so that messages posted to its windows arrive.
    void Stop() noexcept;

    /// `Stop` without waiting: the running load won't be completed.
    void Abandon() noexcept;

    /// Until its completion was delivered, or it was stopped, or the host has refused to deliver it.
    bool IsRunning() const noexcept { return m_is_running && !m_is_delivered; }

    // What the last load found. To be read when its completion arrives, and until the next call that begins one.
    Qorv::IAFS_Name* GetFolder() const noexcept { return m_folder; }
    /// Null for a root.
    Qorv::IAFS_Name* GetParentFolder() const noexcept { return m_parent_folder; }
    const Ui::FolderItems& GetItems() const noexcept { return m_items; }
    /// Why the load failed, in words for a person; empty when nothing is known but the code.
    const FailureReason& GetFailureReason() const noexcept { return m_failure_reason; }

private:
    void Launch();
    HRESULT Complete(Ui::FolderLoad& io_load) noexcept;
    bool Deliver(Ui::FolderLoad& io_load, HRESULT i_result);

    Qorv::ComPtr<Qorv::IQorv_Inst> m_host_instance;
    Qorv::ComPtr<Qorv::IAFS_FileSys> m_file_system;
    Qorv::ComPtr<Qorv::IAFS_Name> m_folder;
    Qorv::ComPtr<Qorv::IAFS_Name> m_parent_folder;
    std::function<void(HRESULT)> m_completion;
    Ui::FolderItems m_items;
    FailureReason m_failure_reason;
    bool m_is_delivered = false; ///< The load's completion was called; its thread is about to end.
    Ui::WorkerTask m_load_task;
    std::atomic<bool> m_is_running = false;
    Qorv::ComPtr<Ui::StopFlag> m_stop_flag; ///< Of the last load.
};
