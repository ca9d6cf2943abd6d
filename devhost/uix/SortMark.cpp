#include "uix/SortMark.h"

#include "services/Failure.h"

#include <commctrl.h>

namespace DevHost {
namespace {

// Layout units.
constexpr int arrow_width = 9;
constexpr int arrow_height = 5;

/// An arrow on the head's own colour: the system's control draws none by itself without visual styles.
BitmapHandle DrawArrow(const Scale& i_scale, bool i_points_up) {
    const int width = i_scale.Pixels(arrow_width) | 1; // An odd one has a tip of one pixel.
    const int height = i_scale.Pixels(arrow_height);
    const HDC screen = GetDC(nullptr);
    BitmapHandle bitmap(CreateCompatibleBitmap(screen, width, height));
    const HDC memory = CreateCompatibleDC(screen);
    ReleaseDC(nullptr, screen);
    const HGDIOBJ old_bitmap = SelectObject(memory, bitmap.get());
    const RECT area{0, 0, width, height};
    FillRect(memory, &area, GetSysColorBrush(COLOR_BTNFACE));
    for (int row = 0; row < height; ++row) {
        const int half = row * (width / 2) / (height - 1);
        const int y = i_points_up ? row : height - 1 - row;
        const RECT line{width / 2 - half, y, width / 2 + half + 1, y + 1};
        FillRect(memory, &line, GetSysColorBrush(COLOR_BTNSHADOW));
    }
    SelectObject(memory, old_bitmap);
    DeleteDC(memory);
    if (bitmap == nullptr)
        throw LastErrorFailure(L"Cannot make a bitmap");
    return bitmap;
}

} // namespace

SortMark::SortMark(const Scale& i_scale)
    : m_ascending(DrawArrow(i_scale, true)), m_descending(DrawArrow(i_scale, false)) {}

void SortMark::Show(HWND i_header, int i_column, bool i_is_descending) const {
    const int count = Header_GetItemCount(i_header);
    for (int column = 0; column < count; ++column) {
        HDITEMW item{};
        item.mask = HDI_FORMAT;
        SendMessageW(i_header, HDM_GETITEMW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&item));
        item.fmt &= ~(HDF_BITMAP | HDF_BITMAP_ON_RIGHT);
        if (column == i_column) {
            item.mask |= HDI_BITMAP;
            item.fmt |= HDF_BITMAP | HDF_BITMAP_ON_RIGHT;
            item.hbm = (i_is_descending ? m_descending : m_ascending).get();
        }
        SendMessageW(i_header, HDM_SETITEMW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&item));
    }
}

} // namespace DevHost
