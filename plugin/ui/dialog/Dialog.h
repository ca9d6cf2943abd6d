#pragma once

#include "afs/NamesCollection.h"
#include "qorv/CoClass.h"
#include "qorv/Host.h"
#include "qorv/Uix.h"
#include "ui/dialog/Decision.h"
#include "ui/dialog/DialogItems.h"
#include "ui/dialog/DialogQuestions.h"
#include "ui/dialog/FolderHistory.h"
#include "ui/dialog/FolderTrail.h"
#include "ui/dialog/KeyCommands.h"
#include "ui/dialog/RunningCommand.h"
#include "ui/dialog/WatchTimer.h"
#include "ui/list/FileList.h"
#include "ui/names/FilesExtensionFilter.h"

#include <functional>
#include <memory>
#include <string>

namespace Qorv {

/// One run of the Open or the Save dialog: brings together what the user does in the window, the folders of the
/// account, and the decisions. UI thread.
///
/// Everything that calls the service runs on a worker: a folder's load, or a command. Only one runs at a time, and
/// whatever the user asks for meanwhile is ignored, except OK while a folder loads, which waits for it. Only closing
/// never waits.
class Dialog final : public CoClass<Dialog, IUIX_ObjSink>, private Ui::FolderView {
public:
    /// What all dialogs of the plug-in share.
    struct Context {
        ComPtr<IQorv_Inst> host_instance;
        ComPtr<IQorv_Plugin> plugin;
        ComPtr<IAFS_FileSys> file_system;
        const Ui::DialogUi& ui;
        Ui::Reaper& reaper;
    };

    /// The parameters are the caller's, and outlive the dialog; the default folder may be null.
    Dialog(const Context& i_context, Ui::DialogParameters* io_parameters, IAFS_Name* i_default_folder);
    ~Dialog();

    /// Shows the dialog and waits for its end: S_OK if the user confirmed, `ErrorCanceled` if not.
    HRESULT DoModal(bool is_open, HWND parent_window);

    /// What the user chose.
    ComPtr<NamesCollection> m_files_to_open;

    HRESULT STDMETHODCALLTYPE OnAttach(IUIX_Obj* i_object) noexcept override;
    HRESULT STDMETHODCALLTYPE OnInit() noexcept override;
    HRESULT STDMETHODCALLTYPE OnSize() noexcept override;
    HRESULT STDMETHODCALLTYPE OnItemEvent(PCStr i_item_id, ULONG i_kind, LONG i_detail) noexcept override;
    HRESULT STDMETHODCALLTYPE OnMessage(UINT i_message, WPARAM i_w_param, LPARAM i_l_param) noexcept override;
    HRESULT STDMETHODCALLTYPE OnDestroy() noexcept override;

private:
    // Dialog.cpp: the window
    HRESULT InitFilter();
    HRESULT InitWindow();
    void UpdateItems();
    void UpdateOkCaption();
    bool IsBusy() const noexcept;
    void CheckWorkers();
    std::wstring Text(PCStr i_id, std::initializer_list<std::wstring_view> i_arguments = {}) const;

    // DialogEvents.cpp: what the user does with the items
    HRESULT Guard(const std::function<void()>& i_body) noexcept;
    HRESULT Handle(const std::function<void()>& i_handler) noexcept;
    void OnOk(LONG i_detail);
    void OnCancel(LONG i_detail);
    void OnChooseUser(LONG i_detail);
    void OnSettings(LONG i_detail);
    void OnPathClicked(LONG i_detail);
    void OnSelectionChanged(LONG i_detail);
    void OnRowActivated(LONG i_row);
    void OnColumnClicked(LONG i_column);
    void OnRowEdited(LONG i_row);
    void OnContextMenu(LONG i_place);
    void OnFilterChanged(LONG i_detail);
    void OnNameChanged(LONG i_detail);
    void CompleteName();
    void OnCommand(LONG i_command);
    HRESULT OnFilterComboSelectionChanged();
    bool IsOneName(const std::wstring& i_text) const;
    /// What the name box shows for what is selected: the name, or a quoted list of several. Only files, or, where one
    /// is chosen, a folder.
    std::wstring SelectedNames() const;
    void ShowSelectedNames();

    // DialogNavigation.cpp: folders
    void Connect(IAFS_Name* i_folder);
    void Disconnect() noexcept;
    void ShowPath(IAFS_Name* i_folder) override;
    void OnLoadBegun(bool i_is_reload) override;
    void OnFolderShown() override;
    void OnLoadGivenUp() override;
    void OnLoadFailed(const Ui::Failure& i_failure) override;
    Ui::FailureAnswer AskAfterLoadFailure(IAFS_Name* i_folder, const Ui::Failure& i_failure) override;
    void SelectItem(const std::wstring& i_title, bool i_is_chosen) override;
    void OnTypedFolderReached() override;
    void OnTypedFileReached(const std::wstring& i_title) override;
    void OnStartFileReached(const std::wstring& i_title) override;
    void OnStartFolderGone(IAFS_Name* i_folder) override;
    void Step(Ui::FolderHistory::Direction i_direction);
    void ShowPlaces();
    std::vector<std::wstring> Places() const;
    void ShowLocation(const std::wstring& i_location);
    std::wstring LocationOf(IAFS_Name* i_name) const;
    std::wstring DisplayPath(IAFS_Name* i_name) const;

    // DialogChoice.cpp: what OK means
    Ui::DialogContent Content() const;
    void Confirm();
    void ConfirmWhatWaits();
    void Carry(const Ui::Decision& i_decision);
    void GoTo(const std::wstring& i_location);
    void SaveNew(const Ui::TypedName& i_name);
    void Choose(const std::vector<Ui::TypedName>& i_names);
    void End();
    std::wstring NameText() const;
    void ResetName();
    void SelectStem();
    std::vector<Ui::TypedName> GetNamesFromNameEditControl();
    void AddDefaultExtension(std::wstring& io_name, const Ui::DialogParameters& parameters);

    // DialogCommands.cpp: what changes the account's contents, and the account
    void RunCommand(Ui::DialogCommand i_command);
    bool CanRun(Ui::DialogCommand i_command) const;
    void NewFolder();
    void Rename();
    void OnNewFolderNamed(const std::wstring& i_title);
    void OnRenamed(const std::wstring& i_title);
    bool RefuseNewName(const std::wstring& i_title, const Ui::FileRow* i_own_row = nullptr);
    void CreateFolder(const std::wstring& i_title);
    void Delete();
    void ChooseUser(IAFS_Name* i_folder);
    void SignInAgain(IAFS_Name* i_folder) override;
    void ShowAfterSignIn(const std::shared_ptr<ComPtr<IAFS_Name>>& i_folder, Ui::WindowTask::Work i_sign_in);
    void RunOnWorker(PCStr i_status_id, Ui::WindowTask::Work i_work, Ui::RunningCommand::Done i_done);
    void OnCommandEnded(const Ui::RunningCommand::End& i_end);

    struct ItemEvent;
    static const ItemEvent item_events[];

    const Context m_context;
    Ui::DialogParameters* const m_parameters;
    ComPtr<IAFS_Name> m_default_folder;
    ComPtr<IUIX_Inst> m_ui;
    Ui::DialogMode m_mode;

    ComPtr<IUIX_Obj> m_pObj; ///< The window while it exists.
    HWND m_window = nullptr;
    std::wstring m_ok_caption; ///< The OK button's when it does what the dialog is for.
    Ui::DialogItems m_items;
    ComPtr<Ui::FileList> m_list;
    std::shared_ptr<FilesExtensionFilter> m_filter;
    std::unique_ptr<Ui::DialogQuestions> m_questions;
    ComPtr<Ui::KeyCommands> m_keys;

    Ui::FolderTrail m_trail;
    Ui::FolderHistory m_history;
    std::wstring m_user_name; ///< Of the account that is shown; empty until it is known.
    Ui::RunningCommand m_command;
    std::unique_ptr<Ui::WatchTimer> m_watch; ///< For the two above.

    std::wstring m_typed_name;         ///< What the name box held after the last key.
    bool m_has_types = false;          ///< The combo of file types is shown.
    bool m_is_reload = false;          ///< The running load is that of the listed folder.
    ULONGLONG m_confirmed_at = 0;      ///< When OK was pressed last.
    bool m_is_ok_waiting = false;      ///< OK was pressed while a folder loads.
    bool m_is_selection_chosen = true; ///< By the user, not by the dialog.
    bool m_is_name_typed = false;      ///< The name box shows what the user typed, not what the list put there.
};

} // namespace Qorv
