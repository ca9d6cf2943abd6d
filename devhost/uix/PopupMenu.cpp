#include "uix/PopupMenu.h"

#include "services/Failure.h"
#include "services/Image.h"
#include "uix/GdiBitmap.h"

#include <string>
#include <vector>

namespace DevHost {
namespace {

constexpr int image_side = 16; // Layout units.

struct DestroyMenuHandle {
    void operator()(HMENU i_menu) const noexcept { DestroyMenu(i_menu); }
};
using Menu = std::unique_ptr<HMENU__, DestroyMenuHandle>;

BitmapHandle PictureOf(const Qorv::UIX_Command& i_command) {
    if (i_command.image == nullptr)
        return nullptr;
    const auto side = static_cast<ULONG>(Scale::OfScreen().Pixels(image_side));
    const auto picture = SquareOf(i_command.image, side);
    return picture != nullptr ? MakeGdiBitmap(*picture) : nullptr;
}

void AddCommand(HMENU i_menu, const Qorv::UIX_Command& i_command, HBITMAP i_picture) {
    std::wstring text = i_command.text != nullptr ? i_command.text : L"";
    MENUITEMINFOW item{};
    item.cbSize = sizeof(item);
    item.fMask = MIIM_FTYPE | MIIM_ID | MIIM_STATE | MIIM_STRING | MIIM_BITMAP;
    item.fType = i_command.id == 0 ? MFT_SEPARATOR : MFT_STRING;
    item.fState = i_command.is_enabled != VARIANT_FALSE ? MFS_ENABLED : MFS_DISABLED;
    item.wID = static_cast<UINT>(i_command.id);
    item.dwTypeData = text.data();
    item.hbmpItem = i_picture;
    if (!InsertMenuItemW(i_menu, static_cast<UINT>(GetMenuItemCount(i_menu)), TRUE, &item))
        throw LastErrorFailure(L"Cannot make a menu");
}

} // namespace

LONG ChooseFromMenu(HWND i_owner, POINT i_place, std::span<const Qorv::UIX_Command> i_commands) {
    std::vector<BitmapHandle> pictures;
    const Menu menu(CreatePopupMenu());
    for (const Qorv::UIX_Command& command : i_commands) {
        pictures.push_back(PictureOf(command));
        AddCommand(menu.get(), command, pictures.back().get());
    }
    return TrackPopupMenu(menu.get(), TPM_RETURNCMD | TPM_NONOTIFY | TPM_RIGHTBUTTON, static_cast<int>(i_place.x),
                          static_cast<int>(i_place.y), 0, i_owner, nullptr);
}

} // namespace DevHost
