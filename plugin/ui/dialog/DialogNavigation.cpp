// How a dialog shows its navigation through the folders of an account.

#include "core/trace/Check.h"
#include "ui/dialog/Dialog.h"
#include "ui/dialog/DialogMessages.h"
#include "ui/folder/FolderConnection.h"
#include "ui/folder/NamePath.h"

namespace Qorv {

void Dialog::Connect(IAFS_Name* i_folder) {
    TRACE_FUNCTION();
    m_list->Empty({}); // The account may be another one.
    m_user_name.clear();
    m_trail.Connect(std::make_unique<Ui::FolderConnection>(m_context.host_instance, m_context.file_system, m_window,
                                                           Ui::folder_loaded_message, m_context.reaper),
                    i_folder);
    UpdateItems();
}

/// Leaves to the reaper whatever still runs.
void Dialog::Disconnect() noexcept {
    TRACE_FUNCTION();
    m_trail.Disconnect();
    m_command.Abandon();
}

void Dialog::ShowPath(IAFS_Name* i_folder) {
    TRACE_FUNCTION();
    std::wstring path;
    if (i_folder != nullptr)
        path = m_user_name.empty()
                   ? DisplayPath(i_folder)
                   : Text(L"db.lb.userPath", {m_user_name, Ui::PathOf(m_context.file_system, i_folder)});
    m_items.m_path->put_Text(path.c_str());
}

void Dialog::OnLoadBegun(bool i_is_reload) {
    TRACE_FUNCTION();
    m_is_reload = i_is_reload;
    m_list->BeginLoading(Text(L"db.msg.loading"));
    if (!m_is_name_typed && m_mode.is_open && !i_is_reload)
        m_items.m_name->put_Text(L""); // The list put it there, and is about to list something else.
    UpdateItems();
}

void Dialog::OnFolderShown() {
    TRACE_FUNCTION();
    if (m_user_name.empty())
        m_user_name = Ui::UserNameOf(m_context.file_system, m_trail.GetFolder());
    m_list->Fill(m_context.file_system, m_trail.GetItems(), m_trail.GetParentFolder(), m_is_reload);
    if (!m_is_reload)
        m_is_selection_chosen = true; // Nothing is selected.
    ShowSelectedNames();              // Without those that are gone.
    UpdateItems();
}

void Dialog::OnLoadGivenUp() {
    TRACE_FUNCTION();
    m_is_ok_waiting = false;
    m_list->EndLoading();
    ShowSelectedNames();
    UpdateItems();
}

void Dialog::OnLoadFailed(const Ui::Failure& i_failure) {
    TRACE_FUNCTION();
    m_is_ok_waiting = false;
    m_list->Empty(Ui::FailureText(m_context.host_instance, i_failure));
    UpdateItems();
}

Ui::FailureAnswer Dialog::AskAfterLoadFailure(IAFS_Name* i_folder, const Ui::Failure& i_failure) {
    TRACE_FUNCTION();
    return m_questions->AskAfterLoadFailure(DisplayPath(i_folder), i_failure);
}

void Dialog::SelectItem(const std::wstring& i_title, bool i_is_chosen) {
    TRACE_FUNCTION();
    if (m_list->Select(i_title)) {
        m_is_selection_chosen = i_is_chosen;
        // OK still means the name, unless the row is the user's choice.
        m_is_name_typed = !i_is_chosen && !m_mode.is_open && !NameText().empty();
        if (const std::wstring names = SelectedNames(); i_is_chosen && !names.empty())
            m_items.m_name->put_Text(names.c_str());
    }
    UpdateItems();
}

void Dialog::OnTypedFolderReached() {
    TRACE_FUNCTION();
    ResetName(); // A path was typed.
}

void Dialog::OnTypedFileReached(const std::wstring& i_title) {
    TRACE_FUNCTION();
    m_items.m_name->put_Text(i_title.c_str());
    m_is_name_typed = true;
    m_is_ok_waiting = false; // This is what it meant.
    if (!m_mode.is_open)
        return Confirm();
    // The full name was typed, so no extension is added.
    std::vector<Ui::TypedName> names{{.text = i_title}};
    Ui::MatchTypedNames(m_context.file_system, m_trail.GetItems(), names, trace_function.Name());
    Carry(Ui::DecideTypedNames(m_mode, names));
}

/// To save, it proposes the file's name, unless the caller has proposed one. To open, the file is the user's choice.
void Dialog::OnStartFileReached(const std::wstring& i_title) {
    TRACE_FUNCTION();
    const bool is_listed = m_list->Select(i_title);
    if (m_mode.chooses_folder || !NameText().empty())
        return UpdateItems();
    m_items.m_name->put_Text(i_title.c_str());
    SelectStem();
    m_is_name_typed = !is_listed || !m_mode.is_open;
    UpdateItems();
}

void Dialog::OnStartFolderGone(IAFS_Name* i_folder) {
    TRACE_FUNCTION();
    m_questions->TellWhyNot(L"db.msg.startGone", DisplayPath(i_folder));
}

/// The path as a person reads it.
std::wstring Dialog::DisplayPath(IAFS_Name* i_name) const {
    TRACE_FUNCTION();
    return Text(L"db.lb.path", {Ui::PathOf(m_context.file_system, i_name)});
}

} // namespace Qorv
