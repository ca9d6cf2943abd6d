// How a dialog shows its navigation through the folders of an account.

#include "core/trace/Check.h"
#include "qorv/Values.h"
#include "ui/dialog/Dialog.h"
#include "ui/dialog/DialogMessages.h"
#include "ui/folder/FolderConnection.h"
#include "ui/folder/NamePath.h"

#include <algorithm>

namespace Qorv {

void Dialog::Connect(IAFS_Name* i_folder) {
    TRACE_FUNCTION();
    m_list->Empty({}); // The account may be another one.
    m_user_name.clear();
    m_history.Clear();
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
    m_history.Arrive(LocationOf(m_trail.GetFolder()));
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
    m_list->Empty(Text(L"db.msg.listFailed", {Ui::FailureText(m_context.host_instance, i_failure)}));
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

void Dialog::Step(Ui::FolderHistory::Direction i_direction) {
    TRACE_FUNCTION();
    const std::wstring location = *m_history.Target(i_direction);
    m_history.Step(i_direction);
    ShowLocation(location);
}

void Dialog::ShowLocation(const std::wstring& i_location) {
    TRACE_FUNCTION();
    ComPtr<IAFS_Name> folder;
    const ComPtr<IAFS_Name> from = m_trail.GetOrigin();
    if (from != nullptr && SUCCEEDED(m_context.file_system->StringToName(i_location.c_str(), 0, from, &folder)))
        m_trail.Show(folder, {});
}

/// The folders above the shown one, then an empty text, then the others that were visited, the latest first.
std::vector<std::wstring> Dialog::Places() const {
    TRACE_FUNCTION();
    constexpr std::size_t most_visited = 12;
    std::vector<std::wstring> places;
    for (ComPtr<IAFS_Name> name = m_trail.GetParentFolder(); name != nullptr;) {
        places.push_back(LocationOf(name));
        ComPtr<IAFS_Name> parent;
        m_context.file_system->NameGetParent(name, &parent);
        name = parent;
    }
    std::vector<std::wstring> visited = m_history.Visited();
    std::erase_if(visited, [&](const std::wstring& i_location) {
        return i_location == LocationOf(m_trail.GetFolder()) || std::ranges::count(places, i_location) > 0;
    });
    visited.resize(std::min(visited.size(), most_visited));
    if (!places.empty() && !visited.empty())
        places.emplace_back();
    places.insert(places.end(), visited.begin(), visited.end());
    return places;
}

/// A menu beneath the path.
void Dialog::ShowPlaces() {
    TRACE_FUNCTION();
    const std::vector<std::wstring> places = Places();
    if (places.empty())
        return;
    std::vector<std::wstring> texts;
    for (const std::wstring& place : places) {
        ComPtr<IAFS_Name> name;
        m_context.file_system->StringToName(place.c_str(), 0, m_trail.GetFolder(), &name);
        std::wstring& text = texts.emplace_back(DisplayPath(name));
        for (std::size_t i = 0; (i = text.find(L'&', i)) != std::wstring::npos; i += 2)
            text.insert(i, 1, L'&'); // It is no access key.
    }
    std::vector<UIX_Command> commands(places.size());
    for (std::size_t i = 0; i < places.size(); ++i)
        if (!places[i].empty())
            commands[i] = {.id = static_cast<LONG>(i + 1), .text = texts[i].c_str()};
    RECT label{};
    LONG chosen = 0;
    if (FAILED(m_items.m_path_label->get_ScreenRect(&label)) ||
        FAILED(m_ui->ShowMenu(m_window, {label.left, label.bottom}, commands.data(),
                              static_cast<ULONG>(commands.size()), &chosen)))
        return;
    if (chosen > 0 && m_pObj != nullptr && !IsBusy())
        ShowLocation(places[static_cast<std::size_t>(chosen - 1)]);
}

std::wstring Dialog::LocationOf(IAFS_Name* i_name) const {
    TRACE_FUNCTION();
    Bstr location;
    if (i_name != nullptr)
        m_context.file_system->NameToString(i_name, 0, nullptr, &location);
    return std::wstring(location.View());
}

/// The path as a person reads it.
std::wstring Dialog::DisplayPath(IAFS_Name* i_name) const {
    TRACE_FUNCTION();
    return Text(L"db.lb.path", {Ui::PathOf(m_context.file_system, i_name)});
}

} // namespace Qorv
