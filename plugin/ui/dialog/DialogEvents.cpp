// What the user does with the items of a dialog.

#include "core/trace/Check.h"
#include "ui/dialog/Dialog.h"
#include "ui/names/QuotedNames.h"

namespace Qorv {

struct Dialog::ItemEvent {
    PCStr item_id;
    ULONG kind;
    void (Dialog::*handle)(LONG i_detail);
};

const Dialog::ItemEvent Dialog::item_events[] = {
    {Ui::ok_button_id, UIX_ItemEvent_Click, &Dialog::OnOk},
    {Ui::cancel_button_id, UIX_ItemEvent_Click, &Dialog::OnCancel},
    {Ui::choose_user_button_id, UIX_ItemEvent_Click, &Dialog::OnChooseUser},
    {Ui::settings_button_id, UIX_ItemEvent_Click, &Dialog::OnSettings},
    {Ui::path_label_id, UIX_ItemEvent_Click, &Dialog::OnPathClicked},
    {Ui::files_list_id, UIX_ItemEvent_SelectionChanged, &Dialog::OnSelectionChanged},
    {Ui::files_list_id, UIX_ItemEvent_Activated, &Dialog::OnRowActivated},
    {Ui::files_list_id, UIX_ItemEvent_ColumnClicked, &Dialog::OnColumnClicked},
    {Ui::files_list_id, UIX_ItemEvent_RowEdited, &Dialog::OnRowEdited},
    {Ui::files_list_id, UIX_ItemEvent_ContextMenu, &Dialog::OnContextMenu},
    {Ui::filter_combo_id, UIX_ItemEvent_Changed, &Dialog::OnFilterChanged},
    {Ui::name_edit_id, UIX_ItemEvent_Changed, &Dialog::OnNameChanged},
    {Ui::command_bar_id, UIX_ItemEvent_Command, &Dialog::OnCommand},
};

HRESULT STDMETHODCALLTYPE Dialog::OnItemEvent(PCStr i_item_id, ULONG i_kind, LONG i_detail) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(i_item_id != nullptr, E_INVALIDARG);
    for (const ItemEvent& event : item_events)
        if (event.kind == i_kind && std::wstring_view(event.item_id) == i_item_id)
            CHECK_HRESULT(Handle([&] { (this->*event.handle)(i_detail); }));
    return TRACE_RESULT(S_OK);
}

HRESULT Dialog::Guard(const std::function<void()>& i_body) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        i_body();
        return TRACE_RESULT(S_OK);
    };
}

/// Does what an event asks for. An unexpected failure, such as no memory, is reported, and the dialog goes on.
HRESULT Dialog::Handle(const std::function<void()>& i_handler) noexcept {
    TRACE_FUNCTION();
    const ComPtr<Dialog> self(this); // The handler may end the dialog.
    const HRESULT result = Guard(i_handler);
    if (FAILED(result) && m_pObj != nullptr) {
        const FailureReason reason = TakeThreadReason();
        Guard([&] {
            UpdateItems();
            m_questions->TellFailure(L"db.msg.failed", {result, reason});
        });
    }
    CHECK_HRESULT(result);
    return TRACE_RESULT(S_OK);
}

void Dialog::OnOk(LONG) {
    TRACE_FUNCTION();
    Confirm();
}

void Dialog::OnCancel(LONG) {
    TRACE_FUNCTION();
    m_pObj->EndModal(IDCANCEL, nullptr);
}

void Dialog::OnChooseUser(LONG) {
    TRACE_FUNCTION();
    ChooseUser(m_trail.GetFolder());
}

void Dialog::OnPathClicked(LONG) {
    TRACE_FUNCTION();
    RunCommand(Ui::DialogCommand::show_places);
}

void Dialog::OnSettings(LONG) {
    TRACE_FUNCTION();
    if (const auto callbacks = m_parameters->SettingsBtnCallbacks)
        callbacks->OnSettings(m_window);
}

void Dialog::OnSelectionChanged(LONG) {
    TRACE_FUNCTION();
    const auto selection = m_list->GetSelection();
    m_is_selection_chosen = true;
    if (!selection.empty())
        m_is_name_typed = false; // OK means the rows from here on.
    const std::wstring names = SelectedNames();
    if (!names.empty() || (m_mode.chooses_folder && !m_is_name_typed))
        m_items.m_name->put_Text(names.c_str());
    UpdateItems();
}

/// Unless the box is the user's. A folder that merely stands selected isn't chosen.
void Dialog::ShowSelectedNames() {
    TRACE_FUNCTION();
    if (!m_is_name_typed && m_mode.is_open)
        m_items.m_name->put_Text(m_is_selection_chosen || !m_mode.chooses_folder ? SelectedNames().c_str() : L"");
}

std::wstring Dialog::SelectedNames() const {
    TRACE_FUNCTION();
    std::wstring names;
    std::size_t count = 0;
    for (const Ui::FileRow* const row : m_list->GetSelection()) {
        if (row->is_parent || row->is_folder != m_mode.chooses_folder)
            continue;
        ++count;
        names += (count > 1 ? L" \"" : L"\"") + row->title + L"\"";
    }
    return count == 1 ? names.substr(1, names.size() - 2) : names;
}

/// A double click, or Enter: a single folder is always opened, even where folders are chosen. With nothing selected,
/// Enter is the default button's: the row that merely has the focus is nobody's choice.
void Dialog::OnRowActivated(LONG) {
    TRACE_FUNCTION();
    if (IsBusy())
        return;
    const auto selection = m_list->GetSelection();
    if (selection.empty())
        return Confirm();
    Ui::DialogMode mode = m_mode;
    if (selection.size() == 1)
        mode.chooses_folder = false;
    Carry(Ui::DecideSelection(mode, selection));
}

void Dialog::OnColumnClicked(LONG i_column) {
    TRACE_FUNCTION();
    m_list->SortBy(i_column);
}

void Dialog::OnContextMenu(LONG i_place) {
    TRACE_FUNCTION();
    Ui::CommandSet commands(m_context.host_instance, m_context.ui, Ui::CommandSet::Place::menu);
    for (const Ui::CommandRow& row : Ui::DialogCommands())
        commands.Enable(row.command, CanRun(row.command));
    // Signed: a screen may lie to the left of the first one.
    const POINT place{static_cast<short>(LOWORD(i_place)), static_cast<short>(HIWORD(i_place))};
    LONG command = 0;
    if (SUCCEEDED(m_ui->ShowMenu(m_window, place, commands.GetCommands(), commands.GetCount(), &command)))
        OnCommand(command);
}

void Dialog::OnCommand(LONG i_command) {
    TRACE_FUNCTION();
    RunCommand(static_cast<Ui::DialogCommand>(i_command));
}

void Dialog::OnNameChanged(LONG) {
    TRACE_FUNCTION();
    m_is_name_typed = true;
    m_is_ok_waiting = false; // It was about another name.
    CompleteName();
    UpdateOkCaption();
}

/// What is added is selected, so that typing on replaces it. Not in Save, where Enter would mean another file than the
/// one that was typed.
void Dialog::CompleteName() {
    TRACE_FUNCTION();
    const std::wstring text = NameText();
    const std::wstring previous = std::exchange(m_typed_name, text);
    if (!m_mode.is_open || m_trail.IsLoading())
        return;
    if (const auto completed = Ui::CompletedName(previous, text, m_list->GetRows())) {
        m_items.m_name->put_Text(completed->c_str());
        m_items.m_name_edit->SelectText(static_cast<LONG>(text.size()), -1);
        m_typed_name = *completed;
    }
}

void Dialog::OnFilterChanged(LONG) {
    TRACE_FUNCTION();
    OnFilterComboSelectionChanged();
}

/// Neither a quoted list nor a pattern nor a path to a folder.
bool Dialog::IsOneName(const std::wstring& i_text) const {
    TRACE_FUNCTION();
    return !i_text.empty() && !Ui::IsPattern(i_text) && !(m_mode.allows_several && Ui::ParseQuotedNames(i_text)) &&
           Ui::DecideWay(i_text, m_list->GetRows()).kind == Ui::Decision::Kind::nothing;
}

HRESULT Dialog::OnFilterComboSelectionChanged() {
    TRACE_FUNCTION();
    const bool keeps_extension = (m_parameters->Flags & Ui::DialogParameters::UseDefaultExtension) != 0;
    if (std::wstring name = NameText(); m_filter != nullptr && !keeps_extension && IsOneName(name)) {
        m_filter->AddFilterExtension(name, m_parameters->DefaultExt.View());
        CHECK_HRESULT(m_items.m_name->put_Text(name.c_str()));
    }
    CHECK_HRESULT(m_list->Refresh());
    UpdateItems();
    return TRACE_RESULT(S_OK);
}

} // namespace Qorv
