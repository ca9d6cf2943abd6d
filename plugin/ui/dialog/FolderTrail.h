#pragma once

#include "ui/dialog/FailureText.h"
#include "ui/dialog/FolderView.h"
#include "ui/folder/FolderSource.h"

#include <memory>
#include <string>
#include <vector>

namespace Ui {

/// What to do in a folder once it is shown.
struct Arrival {
    std::wstring selected_title{};          ///< Of the item to select, such as the folder that the user came from.
    bool is_selection_chosen = false;       ///< The user wants that item, which was just made.
    Qorv::ComPtr<Qorv::IAFS_Name> target{}; ///< A typed location: if it is a file's, the user means the file.
    bool may_be_new = false;                ///< The target may be a file that isn't there yet.
    bool is_start = false;                  ///< The target was not typed: the dialog begins there.
    Qorv::ComPtr<Qorv::IAFS_Name> gone{};   ///< Where the dialog was to begin, if that doesn't exist.
};

/// A dialog's navigation through the folders of an account: where it is, what it does on arrival, and what follows if a
/// folder cannot be shown. It uses no windows: the view shows and asks, the source loads. UI thread.
///
/// Without a source, and while a folder loads, a request to go somewhere is ignored.
class FolderTrail {
public:
    /// The view outlives the trail.
    FolderTrail(Qorv::IAFS_FileSys* i_file_system, FolderView& io_view);
    ~FolderTrail();
    FolderTrail(const FolderTrail&) = delete;
    FolderTrail& operator=(const FolderTrail&) = delete;

    /// Starts over, for instance in another account. The folder may be a file, or null: then nothing is shown yet. If
    /// it doesn't exist, the nearest one above it is shown.
    void Connect(std::unique_ptr<FolderSource> i_source, Qorv::IAFS_Name* i_folder);
    /// Releases the source. Nothing is shown, asked or loaded from here on.
    void Disconnect() noexcept;
    bool IsConnected() const noexcept { return m_source != nullptr; }

    /// Shows a folder, or a file's folder.
    void Show(Qorv::IAFS_Name* i_folder_or_file, Arrival i_arrival);
    /// Shows the folder above, and selects the folder that the user came from.
    void ShowParent();
    /// Lets go of items that no longer exist.
    void Forget(const std::vector<Qorv::ComPtr<Qorv::IAFS_Name>>& i_names);
    /// Loads the folder again. Whatever is still to be done on arrival stays pending.
    void Reload();
    /// Loads the folder again, with something else to do on arrival.
    void Reload(Arrival i_arrival);
    /// The source's window received the message that this load is over.
    void OnLoadEnded(WPARAM i_load);
    /// Notices the end of a load whose message never arrived. To be called from time to time.
    void CheckLoad();

    bool IsLoading() const noexcept { return m_source != nullptr && m_source->IsLoading(); }
    bool IsShown() const noexcept { return m_source != nullptr && m_state == State::shown; }
    /// Where the dialog is or, while it loads, where it is going; null before the first folder.
    Qorv::IAFS_Name* GetFolder() const noexcept { return m_folder; }
    /// The folder above, null for a root.
    Qorv::ComPtr<Qorv::IAFS_Name> GetParentFolder() const;
    /// Where typed locations start from: a folder that was shown, else a root. Null before the first folder.
    Qorv::ComPtr<Qorv::IAFS_Name> GetOrigin() const;
    /// What the folder that was shown last holds.
    const FolderItems& GetItems() const noexcept { return m_shown.items; }

private:
    enum class State { nothing, loading, shown, failed };

    /// A folder that was loaded. It outlives the source's next load, which may fail.
    struct ShownFolder {
        Qorv::ComPtr<Qorv::IAFS_Name> folder;
        Qorv::ComPtr<Qorv::IAFS_Name> parent; ///< Null for a root.
        FolderItems items;
    };

    void OnBegun(HRESULT i_result);
    bool IsSameFolder(Qorv::IAFS_Name* i_left, Qorv::IAFS_Name* i_right) const;
    bool ShowParentInstead();
    void OnResult(HRESULT i_result);
    void OnLoadFailed(const Failure& i_failure);
    void Arrive();

    Qorv::ComPtr<Qorv::IAFS_FileSys> m_file_system;
    FolderView& m_view;
    std::unique_ptr<FolderSource> m_source;
    State m_state = State::nothing;
    Qorv::ComPtr<Qorv::IAFS_Name> m_folder;
    ShownFolder m_shown;            ///< Where a failure leads back to.
    bool m_is_source_shown = false; ///< The source's last load was that of the shown folder.
    Arrival m_arrival;
};

} // namespace Ui
