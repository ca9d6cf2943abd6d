#pragma once

#include "qorv/Afs.h"
#include "ui/dialog/FailureText.h"

#include <string>

namespace Ui {

enum class FailureAnswer { give_up, try_again, sign_in };

/// Shows the navigation to the user, and asks the user about it. UI thread.
class FolderView {
public:
    /// The path of the folder that the dialog is in or goes to.
    virtual void ShowPath(Qorv::IAFS_Name* i_folder) = 0;
    /// A load has begun: what is listed is of no use until it ends. A reload is that of the listed folder.
    virtual void OnLoadBegun(bool i_is_reload) = 0;
    /// The folder's items are ready to be listed.
    virtual void OnFolderShown() = 0;
    /// The load has failed, and the folder that is listed can be used again.
    virtual void OnLoadGivenUp() = 0;
    /// The load has failed, and nothing has been listed yet; the reason is shown in its place.
    virtual void OnLoadFailed(const Failure& i_failure) = 0;
    /// Whether to try again. The trail may be disconnected by the time this returns.
    virtual FailureAnswer AskAfterLoadFailure(Qorv::IAFS_Name* i_folder, const Failure& i_failure) = 0;
    /// To show the folder then.
    virtual void SignInAgain(Qorv::IAFS_Name* i_folder) = 0;

    // On arrival
    /// Selects an item; chosen means that the user wanted it, such as a folder just made.
    virtual void SelectItem(const std::wstring& i_title, bool i_is_chosen) = 0;
    /// The typed location was that of the folder.
    virtual void OnTypedFolderReached() = 0;
    /// The typed location is that of a file in the folder, or of a new one.
    virtual void OnTypedFileReached(const std::wstring& i_title) = 0;
    /// The dialog was to begin at this file.
    virtual void OnStartFileReached(const std::wstring& i_title) = 0;
    /// The dialog was to begin in this folder, which doesn't exist; the nearest one above it is shown.
    virtual void OnStartFolderGone(Qorv::IAFS_Name* i_folder) = 0;

protected:
    ~FolderView() = default;
};

} // namespace Ui
