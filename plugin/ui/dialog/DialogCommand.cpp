#include "ui/dialog/DialogCommand.h"

#include "core/host/LocalizedText.h"
#include "core/trace/Trace.h"

namespace Ui {

CommandSet::CommandSet(Qorv::IQorv_Inst* i_host_instance, const DialogUi& i_ui)
    : m_texts{FormatString(i_host_instance, L"db.cmd.up"), FormatString(i_host_instance, L"db.cmd.newFolder"),
              FormatString(i_host_instance, L"db.cmd.delete"), FormatString(i_host_instance, L"db.cmd.refresh")} {
    TRACE_FUNCTION();
    Qorv::IUIX_Image* const images[] = {i_ui.m_up, i_ui.m_new_folder, i_ui.m_delete, i_ui.m_refresh};
    for (std::size_t i = 0; i < m_commands.size(); ++i)
        m_commands[i] = {.id = static_cast<LONG>(dialog_commands[i]), .text = m_texts[i].c_str(), .image = images[i]};
}

void CommandSet::Enable(DialogCommand i_command, bool i_is_enabled) noexcept {
    TRACE_FUNCTION();
    for (Qorv::UIX_Command& command : m_commands)
        if (command.id == static_cast<LONG>(i_command))
            command.is_enabled = i_is_enabled ? VARIANT_TRUE : VARIANT_FALSE;
}

} // namespace Ui
