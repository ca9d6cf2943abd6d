// How a dialog goes through the folders of an account.

#include "core/trace/Check.h"
#include "qorv/Values.h"
#include "ui/dialog/Dialog.h"
#include "ui/dialog/DialogMessages.h"

namespace Qorv {

void Dialog::Connect(IAFS_Name* i_folder) {
    TRACE_FUNCTION();
    m_connection = std::make_unique<Ui::FolderConnection>(m_context.host_instance, m_context.file_system, m_window,
                                                          Ui::folder_loaded_message, m_context.reaper);
    m_good_folder.Reset();
    if (i_folder != nullptr)
        Show(i_folder, {});
    else
        UpdateItems();
}

/// What still runs goes on without the dialog until it notices.
void Dialog::Disconnect() noexcept {
    TRACE_FUNCTION();
    m_connection.reset();
    if (m_task != nullptr)
        m_task->Abandon();
    m_context.reaper.Take(std::move(m_task));
    m_task_done = nullptr;
}

void Dialog::Show(IAFS_Name* i_folder, Arrival i_arrival) {
    TRACE_FUNCTION();
    if (m_connection == nullptr || IsBusy())
        return;
    m_arrival = std::move(i_arrival);
    m_loading_folder = i_folder;
    ShowPath(i_folder); // While it loads the name is the worker's alone.
    const HRESULT result = m_connection->Show(i_folder);
    if (FAILED(result))
        OnLoadFailed({result, TakeThreadReason()});
    else if (result == S_OK)
        OnLoadBegun(false);
    else if (m_shown_folder != nullptr)
        ArriveAgain();
    else
        Reload(); // It could not be loaded the last time.
}

void Dialog::ShowParent() {
    TRACE_FUNCTION();
    if (const auto parent = ParentOfShownFolder())
        Show(parent, {.selected_title = TitleOf(m_loading_folder)});
}

void Dialog::Reload() {
    TRACE_FUNCTION();
    if (m_connection == nullptr || IsBusy() || m_loading_folder == nullptr)
        return;
    ShowPath(m_loading_folder);
    if (const HRESULT result = m_connection->Reload(); FAILED(result))
        OnLoadFailed({result, TakeThreadReason()});
    else
        OnLoadBegun(true);
}

void Dialog::OnLoadBegun(bool i_is_reload) {
    TRACE_FUNCTION();
    m_shown_folder.Reset();
    m_list->Empty(Text(L"db.msg.loading"), i_is_reload);
    if (!m_is_name_typed && m_mode.is_open && !i_is_reload)
        m_items.m_name->put_Text(L""); // The list put it there, and does not list it any more.
    UpdateItems();
}

void Dialog::OnFolderLoaded(HRESULT i_result) {
    TRACE_FUNCTION();
    if (FAILED(i_result))
        return OnLoadFailed({i_result, m_connection->GetFailureReason()});
    m_is_going_back = false;
    m_shown_folder = m_connection->GetFolder();
    m_loading_folder = m_shown_folder; // The folder, should it have been a file's name.
    m_good_folder = m_shown_folder;
    m_list->Fill(m_context.file_system, m_connection->GetItems(), m_connection->GetParentFolder(),
                 Text(L"db.msg.emptyFolder"));
    if (!m_is_name_typed && m_mode.is_open)
        m_items.m_name->put_Text(SelectedNames().c_str()); // Not those that are gone.
    ShowPath(m_shown_folder);
    UpdateItems();
    Arrive();
}

/// Where the dialog is already.
void Dialog::ArriveAgain() {
    TRACE_FUNCTION();
    m_loading_folder = m_shown_folder;
    ShowPath(m_shown_folder);
    Arrive();
}

/// What the user meant by coming here.
void Dialog::Arrive() {
    TRACE_FUNCTION();
    const Arrival arrival = std::exchange(m_arrival, {});
    if (!arrival.selected_title.empty()) {
        m_list->Select(arrival.selected_title);
        if (!m_mode.is_open && !NameText().empty())
            m_is_name_typed = true; // The user has not chosen the row: OK still means the name.
        UpdateItems();
    }
    if (arrival.target == nullptr)
        return;
    VARIANT_BOOL is_folder = VARIANT_FALSE;
    m_context.file_system->NamesAreEqual(arrival.target, m_shown_folder, &is_folder);
    if (is_folder != VARIANT_FALSE)
        return ResetName(); // What was typed was the way.
    const std::wstring title = TitleOf(arrival.target);
    m_items.m_name->put_Text(title.c_str());
    m_is_name_typed = true;
    if (!m_mode.is_open)
        return Confirm();
    // The whole name was typed: it gets no other extension.
    std::vector<TypedName> names{{.text = title}};
    MatchTypedNames(m_context.file_system, m_connection->GetItems(), names, trace_function.Name());
    Carry(Ui::DecideTypedNames(m_mode, names));
}

void Dialog::OnLoadFailed(const Ui::Failure& i_failure) {
    TRACE_FUNCTION();
    m_shown_folder.Reset();
    // The location of a file to be saved, that is not there yet: its folder may be.
    if (m_arrival.may_be_new && i_failure.code == E_INVALIDARG)
        if (const auto parent = ParentOfShownFolder())
            return Show(parent, {.selected_title = {}, .target = m_arrival.target});

    m_list->Empty(Ui::FailureText(m_context.host_instance, i_failure));
    UpdateItems();
    if (std::exchange(m_is_going_back, false))
        return; // The user has read of one failure already.
    const std::wstring folder = Text(L"db.lb.path", {DisplayPath(m_loading_folder)});
    const Ui::FailureAnswer answer = m_questions->AskAfterLoadFailure(folder, i_failure);
    if (m_pObj == nullptr)
        return; // The dialog was closed together with the question.
    if (answer == Ui::FailureAnswer::try_again)
        return Reload();
    if (answer == Ui::FailureAnswer::sign_in)
        return ChooseUser();
    m_arrival = {};
    if (m_good_folder != nullptr && m_good_folder != m_loading_folder) {
        m_is_going_back = true;
        Show(m_good_folder, {});
    }
}

ComPtr<IAFS_Name> Dialog::ParentOfShownFolder() const {
    TRACE_FUNCTION();
    ComPtr<IAFS_Name> parent;
    if (m_shown_folder != nullptr)
        parent = m_connection->GetParentFolder();
    else if (m_loading_folder != nullptr)
        m_context.file_system->NameGetParent(m_loading_folder, &parent);
    return parent;
}

ComPtr<IAFS_Name> Dialog::RootOfLoadingFolder() const {
    TRACE_FUNCTION();
    ComPtr<IAFS_Name> root;
    for (ComPtr<IAFS_Name> name = m_loading_folder; name != nullptr;) {
        root = name;
        ComPtr<IAFS_Name> parent;
        m_context.file_system->NameGetParent(name, &parent);
        name = parent;
    }
    return root;
}

/// The path in the account: empty for its root.
std::wstring Dialog::DisplayPath(IAFS_Name* i_name) const {
    TRACE_FUNCTION();
    Bstr path;
    if (FAILED(m_context.file_system->NameToString(i_name, AFS_Name2String_ForDisplay, nullptr, &path)))
        return {};
    return std::wstring(path.View());
}

/// The last element of the path.
std::wstring Dialog::TitleOf(IAFS_Name* i_name) const {
    TRACE_FUNCTION();
    const std::wstring path = DisplayPath(i_name);
    return path.substr(path.rfind(L'/') + 1); // npos + 1 is 0.
}

void Dialog::ShowPath(IAFS_Name* i_folder) {
    TRACE_FUNCTION();
    const std::wstring path = i_folder != nullptr ? Text(L"db.lb.path", {DisplayPath(i_folder)}) : std::wstring();
    m_items.m_path->put_Text(path.c_str());
}

} // namespace Qorv
