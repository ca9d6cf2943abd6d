// The commands of a dialog, which change what is in the account, or the account.

#include "core/trace/Check.h"
#include "core/trace/LogText.h"
#include "qorv/Values.h"
#include "ui/dialog/Dialog.h"
#include "ui/names/NewName.h"

namespace Qorv {
namespace {

/// Lets the user sign in. The folder is that of the location if the same user signed in again, otherwise the root.
HRESULT SignIn(IAFS_FileSys* i_file_system, const std::wstring& i_location, IQorv_CancelFlag* i_stop_flag,
               ComPtr<IAFS_Name>& o_folder) {
    TRACE_FUNCTION();
    ComPtr<IAFS_AccountData> account;
    CHECK_HRESULT(i_file_system->CreateAccount(nullptr, nullptr, i_stop_flag, &account));
    ComPtr<IAFS_Name> root;
    CHECK_HRESULT(i_file_system->BindToObject(account, nullptr, 0, nullptr, i_stop_flag, &root));
    if (i_location.empty() || FAILED(i_file_system->StringToName(i_location.c_str(), 0, root, &o_folder)))
        o_folder = root;
    return TRACE_RESULT(S_OK);
}

/// Lets the user of a location sign in again, and nobody else: what the user chooses, and types, is for that account.
HRESULT SignInAgain(IQorv_Inst* i_host_instance, IAFS_FileSys* i_file_system, const std::wstring& i_location,
                    IQorv_CancelFlag* i_stop_flag, ComPtr<IAFS_Name>& o_folder) {
    TRACE_FUNCTION();
    ComPtr<IAFS_BindContext> context; // A new one: it knows of no account, and the location names the user.
    CHECK_HRESULT(i_host_instance->CreateStdBindContext(&context));
    ComPtr<IAFS_Name> root;
    CHECK_HRESULT(i_file_system->BindToPath(i_location.c_str(), context, 0, nullptr, i_stop_flag, &root));
    CHECK_HRESULT(i_file_system->StringToName(i_location.c_str(), 0, root, &o_folder));
    return TRACE_RESULT(S_OK);
}

/// Stops at the first failure. The provider refuses further items once the flag is set.
HRESULT DeleteItems(IAFS_FileSys* i_file_system, const std::vector<ComPtr<IAFS_Name>>& i_names,
                    IQorv_CancelFlag* i_stop_flag, std::vector<ComPtr<IAFS_Name>>& o_deleted) {
    TRACE_FUNCTION();
    for (const auto& name : i_names) {
        CHECK_HRESULT(i_file_system->Delete(name, nullptr, i_stop_flag));
        o_deleted.push_back(name);
    }
    return TRACE_RESULT(S_OK);
}

} // namespace

void Dialog::RunCommand(Ui::DialogCommand i_command) {
    TRACE_FUNCTION();
    if (!CanRun(i_command))
        return;
    switch (i_command) {
    case Ui::DialogCommand::up:
        m_trail.ShowParent();
        break;
    case Ui::DialogCommand::new_folder:
        NewFolder();
        break;
    case Ui::DialogCommand::rename:
        Rename();
        break;
    case Ui::DialogCommand::delete_items:
        Delete();
        break;
    case Ui::DialogCommand::refresh:
        m_trail.Reload();
        break;
    case Ui::DialogCommand::select_all:
        m_list->SelectAll();
        OnSelectionChanged(0);
        break;
    case Ui::DialogCommand::open:
        OnRowActivated(0);
        break;
    case Ui::DialogCommand::back:
        Step(Ui::FolderHistory::Direction::back);
        break;
    case Ui::DialogCommand::forward:
        Step(Ui::FolderHistory::Direction::forward);
        break;
    case Ui::DialogCommand::show_places:
        ShowPlaces();
        break;
    case Ui::DialogCommand::focus_name:
        m_items.m_name->SetFocus();
        break;
    case Ui::DialogCommand::focus_types:
        m_items.m_filter->SetFocus();
        break;
    case Ui::DialogCommand::focus_list:
        m_items.m_list->SetFocus();
        break;
    }
}

bool Dialog::CanRun(Ui::DialogCommand i_command) const {
    TRACE_FUNCTION();
    if (i_command == Ui::DialogCommand::focus_name || i_command == Ui::DialogCommand::focus_list)
        return true;
    if (i_command == Ui::DialogCommand::focus_types)
        return m_has_types;
    if (IsBusy() || !m_trail.IsConnected())
        return false;
    switch (i_command) {
    case Ui::DialogCommand::up:
        return m_trail.GetParentFolder() != nullptr;
    case Ui::DialogCommand::open:
        return m_trail.IsShown() && !m_list->GetSelection().empty();
    case Ui::DialogCommand::back:
        return m_history.Target(Ui::FolderHistory::Direction::back) != nullptr;
    case Ui::DialogCommand::forward:
        return m_history.Target(Ui::FolderHistory::Direction::forward) != nullptr;
    case Ui::DialogCommand::new_folder:
    case Ui::DialogCommand::show_places:
        return m_trail.IsShown();
    case Ui::DialogCommand::delete_items:
        return m_trail.IsShown() && m_list->IsItemSelected();
    case Ui::DialogCommand::rename:
        return m_trail.IsShown() && m_list->IsItemSelected() && m_list->GetSelection().size() == 1;
    case Ui::DialogCommand::refresh:
        return m_trail.GetFolder() != nullptr;
    case Ui::DialogCommand::select_all:
        return m_trail.IsShown() && m_mode.is_open && m_mode.allows_several;
    default:
        break;
    }
    return false;
}

void Dialog::NewFolder() {
    TRACE_FUNCTION();
    std::wstring title = Text(L"db.str.newFolder");
    for (int number = 2; m_list->GetRows().FindTitle(title); ++number)
        title = Text(L"db.str.newFolderNumber", {std::to_wstring(number)});
    m_list->BeginNewFolder(title);
}

void Dialog::OnRowEdited(LONG) {
    TRACE_FUNCTION();
    const bool is_new_folder = m_list->IsNamingNewFolder();
    const auto title = m_list->EndNaming();
    if (!title || title->empty() || IsBusy())
        return;
    if (is_new_folder)
        OnNewFolderNamed(*title);
    else
        OnRenamed(*title);
}

void Dialog::Rename() {
    TRACE_FUNCTION();
    m_list->BeginRename(m_list->GetSelection().front()->title);
}

void Dialog::OnRenamed(const std::wstring& i_title) {
    TRACE_FUNCTION();
    if (!CanRun(Ui::DialogCommand::rename))
        return;
    const Ui::FileRow& row = *m_list->GetSelection().front();
    if (i_title == row.title)
        return;
    if (RefuseNewName(i_title, &row)) {
        if (CanRun(Ui::DialogCommand::rename))
            m_list->BeginRename(i_title); // To be mended.
        return;
    }
    ComPtr<IAFS_Name> new_name;
    if (FAILED(m_context.file_system->StringToName(i_title.c_str(), 0, m_trail.GetFolder(), &new_name)))
        return m_questions->TellWhyNot(L"db.msg.badName", i_title);
    const auto rename = [file_system = m_context.file_system, name = row.name,
                         new_name](IQorv_CancelFlag* i_stop_flag) {
        return file_system->Rename(name, new_name, nullptr, i_stop_flag);
    };
    const bool is_chosen = Ui::MeansSelection(m_mode, Content());
    RunOnWorker(L"db.msg.renaming", rename, [=, this, name = row.name, old = row.title](const Ui::Failure& i_failure) {
        if (FAILED(i_failure.code)) {
            m_questions->TellWhyNot(L"db.msg.renameFailed", old, Ui::FailureText(m_context.host_instance, i_failure));
            return m_trail.Reload();
        }
        m_trail.Forget({name}); // It is listed under its old title.
        m_list->Remove({name});
        m_trail.Reload({.selected_title = i_title, .is_selection_chosen = is_chosen});
    });
}

/// Tells the user what is wrong with a name for the shown folder, if anything is. An item may get its own name in other
/// letters.
bool Dialog::RefuseNewName(const std::wstring& i_title, const Ui::FileRow* i_own_row) {
    TRACE_FUNCTION();
    if (const auto fault = Ui::FaultOfNewName(i_title))
        m_questions->TellWhyNot(fault->message_id, i_title, fault->characters);
    else if (const auto row = m_list->GetRows().FindTitle(i_title); row && &m_list->GetRows()[*row] != i_own_row)
        m_questions->TellWhyNot(L"db.msg.nameTaken", i_title);
    else
        return false;
    return true;
}

void Dialog::OnNewFolderNamed(const std::wstring& i_title) {
    TRACE_FUNCTION();
    if (!CanRun(Ui::DialogCommand::new_folder))
        return;
    if (!RefuseNewName(i_title))
        CreateFolder(i_title);
    else if (CanRun(Ui::DialogCommand::new_folder))
        m_list->BeginNewFolder(i_title); // To be mended.
}

void Dialog::CreateFolder(const std::wstring& i_title) {
    TRACE_FUNCTION();
    ComPtr<IAFS_Name> folder;
    if (FAILED(m_context.file_system->StringToName(i_title.c_str(), 0, m_trail.GetFolder(), &folder)))
        return m_questions->TellWhyNot(L"db.msg.badName", i_title);
    const auto create = [file_system = m_context.file_system, folder](IQorv_CancelFlag* i_stop_flag) {
        return file_system->CreateFolder(folder, nullptr, i_stop_flag);
    };
    RunOnWorker(L"db.msg.creatingFolder", create, [this, i_title](const Ui::Failure& i_failure) {
        if (FAILED(i_failure.code))
            m_questions->TellFailure(L"db.msg.createFailed", i_failure);
        m_trail.Reload({.selected_title = i_title, .is_selection_chosen = true});
    });
}

void Dialog::Delete() {
    TRACE_FUNCTION();
    std::vector<const Ui::FileRow*> rows = m_list->GetSelection();
    std::erase_if(rows, [](const Ui::FileRow* i_row) { return i_row->is_parent; });
    std::vector<ComPtr<IAFS_Name>> names;
    names.reserve(rows.size());
    for (const Ui::FileRow* const row : rows)
        names.push_back(row->name);
    if (!m_questions->AskToDelete(rows) || m_pObj == nullptr || IsBusy())
        return;
    const auto deleted = std::make_shared<std::vector<ComPtr<IAFS_Name>>>();
    deleted->reserve(names.size());
    const auto remove = [file_system = m_context.file_system, names, deleted](IQorv_CancelFlag* i_stop_flag) {
        return DeleteItems(file_system, names, i_stop_flag, *deleted);
    };
    const PCStr failure_id = names.size() == 1 ? L"db.msg.nothingDeleted" : L"db.msg.deleteFailed";
    RunOnWorker(L"db.msg.deleting", remove, [this, failure_id, deleted](const Ui::Failure& i_failure) {
        m_trail.Forget(*deleted); // Their names must not be used again.
        m_list->Remove(*deleted);
        if (FAILED(i_failure.code))
            m_questions->TellFailure(Ui::MayHaveSucceeded(i_failure) ? L"db.msg.deleteUnknown" : failure_id, i_failure);
        m_trail.Reload();
    });
}

/// Shows the folder again if the same user signs in.
void Dialog::ChooseUser(IAFS_Name* i_folder) {
    TRACE_FUNCTION();
    const auto folder = std::make_shared<ComPtr<IAFS_Name>>();
    ShowAfterSignIn(folder,
                    [file_system = m_context.file_system, from = LocationOf(i_folder), folder](
                        IQorv_CancelFlag* i_stop_flag) { return SignIn(file_system, from, i_stop_flag, *folder); });
}

void Dialog::SignInAgain(IAFS_Name* i_folder) {
    TRACE_FUNCTION();
    const auto folder = std::make_shared<ComPtr<IAFS_Name>>();
    ShowAfterSignIn(folder, [host_instance = m_context.host_instance, file_system = m_context.file_system,
                             from = LocationOf(i_folder), folder](IQorv_CancelFlag* i_stop_flag) {
        return Qorv::SignInAgain(host_instance, file_system, from, i_stop_flag, *folder);
    });
}

/// Signs in on a worker, and goes to the folder that this has found.
void Dialog::ShowAfterSignIn(const std::shared_ptr<ComPtr<IAFS_Name>>& i_folder, Ui::WindowTask::Work i_sign_in) {
    TRACE_FUNCTION();
    if (IsBusy())
        return;
    RunOnWorker(L"db.msg.signingIn", std::move(i_sign_in), [this, i_folder](const Ui::Failure& i_failure) {
        if (SUCCEEDED(i_failure.code))
            Connect(*i_folder);
        else if (i_failure.code != ErrorCanceled)
            m_questions->TellFailure(L"db.msg.signInFailed", i_failure);
    });
}

/// Runs work that calls the service, and shows its status meanwhile. `i_done` is called when it ends, if the dialog
/// still exists.
void Dialog::RunOnWorker(PCStr i_status_id, Ui::WindowTask::Work i_work, Ui::RunningCommand::Done i_done) {
    TRACE_FUNCTION();
    CHECK_THROW(!IsBusy(), HResultException(E_UNEXPECTED));
    TRACE_TEXT(FormatLogText(L"INFORMATION: Command begins: %ls", i_status_id));
    m_command.Begin(m_window, std::move(i_work), std::move(i_done));
    m_items.m_path->put_Text(Text(i_status_id).c_str());
    UpdateItems();
}

void Dialog::OnCommandEnded(const Ui::RunningCommand::End& i_end) {
    TRACE_FUNCTION();
    if (SUCCEEDED(i_end.failure.code))
        TRACE_TEXT(L"INFORMATION: Command has ended well");
    else
        TRACE_TEXT(FormatLogText(L"WARNING: Command has failed with result 0x%08lX: %ls",
                                 static_cast<unsigned long>(i_end.failure.code), i_end.failure.reason.words.c_str()));
    ShowPath(m_trail.GetFolder());
    UpdateItems();
    i_end.done(i_end.failure);
}

} // namespace Qorv
