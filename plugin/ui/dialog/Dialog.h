#pragma once

#include "afs/NamesCollection.h"
#include "qorv/CoClass.h"
#include "qorv/Host.h"
#include "qorv/Uix.h"
#include "ui/dialog/Decision.h"
#include "ui/dialog/DialogItems.h"
#include "ui/dialog/DialogQuestions.h"
#include "ui/dialog/KeyCommands.h"
#include "ui/folder/FolderConnection.h"
#include "ui/folder/WindowTask.h"
#include "ui/list/FileList.h"
#include "ui/names/FilesExtensionFilter.h"

#include <functional>
#include <memory>
#include <string>

namespace Qorv {

/// One run of the Open or the Save dialog: brings together what the user does in the window, the folders of the
/// account, and the decisions. UI thread.
///
/// What reaches the service runs on a worker: a folder's load in the connection, a command in the task. There is one
/// such thing at a time, and the commands wait for it; only closing never waits.
class Dialog final : public CoClass<Dialog, IUIX_ObjSink> {
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

    /// Shows the dialog and waits for its end: S_OK when the user confirmed, `ErrorCanceled` when not.
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
    /// What is to be done when a folder has been loaded.
    struct Arrival {
        std::wstring selected_title{}; ///< Of the item to select, such as the folder that one came from.
        ComPtr<IAFS_Name> target{};    ///< A typed location: when it is a file's, the file is what the user means.
        bool may_be_new = false;       ///< The location may be that of a file that is not there yet.
    };

    // Dialog.cpp: the window
    HRESULT InitFilter();
    HRESULT InitWindow();
    void UpdateItems();
    bool IsBusy() const noexcept;
    std::wstring Text(PCStr i_id, std::initializer_list<std::wstring_view> i_arguments = {}) const;

    // DialogEvents.cpp: what the user does with the items
    HRESULT Guard(const std::function<void()>& i_body) noexcept;
    HRESULT Handle(const std::function<void()>& i_handler) noexcept;
    void OnOk(LONG i_detail);
    void OnCancel(LONG i_detail);
    void OnChooseUser(LONG i_detail);
    void OnSettings(LONG i_detail);
    void OnSelectionChanged(LONG i_detail);
    void OnRowActivated(LONG i_row);
    void OnColumnClicked(LONG i_column);
    void OnNewFolderNamed(LONG i_row);
    void OnContextMenu(LONG i_place);
    void OnFilterChanged(LONG i_detail);
    void OnNameChanged(LONG i_detail);
    void OnCommand(LONG i_command);
    HRESULT OnFilterComboSelectionChanged();
    bool IsOneName(const std::wstring& i_text) const;
    /// What the name box shows for the files that are selected: the name, or a quoted list of several.
    std::wstring SelectedNames() const;

    // DialogNavigation.cpp: folders
    void Connect(IAFS_Name* i_folder);
    void Disconnect() noexcept;
    void Show(IAFS_Name* i_folder, Arrival i_arrival);
    void ShowParent();
    void Reload();
    void OnLoadBegun(bool i_is_reload);
    void OnFolderLoaded(HRESULT i_result);
    void OnLoadFailed(const Ui::Failure& i_failure);
    void Arrive();
    void ArriveAgain();
    ComPtr<IAFS_Name> ParentOfShownFolder() const;
    ComPtr<IAFS_Name> RootOfLoadingFolder() const;
    std::wstring DisplayPath(IAFS_Name* i_name) const;
    std::wstring TitleOf(IAFS_Name* i_name) const;
    void ShowPath(IAFS_Name* i_folder);

    // DialogChoice.cpp: what OK means
    void Confirm();
    void Carry(const Ui::Decision& i_decision);
    void GoTo(const std::wstring& i_location);
    void SaveNew(const TypedName& i_name);
    void Choose(const std::vector<TypedName>& i_names);
    void End();
    std::wstring NameText() const;
    void ResetName();
    std::vector<TypedName> GetNamesFromNameEditControl();
    void AddDefaultExtension(std::wstring& io_name, const Ui::DialogParameters& parameters);

    // DialogCommands.cpp: what changes the account's contents, and the account
    void RunCommand(Ui::DialogCommand i_command);
    bool CanRun(Ui::DialogCommand i_command) const;
    void NewFolder();
    void CreateFolder(const std::wstring& i_title);
    void Delete();
    void ChooseUser();
    void RunTask(PCStr i_status_id, Ui::WindowTask::Work i_work, std::function<void(const Ui::Failure&)> i_done);
    void OnTaskDone();

    struct ItemEvent;
    static const ItemEvent item_events[];

    const Context m_context;
    Ui::DialogParameters* const m_parameters;
    ComPtr<IAFS_Name> m_default_folder;
    ComPtr<IUIX_Inst> m_ui;
    Ui::DialogMode m_mode;

    ComPtr<IUIX_Obj> m_pObj; ///< The window while it exists.
    HWND m_window = nullptr;
    Ui::DialogItems m_items;
    ComPtr<Ui::FileList> m_list;
    std::shared_ptr<FilesExtensionFilter> m_filter;
    std::unique_ptr<Ui::DialogQuestions> m_questions;
    ComPtr<Ui::KeyCommands> m_keys;

    std::unique_ptr<Ui::FolderConnection> m_connection;
    Arrival m_arrival;
    ComPtr<IAFS_Name> m_loading_folder; ///< What the last load was asked for.
    ComPtr<IAFS_Name> m_shown_folder;   ///< What is listed; null while nothing is.
    ComPtr<IAFS_Name> m_good_folder;    ///< What was listed last: where a way that failed leads back to.
    bool m_is_going_back = false;

    std::shared_ptr<Ui::WindowTask> m_task; ///< The command that runs.
    std::function<void(const Ui::Failure&)> m_task_done;
    WPARAM m_task_number = 0;

    bool m_is_name_typed = false; ///< The name box shows what the user typed, not what the list put there.
};

} // namespace Qorv
