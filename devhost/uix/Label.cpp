#include "uix/Label.h"

#include "uix/WindowText.h"

namespace DevHost {
namespace {

/// Only those of the layout's flags that say how the text looks; the others would change what the call does.
UINT LookOf(DWORD i_flags) {
    constexpr UINT looks = DT_CENTER | DT_RIGHT | DT_VCENTER | DT_BOTTOM | DT_WORDBREAK | DT_SINGLELINE |
                           DT_EXTERNALLEADING | DT_NOPREFIX | DT_PATH_ELLIPSIS | DT_END_ELLIPSIS;
    UINT flags = static_cast<UINT>(i_flags) & looks;
    if ((flags & DT_WORDBREAK) == 0)
        flags |= DT_SINGLELINE;
    if ((flags & (DT_SINGLELINE | DT_PATH_ELLIPSIS)) == DT_SINGLELINE)
        flags |= DT_END_ELLIPSIS;
    return flags;
}

} // namespace

void Label::Make(const LayoutItem& i_description, const ItemPlace& i_place) {
    m_draw_text_flags = LookOf(i_description.draw_text_flags);
    CreateControl(i_description, i_place, {L"STATIC", SS_OWNERDRAW});
}

void Label::Draw(const DRAWITEMSTRUCT& i_request) const {
    const std::wstring text = WindowText(Window());
    RECT rect = i_request.rcItem;
    FillRect(i_request.hDC, &rect, GetSysColorBrush(COLOR_3DFACE));
    SetBkMode(i_request.hDC, TRANSPARENT);
    SetTextColor(i_request.hDC, GetSysColor(IsWindowEnabled(Window()) ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
    DrawTextW(i_request.hDC, text.c_str(), static_cast<int>(text.size()), &rect, m_draw_text_flags);
}

} // namespace DevHost
