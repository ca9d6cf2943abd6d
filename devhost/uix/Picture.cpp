#include "uix/Picture.h"

#include "uix/GdiBitmap.h"

#include <oleacc.h>

namespace DevHost {
namespace {

constexpr int side = 24; // Layout units.

} // namespace

void Picture::Make(const LayoutItem& i_description, const ItemPlace& i_place) {
    m_bitmap = SquareOf(i_place.images->Get(i_description.image), static_cast<ULONG>(Scale::OfScreen().Pixels(side)));
    CreateControl(i_description, i_place, {L"STATIC", SS_OWNERDRAW, 0, ROLE_SYSTEM_GRAPHIC});
}

void Picture::Draw(const DRAWITEMSTRUCT& i_request) const {
    const RECT& place = i_request.rcItem;
    FillRect(i_request.hDC, &place, GetSysColorBrush(COLOR_3DFACE));
    DrawBitmap(i_request.hDC, *m_bitmap,
               {(place.left + place.right - static_cast<LONG>(m_bitmap->Width())) / 2,
                (place.top + place.bottom - static_cast<LONG>(m_bitmap->Height())) / 2});
}

} // namespace DevHost
