#include "uix/Label.h"

#include "uix/WindowText.h"

#include <oleacc.h>

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

LONG WidthOf(HDC i_device, const std::wstring& i_text) {
    SIZE size{};
    GetTextExtentPoint32W(i_device, i_text.c_str(), static_cast<int>(i_text.size()), &size);
    return size.cx;
}

/// A text without its middle, with the given number of characters left, of which the end gets the larger half.
std::wstring WithoutMiddle(const std::wstring& i_text, std::size_t i_kept) {
    std::size_t head = i_kept / 3;
    std::size_t tail = i_text.size() - (i_kept - head);
    if (head > 0 && IS_HIGH_SURROGATE(i_text[head - 1]))
        --head; // Half a character shows as a box.
    if (tail < i_text.size() && IS_LOW_SURROGATE(i_text[tail]))
        ++tail;
    return i_text.substr(0, head) + L'\u2026' + i_text.substr(tail);
}

/// The longest form of a text that fits, without its middle if need be.
std::wstring CutToWidth(HDC i_device, const std::wstring& i_text, LONG i_width) {
    if (WidthOf(i_device, i_text) <= i_width)
        return i_text;
    std::size_t fits = 1, is_too_long = i_text.size();
    while (is_too_long - fits > 1) {
        const std::size_t middle = (fits + is_too_long) / 2;
        (WidthOf(i_device, WithoutMiddle(i_text, middle)) <= i_width ? fits : is_too_long) = middle;
    }
    return WithoutMiddle(i_text, fits);
}

} // namespace

void Label::Make(const LayoutItem& i_description, const ItemPlace& i_place) {
    m_draw_text_flags = LookOf(i_description.draw_text_flags);
    CreateControl(i_description, i_place, {L"STATIC", SS_OWNERDRAW | SS_NOTIFY, 0, ROLE_SYSTEM_STATICTEXT});
    m_tool_tips = ToolTips(i_place.parent);
}

void Label::OnCommand(WORD i_notification) {
    if (i_notification == STN_CLICKED)
        Post(Qorv::UIX_ItemEvent_Click);
}

void Label::Draw(const DRAWITEMSTRUCT& i_request) const {
    std::wstring text = WindowText(Window());
    RECT rect = i_request.rcItem;
    FillRect(i_request.hDC, &rect, GetSysColorBrush(COLOR_3DFACE));
    SetBkMode(i_request.hDC, TRANSPARENT);
    SetTextColor(i_request.hDC, GetSysColor(IsWindowEnabled(Window()) ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
    if (m_is_cut_in_middle)
        text = CutToWidth(i_request.hDC, text, rect.right - rect.left);
    DrawTextW(i_request.hDC, text.c_str(), static_cast<int>(text.size()), &rect, m_draw_text_flags);
}

HRESULT STDMETHODCALLTYPE Label::put_Text(Qorv::PCStr i_text) noexcept {
    const HRESULT result = DialogItem::put_Text(i_text);
    if (SUCCEEDED(result) && m_is_cut_in_middle)
        m_tool_tips.SetText(Window(), i_text);
    return result;
}

HRESULT STDMETHODCALLTYPE Label::put_IsCutInMiddle(VARIANT_BOOL i_is_cut_in_middle) noexcept {
    return WithControl([&] {
        m_is_cut_in_middle = i_is_cut_in_middle != VARIANT_FALSE;
        m_tool_tips.SetText(Window(), m_is_cut_in_middle ? WindowText(Window()) : std::wstring());
        InvalidateRect(Window(), nullptr, TRUE);
    });
}

HRESULT STDMETHODCALLTYPE Label::get_ScreenRect(RECT* o_rect) noexcept {
    if (o_rect == nullptr)
        return E_POINTER;
    return WithControl([&] { return GetWindowRect(Window(), o_rect) ? S_OK : E_UNEXPECTED; });
}

} // namespace DevHost
