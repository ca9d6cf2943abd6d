// What OK does.

#include "core/trace/Check.h"
#include "dropbox/RemotePath.h"
#include "qorv/Values.h"
#include "ui/dialog/Dialog.h"
#include "ui/folder/NamePath.h"
#include "ui/names/NameExtension.h"
#include "ui/names/QuotedNames.h"

namespace Qorv {

/// While another folder loads, what is selected in the listed one doesn't count any more.
Ui::DialogContent Dialog::Content() const {
    TRACE_FUNCTION();
    Ui::DialogContent content{{}, m_is_selection_chosen, NameText(), m_is_name_typed};
    if (!m_trail.IsLoading() || m_is_reload)
        content.selection = m_list->GetSelection();
    return content;
}

void Dialog::Confirm() {
    TRACE_FUNCTION();
    const ULONGLONG now = GetTickCount64();
    const bool is_double_click = now - std::exchange(m_confirmed_at, now) < GetDoubleClickTime();
    if (m_trail.IsLoading() && is_double_click) {
        TRACE_TEXT(L"INFORMATION: OK was pressed twice to enter a folder - once is meant");
    } else if (m_trail.IsLoading()) {
        TRACE_TEXT(L"INFORMATION: OK was pressed while a folder loads - waiting for it");
        m_is_ok_waiting = true;
    }
    if (IsBusy())
        return;
    const Ui::DialogContent content = Content();
    const bool means_selection = Ui::MeansSelection(m_mode, content);
    TRACE_TEXT(means_selection ? L"INFORMATION: OK means what is selected"
                               : L"INFORMATION: OK means what the name box says");
    if (means_selection)
        return Carry(Ui::DecideSelection(m_mode, content.selection));
    const Ui::Decision way = Ui::DecideWay(content.text, m_list->GetRows());
    if (way.kind == Ui::Decision::Kind::enter || way.kind == Ui::Decision::Kind::go_up)
        ResetName(); // It was a path, not a name.
    if (way.kind != Ui::Decision::Kind::nothing)
        return Carry(way);
    if (!m_mode.chooses_folder && m_trail.IsShown() && Ui::IsPattern(content.text))
        return Carry({.kind = Ui::Decision::Kind::list_matches, .names = {}, .text = content.text});
    if (m_trail.IsShown())
        Carry(Ui::DecideTypedNames(m_mode, GetNamesFromNameEditControl()));
    else
        m_questions->TellWhyNot(L"db.msg.noFolder", {});
}

/// What OK meant while the folder was loading: it is done on arrival.
void Dialog::ConfirmWhatWaits() {
    TRACE_FUNCTION();
    if (IsBusy() || !std::exchange(m_is_ok_waiting, false))
        return;
    if (m_pObj != nullptr && m_trail.IsShown())
        Confirm();
}

void Dialog::Carry(const Ui::Decision& i_decision) {
    TRACE_FUNCTION();
    TRACE_TEXT(Ui::LogSentence(i_decision));
    switch (i_decision.kind) {
    case Ui::Decision::Kind::nothing:
        m_items.m_name->SetFocus();
        break;
    case Ui::Decision::Kind::go_up:
        m_trail.ShowParent();
        break;
    case Ui::Decision::Kind::enter:
        m_trail.Show(i_decision.names.front().name, {});
        break;
    case Ui::Decision::Kind::go_to:
        GoTo(i_decision.text);
        break;
    case Ui::Decision::Kind::list_matches:
        m_list->SetPattern(i_decision.text);
        m_items.m_name_edit->SelectText(0, -1);
        UpdateItems();
        break;
    case Ui::Decision::Kind::choose_shown:
        Choose({{.text = {}, .name = m_trail.GetFolder(), .item = {}, .is_folder = true}});
        break;
    case Ui::Decision::Kind::choose:
        Choose(i_decision.names);
        break;
    case Ui::Decision::Kind::ask_to_replace:
        // The question names the existing file, which may differ in case from what was typed.
        if (m_questions->AskToReplace(Ui::TitleOf(m_context.file_system, i_decision.names.front().name)) && !IsBusy())
            Choose(i_decision.names);
        break;
    case Ui::Decision::Kind::save_new:
        SaveNew(i_decision.names.front());
        break;
    case Ui::Decision::Kind::refuse:
        m_questions->TellWhyNot(i_decision.message_id, i_decision.text, i_decision.detail);
        break;
    }
}

void Dialog::GoTo(const std::wstring& i_location) {
    TRACE_FUNCTION();
    const ComPtr<IAFS_Name> from = m_trail.GetOrigin();
    ComPtr<IAFS_Name> target;
    if (from == nullptr || FAILED(m_context.file_system->StringToName(i_location.c_str(), 0, from, &target)))
        return m_questions->TellWhyNot(L"db.msg.badLocation", i_location);
    m_trail.Show(target,
                 {.selected_title = {}, .target = target, .may_be_new = !m_mode.is_open && i_location.back() != L'/'});
}

/// Somebody may have created a file with this name since the folder was loaded, so the service is asked: no file may be
/// replaced without a question.
void Dialog::SaveNew(const Ui::TypedName& i_name) {
    TRACE_FUNCTION();
    Ui::TypedName typed = i_name;
    if (FAILED(m_context.file_system->StringToName(typed.text.c_str(), 0, m_trail.GetFolder(), &typed.name)))
        return m_questions->TellWhyNot(L"db.msg.badName", typed.text);
    const auto information = std::make_shared<ComPtr<IAFS_FileInfo>>();
    const auto look = [file_system = m_context.file_system, name = typed.name,
                       information](IQorv_CancelFlag* i_stop_flag) {
        return file_system->GetFileInfo(name, nullptr, i_stop_flag, &*information);
    };
    RunOnWorker(L"db.msg.checkingName", look, [this, typed, information](const Ui::Failure& i_failure) {
        if (i_failure.code == E_INVALIDARG) // Nothing is there.
            return Choose({typed});
        if (FAILED(i_failure.code))
            return m_questions->TellFailure(L"db.msg.checkFailed", i_failure);
        ULONG attributes = 0;
        (*information)->get_Attributes(&attributes);
        if ((attributes & AFS_Attribute_Folder) != 0)
            m_questions->TellWhyNot(L"db.msg.notAFile", typed.text);
        else if (!m_mode.asks_before_replacing ||
                 m_questions->AskToReplace(Ui::TitleOf(m_context.file_system, typed.name)))
            return Choose({typed});
        m_trail.Reload(); // The list doesn't have it yet.
    });
}

void Dialog::Choose(const std::vector<Ui::TypedName>& i_names) {
    TRACE_FUNCTION();
    if (m_pObj == nullptr)
        return; // The dialog was closed while a question was open.
    ComPtr<NamesCollection> chosen;
    CHECK_HRESULT_THROW(NamesCollection::Create(chosen));
    for (const Ui::TypedName& typed : i_names) {
        if (!m_mode.chooses_folder && !Dropbox::CanBeSent(Ui::PathOf(m_context.file_system, typed.name)))
            return m_questions->TellWhyNot(L"db.msg.badPath", Ui::PathOf(m_context.file_system, typed.name));
        CHECK_HRESULT_THROW(chosen->Add(typed.name));
    }
    m_files_to_open = chosen;
    End();
}

void Dialog::End() {
    TRACE_FUNCTION();
    LONG filter = -1;
    if (SUCCEEDED(m_items.m_filter_combo->get_SelItem(&filter)) && filter >= 0)
        m_parameters->FileFilterIndex = filter;
    m_pObj->EndModal(IDOK, nullptr);
}

/// Blanks alone count as nothing.
std::wstring Dialog::NameText() const {
    TRACE_FUNCTION();
    Bstr text;
    m_items.m_name->get_Text(&text);
    const bool is_blank = text.View().find_first_not_of(L' ') == std::wstring_view::npos;
    return is_blank ? std::wstring() : std::wstring(text.View());
}

/// Selects the name without its extension, which stays when another name is typed.
void Dialog::SelectStem() {
    TRACE_FUNCTION();
    m_items.m_name_edit->SelectText(0, Ui::StemLength(NameText()));
}

/// Shows the initial text of the name box: for Save, the name that the caller proposes.
void Dialog::ResetName() {
    TRACE_FUNCTION();
    const BSTR proposed = m_mode.is_open ? nullptr : m_parameters->InitialFileName.m_str;
    m_items.m_name->put_Text(proposed != nullptr ? proposed : L"");
    m_is_name_typed = proposed != nullptr;
    UpdateOkCaption();
}

std::vector<Ui::TypedName> Dialog::GetNamesFromNameEditControl() {
    TRACE_FUNCTION();
    std::vector<Ui::TypedName> names;
    std::wstring text = NameText();
    if (text.empty())
        return trace_function.Return(names, L"{}");
    auto quoted = m_mode.allows_several ? Ui::ParseQuotedNames(text) : std::nullopt;
    if (quoted) {
        for (std::wstring& name : *quoted)
            names.push_back({.text = std::move(name)});
    } else {
        if ((m_parameters->Flags & Ui::DialogParameters::UseDefaultExtension) != 0)
            AddDefaultExtension(text, *m_parameters);
        else if (!m_mode.chooses_folder)
            m_filter->AddFilterExtension(text, m_parameters->DefaultExt.View());
        names.push_back({.text = std::move(text)});
    }
    Ui::MatchTypedNames(m_context.file_system, m_trail.GetItems(), names, trace_function.Name());
    return names;
}

void Dialog::AddDefaultExtension(std::wstring& io_name, const Ui::DialogParameters& parameters) {
    TRACE_FUNCTION();
    Ui::ApplyDefaultExtension(io_name, parameters.DefaultExt.View(), trace_function.Name());
}

} // namespace Qorv
