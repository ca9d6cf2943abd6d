#include "ui/dialog/DialogCommand.h"

#include "core/host/LocalizedText.h"
#include "core/trace/Trace.h"

namespace Ui {
namespace {

constexpr CommandRow rows[] = {
    {DialogCommand::open, L"db.cmd.openRow", nullptr, {}, L"Enter"}, // The list's own key.
    {DialogCommand::back,
     L"db.cmd.back",
     nullptr,
     {{{WM_SYSKEYDOWN, VK_LEFT, KeyPlace::everywhere}, {WM_XBUTTONUP, XBUTTON1, KeyPlace::everywhere}}},
     L"Alt+Left"},
    {DialogCommand::forward,
     L"db.cmd.forward",
     nullptr,
     {{{WM_SYSKEYDOWN, VK_RIGHT, KeyPlace::everywhere}, {WM_XBUTTONUP, XBUTTON2, KeyPlace::everywhere}}},
     L"Alt+Right"},
    {DialogCommand::up,
     L"db.cmd.up",
     &DialogUi::m_up,
     {{{WM_SYSKEYDOWN, VK_UP, KeyPlace::all_but_combo}, {WM_KEYDOWN, VK_BACK, KeyPlace::list}}},
     L"Alt+Up"},
    {DialogCommand::new_folder,
     L"db.cmd.newFolder",
     &DialogUi::m_new_folder,
     {{{WM_KEYDOWN, 'N', KeyPlace::everywhere, true, true}}},
     L"Ctrl+Shift+N"},
    {DialogCommand::rename, L"db.cmd.rename", nullptr, {{{WM_KEYDOWN, VK_F2, KeyPlace::list}}}, L"F2"},
    {DialogCommand::delete_items,
     L"db.cmd.delete",
     &DialogUi::m_delete,
     {{{WM_KEYDOWN, VK_DELETE, KeyPlace::list}}},
     L"Del"},
    {DialogCommand::refresh,
     L"db.cmd.refresh",
     &DialogUi::m_refresh,
     {{{WM_KEYDOWN, VK_F5, KeyPlace::everywhere}, {WM_KEYDOWN, 'R', KeyPlace::everywhere, true}}},
     L"F5"},
    {DialogCommand::select_all, nullptr, nullptr, {{{WM_KEYDOWN, 'A', KeyPlace::list, true}}}},
    {DialogCommand::show_places,
     nullptr,
     nullptr,
     {{{WM_SYSKEYDOWN, 'D', KeyPlace::everywhere}, {WM_KEYDOWN, VK_F4, KeyPlace::all_but_combo}}}},
    {DialogCommand::focus_name, nullptr, nullptr, {{{WM_SYSKEYDOWN, 'N', KeyPlace::everywhere}}}},
    {DialogCommand::focus_types, nullptr, nullptr, {{{WM_SYSKEYDOWN, 'T', KeyPlace::everywhere}}}},
    {DialogCommand::focus_list, nullptr, nullptr, {{{WM_SYSKEYDOWN, 'L', KeyPlace::everywhere}}}},
};

} // namespace

std::span<const CommandRow> DialogCommands() noexcept {
    TRACE_FUNCTION();
    return rows;
}

CommandSet::CommandSet(Qorv::IQorv_Inst* i_host_instance, const DialogUi& i_ui, Place i_place) {
    TRACE_FUNCTION();
    m_texts.reserve(std::size(rows)); // They must not move: the commands point to them.
    for (const CommandRow& row : rows) {
        const bool is_here = i_place == Place::bar ? row.image != nullptr : row.text_id != nullptr;
        if (!is_here)
            continue;
        std::wstring& text = m_texts.emplace_back(FormatString(i_host_instance, row.text_id));
        if (i_place == Place::menu && row.key_name != nullptr)
            text.append(L"\t").append(row.key_name);
        m_commands.push_back({.id = static_cast<LONG>(row.command),
                              .text = text.c_str(),
                              .image = row.image != nullptr ? (i_ui.*row.image).Get() : nullptr});
    }
}

void CommandSet::Enable(DialogCommand i_command, bool i_is_enabled) noexcept {
    TRACE_FUNCTION();
    for (Qorv::UIX_Command& command : m_commands)
        if (command.id == static_cast<LONG>(i_command))
            command.is_enabled = i_is_enabled ? VARIANT_TRUE : VARIANT_FALSE;
}

} // namespace Ui
