#pragma once

#include "qorv/Host.h"
#include "qorv/Uix.h"
#include "ui/list/DialogUi.h"

#include <array>
#include <string>

namespace Ui {

/// The commands of a dialog's command bar, its list's menu and its keys. The values are the host's ids of them.
enum class DialogCommand : LONG {
    up = 1,
    new_folder = 2,
    delete_items = 3,
    refresh = 4,
    select_all = 5, ///< By its key only.
};

/// Those that bar and menu have.
inline constexpr DialogCommand dialog_commands[] = {DialogCommand::up, DialogCommand::new_folder,
                                                    DialogCommand::delete_items, DialogCommand::refresh};

/// The commands as the host's bars and menus take them. The UI service outlives it.
class CommandSet {
public:
    CommandSet(Qorv::IQorv_Inst* i_host_instance, const DialogUi& i_ui);
    CommandSet(const CommandSet&) = delete;
    CommandSet& operator=(const CommandSet&) = delete;

    void Enable(DialogCommand i_command, bool i_is_enabled) noexcept;

    const Qorv::UIX_Command* GetCommands() const noexcept { return m_commands.data(); }
    ULONG GetCount() const noexcept { return static_cast<ULONG>(m_commands.size()); }

private:
    std::array<std::wstring, std::size(dialog_commands)> m_texts;
    std::array<Qorv::UIX_Command, std::size(dialog_commands)> m_commands;
};

} // namespace Ui
