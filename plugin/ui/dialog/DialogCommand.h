#pragma once

#include "qorv/Host.h"
#include "qorv/Uix.h"
#include "ui/list/DialogUi.h"

#include <array>
#include <span>
#include <string>
#include <vector>

namespace Ui {

/// The commands of a dialog. The values are the host's ids of them.
enum class DialogCommand : LONG {
    up = 1,
    new_folder = 2,
    delete_items = 3,
    refresh = 4,
    select_all = 5,
    rename = 6,
    focus_name = 7,
    focus_types = 8,
    focus_list = 9,
    back = 10,
    forward = 11,
    show_places = 12,
    open = 13,
};

/// Where a key runs a command; elsewhere it belongs to the item.
enum class KeyPlace { everywhere, list, all_but_combo };

struct CommandKey {
    UINT message = 0; ///< WM_KEYDOWN, or WM_SYSKEYDOWN with Alt; 0 for no key. WM_XBUTTONUP for a mouse's button.
    WPARAM code = 0;  ///< The key's, or the button's.
    KeyPlace place = KeyPlace::everywhere;
    bool is_with_ctrl = false;
    bool is_with_shift = false; ///< Otherwise Shift makes no difference.
};

/// Everything about a command except what it does.
struct CommandRow {
    DialogCommand command;
    Qorv::PCStr text_id;                             ///< Null for a command in neither the bar nor the menu.
    Qorv::ComPtr<Qorv::IUIX_Image> DialogUi::*image; ///< Null for a command that isn't in the bar.
    std::array<CommandKey, 2> keys;
    Qorv::PCStr key_name = nullptr; ///< For the menu: of the key that is easiest to remember.
};

/// Every command, in the order of bar and menu.
std::span<const CommandRow> DialogCommands() noexcept;

/// The commands of bar or menu as the host takes them. The UI service outlives it.
class CommandSet {
public:
    enum class Place { bar, menu };
    CommandSet(Qorv::IQorv_Inst* i_host_instance, const DialogUi& i_ui, Place i_place);
    CommandSet(const CommandSet&) = delete;
    CommandSet& operator=(const CommandSet&) = delete;

    void Enable(DialogCommand i_command, bool i_is_enabled) noexcept;

    const Qorv::UIX_Command* GetCommands() const noexcept { return m_commands.data(); }
    ULONG GetCount() const noexcept { return static_cast<ULONG>(m_commands.size()); }

private:
    std::vector<std::wstring> m_texts;
    std::vector<Qorv::UIX_Command> m_commands;
};

} // namespace Ui
