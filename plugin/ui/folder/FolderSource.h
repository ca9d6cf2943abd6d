#pragma once

#include "core/trace/FailureReason.h"
#include "ui/folder/FolderItems.h"

#include <optional>

namespace Ui {

/// Loads the folders of one account, one at a time, and tells its owner's window when a load is over. UI thread.
class FolderSource {
public:
    virtual ~FolderSource() = default;

    /// Loads a folder, or a file's folder. S_FALSE when it is the one that was loaded last: nothing follows then.
    virtual HRESULT Show(Qorv::IAFS_Name* i_folder_or_file) = 0;
    /// Loads the folder again, after a failure too.
    virtual HRESULT Reload() = 0;
    virtual bool IsLoading() const noexcept = 0;

    /// The result of the load that a message reports. No value if another load has started since.
    virtual std::optional<HRESULT> TakeResult(WPARAM i_load) noexcept = 0;
    /// The result of a load that is over although no message arrived; E_UNEXPECTED if the result was lost too. To be
    /// called from time to time while a load runs.
    virtual std::optional<HRESULT> TakeUntoldResult() noexcept = 0;

    // These belong to the load whose result was taken, until the next one begins.
    virtual Qorv::IAFS_Name* GetFolder() const noexcept = 0;
    /// Null for a root.
    virtual Qorv::IAFS_Name* GetParentFolder() const noexcept = 0;
    virtual const FolderItems& GetItems() const noexcept = 0;
    virtual const FailureReason& GetFailureReason() const noexcept = 0;
};

} // namespace Ui
