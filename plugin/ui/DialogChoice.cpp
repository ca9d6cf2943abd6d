// What a dialog makes of OK.

#include "core/Check.h"
#include "qorv/Values.h"
#include "ui/Dialog.h"
#include "ui/NameExtension.h"
#include "ui/QuotedNames.h"

namespace Qorv {

void Dialog::Confirm() {
    TRACE_FUNCTION();
    if (IsBusy())
        return;
    if (const auto selection = m_list->GetSelection(); !m_is_name_typed && !selection.empty())
        return Carry(Ui::DecideSelection(m_mode, selection));
    const Ui::Decision way = Ui::DecideWay(NameText(), m_list->GetRows());
    if (way.kind != Ui::Decision::Kind::nothing)
        return Carry(way);
    if (m_shown_folder != nullptr)
        Carry(Ui::DecideTypedNames(m_mode, GetNamesFromNameEditControl(), m_list->GetRows()));
}

void Dialog::Carry(const Ui::Decision& i_decision) {
    TRACE_FUNCTION();
    switch (i_decision.kind) {
    case Ui::Decision::Kind::nothing:
        m_items.m_name->SetFocus();
        break;
    case Ui::Decision::Kind::go_up:
        ShowParent();
        break;
    case Ui::Decision::Kind::enter:
        if (m_is_name_typed && m_mode.is_open)
            m_items.m_name->put_Text(L""); // It was the folder's title.
        Show(i_decision.names.front().name, {});
        break;
    case Ui::Decision::Kind::go_to:
        GoTo(i_decision.text);
        break;
    case Ui::Decision::Kind::choose_shown:
        Choose({{DisplayPath(m_shown_folder), m_shown_folder, nullptr}});
        break;
    case Ui::Decision::Kind::choose:
        Choose(i_decision.names);
        break;
    case Ui::Decision::Kind::ask_to_replace:
        if (Ui::AskToReplace(m_context.host_instance, i_decision.names.front().text))
            Choose(i_decision.names);
        break;
    case Ui::Decision::Kind::refuse:
        Ui::TellWhyNot(m_context.host_instance, i_decision.message_id, i_decision.text);
        break;
    }
}

void Dialog::GoTo(const std::wstring& i_location) {
    TRACE_FUNCTION();
    IAFS_Name* const from = m_shown_folder != nullptr ? m_shown_folder : m_good_folder;
    ComPtr<IAFS_Name> target;
    if (from == nullptr || FAILED(m_context.file_system->StringToName(i_location.c_str(), 0, from, &target)))
        return Ui::TellWhyNot(m_context.host_instance, L"db.msg.badLocation", i_location);
    Show(target, {.selected_title = {}, .target = target});
}

void Dialog::Choose(const std::vector<TypedName>& i_names) {
    TRACE_FUNCTION();
    if (m_pObj == nullptr)
        return; // The dialog was closed together with a question.
    std::vector<ComPtr<IAFS_Name>> chosen;
    for (const TypedName& typed : i_names) {
        ComPtr<IAFS_Name> name = typed.name;
        if (name == nullptr)
            m_context.file_system->StringToName(typed.text.c_str(), 0, m_shown_folder, &name);
        if (name == nullptr)
            return Ui::TellWhyNot(m_context.host_instance, L"db.msg.badName", typed.text);
        chosen.push_back(std::move(name));
    }
    for (const auto& name : chosen)
        CHECK_HRESULT_THROW(m_files_to_open->Add(name));
    End();
}

void Dialog::End() {
    TRACE_FUNCTION();
    LONG filter = -1;
    if (SUCCEEDED(m_items.m_filter_combo->get_SelItem(&filter)) && filter >= 0)
        m_parameters->FileFilterIndex = filter;
    m_pObj->EndModal(IDOK, nullptr);
}

std::wstring Dialog::NameText() const {
    TRACE_FUNCTION();
    Bstr text;
    m_items.m_name->get_Text(&text);
    return std::wstring(text.View());
}

std::vector<TypedName> Dialog::GetNamesFromNameEditControl() {
    TRACE_FUNCTION();
    std::vector<TypedName> names;
    std::wstring text = NameText();
    if (text.empty())
        return trace_function.Return(names, L"{}");
    auto quoted = m_mode.allows_several ? ParseQuotedNames(text) : std::nullopt;
    if (quoted) {
        for (std::wstring& name : *quoted)
            names.push_back({std::move(name), nullptr, nullptr});
    } else {
        if ((m_parameters->Flags & Ui::DialogParameters::UseDefaultExtension) != 0)
            AddDefaultExtension(text, *m_parameters);
        else if (!m_mode.chooses_folder)
            m_filter->AddFilterExtension(text, m_parameters->DefaultExt.View());
        names.push_back({std::move(text), nullptr, nullptr});
    }
    MatchTypedNames(m_context.file_system, m_connection->GetItems(), names, trace_function.Name());
    return names;
}

void Dialog::AddDefaultExtension(std::wstring& io_name, const Ui::DialogParameters& parameters) {
    TRACE_FUNCTION();
    ApplyDefaultExtension(io_name, parameters.DefaultExt.View(), trace_function.Name());
}

} // namespace Qorv
