#include "ui/dialog/DialogCommand.h"

#include "core/host/LocalizedText.h"
#include "core/trace/Trace.h"

namespace Ui {
namespace {

constexpr CommandRow rows[] = {
    {DialogCommand::up,
     L"db.cmd.up",
     &DialogUi::m_up,
     {{{WM_SYSKEYDOWN, VK_UP, KeyPlace::all_but_combo}, {WM_KEYDOWN, VK_BACK, KeyPlace::list}}}},
    {DialogCommand::new_folder, L"db.cmd.newFolder", &DialogUi::m_new_folder, {}},
    {DialogCommand::delete_items, L"db.cmd.delete", &DialogUi::m_delete, {{{WM_KEYDOWN, VK_DELETE, KeyPlace::list}}}},
    {DialogCommand::refresh, L"db.cmd.refresh", &DialogUi::m_refresh, {{{WM_KEYDOWN, VK_F5, KeyPlace::everywhere}}}},
    {DialogCommand::select_all, nullptr, nullptr, {{{WM_KEYDOWN, 'A', KeyPlace::list, true}}}},
};

} // namespace

std::span<const CommandRow> DialogCommands() noexcept {
    TRACE_FUNCTION();
    return rows;
}

CommandSet::CommandSet(Qorv::IQorv_Inst* i_host_instance, const DialogUi& i_ui) {
    TRACE_FUNCTION();
    m_texts.reserve(std::size(rows)); // They must not move: the commands point to them.
    for (const CommandRow& row : rows) {
        if (row.text_id == nullptr)
            continue;
        const std::wstring& text = m_texts.emplace_back(FormatString(i_host_instance, row.text_id));
        m_commands.push_back(
            {.id = static_cast<LONG>(row.command), .text = text.c_str(), .image = (i_ui.*row.image).Get()});
    }
}

void CommandSet::Enable(DialogCommand i_command, bool i_is_enabled) noexcept {
    TRACE_FUNCTION();
    for (Qorv::UIX_Command& command : m_commands)
        if (command.id == static_cast<LONG>(i_command))
            command.is_enabled = i_is_enabled ? VARIANT_TRUE : VARIANT_FALSE;
}

} // namespace Ui
