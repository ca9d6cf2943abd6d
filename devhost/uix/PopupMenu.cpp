#include "uix/PopupMenu.h"

#include "base/Failure.h"

#include <memory>

namespace DevHost {
namespace {

struct DestroyMenuHandle {
    void operator()(HMENU i_menu) const noexcept { DestroyMenu(i_menu); }
};
using Menu = std::unique_ptr<HMENU__, DestroyMenuHandle>;

void AddCommand(HMENU i_menu, const Qorv::UIX_Command& i_command) {
    const UINT kind = i_command.id == 0 ? MF_SEPARATOR : MF_STRING;
    const UINT state = i_command.is_enabled != VARIANT_FALSE ? MF_ENABLED : MF_GRAYED;
    if (!AppendMenuW(i_menu, kind | state, static_cast<UINT_PTR>(i_command.id),
                     i_command.text != nullptr ? i_command.text : L""))
        throw LastErrorFailure(L"Cannot make a menu");
}

} // namespace

LONG ChooseFromMenu(HWND i_owner, POINT i_place, std::span<const Qorv::UIX_Command> i_commands) {
    const Menu menu(CreatePopupMenu());
    for (const Qorv::UIX_Command& command : i_commands)
        AddCommand(menu.get(), command);
    return TrackPopupMenu(menu.get(), TPM_RETURNCMD | TPM_NONOTIFY | TPM_RIGHTBUTTON, static_cast<int>(i_place.x),
                          static_cast<int>(i_place.y), 0, i_owner, nullptr);
}

} // namespace DevHost
