#include "uix/Combo.h"

#include "uix/Scale.h"
#include "uix/WindowText.h"

#include <oleacc.h>

#include <algorithm>

namespace DevHost {
namespace {

constexpr int list_height = 200; // Layout units. The control shrinks its list to its items.
constexpr int list_padding = 12; // Added to the width of the longest text.

/// The height at creation, less the closed height, is that of the list.
ItemPlace WithRoomForList(ItemPlace i_place) {
    i_place.rect.bottom += Scale::OfScreen().Pixels(list_height);
    return i_place;
}

} // namespace

void Combo::Make(const LayoutItem& i_description, const ItemPlace& i_place) {
    m_list_width = i_place.rect.right - i_place.rect.left;
    CreateControl(i_description, WithRoomForList(i_place),
                  {L"COMBOBOX", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST | CBS_HASSTRINGS, 0, ROLE_SYSTEM_COMBOBOX});
    m_tool_tips = ToolTips(i_place.parent);
    FitClosedHeight(static_cast<int>(i_place.rect.bottom - i_place.rect.top));
}

/// The control chooses a height for its font; the layout's differs.
void Combo::FitClosedHeight(int i_height) {
    RECT closed;
    GetWindowRect(Window(), &closed);
    constexpr auto closed_field = static_cast<WPARAM>(-1);
    const LRESULT field_height = Send(CB_GETITEMHEIGHT, closed_field);
    Send(CB_SETITEMHEIGHT, closed_field, field_height + i_height - (closed.bottom - closed.top));
}

void Combo::WidenListFor(Qorv::PCStr i_text) {
    const auto font = reinterpret_cast<HFONT>(Send(WM_GETFONT));
    const LONG width = TextSize(i_text, font, 0, DT_SINGLELINE | DT_NOPREFIX).cx +
                       Scale::OfScreen().Pixels(list_padding) + GetSystemMetrics(SM_CXVSCROLL);
    m_list_width = std::max(m_list_width, width);
    Send(CB_SETDROPPEDWIDTH, static_cast<WPARAM>(m_list_width));
}

/// While the list is open the user is only browsing: the item at its closing counts.
void Combo::OnCommand(WORD i_notification) {
    if (i_notification != CBN_SELCHANGE && i_notification != CBN_CLOSEUP)
        return;
    if (i_notification == CBN_SELCHANGE && Send(CB_GETDROPPEDSTATE) != FALSE)
        return;
    if (Selected() == m_selected)
        return;
    Remember();
    Post(Qorv::UIX_ItemEvent_Changed);
}

/// The control shows the selected item's hint: the items of an open list cannot show theirs.
void Combo::Remember() {
    m_selected = Selected();
    m_tool_tips.SetText(Window(), m_selected >= 0 ? m_hints[static_cast<std::size_t>(m_selected)] : std::wstring());
}

HRESULT STDMETHODCALLTYPE Combo::Clear() noexcept {
    return WithControl([&] {
        Send(CB_RESETCONTENT);
        m_hints.clear();
        Remember();
    });
}

HRESULT STDMETHODCALLTYPE Combo::InsertItem(LONG i_index, Qorv::PCStr i_text, Qorv::PCStr i_hint,
                                            Qorv::IUIX_Image* /*i_icon*/, Qorv::PARAM_T i_param,
                                            ULONG i_flags) noexcept {
    if (i_text == nullptr)
        return E_POINTER;
    return WithControl([&] {
        if (i_index < -1 || i_index > Count() || i_flags != 0)
            return E_INVALIDARG;
        const LRESULT index = SendPointer(CB_INSERTSTRING, static_cast<WPARAM>(i_index), i_text);
        if (index < 0)
            return E_OUTOFMEMORY;
        Send(CB_SETITEMDATA, static_cast<WPARAM>(index), static_cast<LPARAM>(i_param));
        m_hints.insert(m_hints.begin() + index, i_hint != nullptr ? i_hint : L"");
        WidenListFor(i_text);
        Remember();
        return S_OK;
    });
}

HRESULT STDMETHODCALLTYPE Combo::get_Count(LONG* o_count) noexcept {
    if (o_count == nullptr)
        return E_POINTER;
    *o_count = 0;
    return WithControl([&] { *o_count = Count(); });
}

HRESULT STDMETHODCALLTYPE Combo::get_SelItem(LONG* o_index) noexcept {
    if (o_index == nullptr)
        return E_POINTER;
    *o_index = -1;
    return WithControl([&] { *o_index = Selected(); });
}

HRESULT STDMETHODCALLTYPE Combo::put_SelItem(LONG i_index) noexcept {
    return WithControl([&] {
        if (i_index != -1 && !Holds(i_index))
            return E_INVALIDARG;
        Send(CB_SETCURSEL, static_cast<WPARAM>(i_index));
        Remember();
        return S_OK;
    });
}

HRESULT STDMETHODCALLTYPE Combo::GetItemText(LONG i_index, BSTR* o_text) noexcept {
    if (o_text == nullptr)
        return E_POINTER;
    *o_text = nullptr;
    return WithControl([&] {
        if (!Holds(i_index))
            return E_INVALIDARG;
        const auto index = static_cast<WPARAM>(i_index);
        std::wstring text(static_cast<std::size_t>(Send(CB_GETLBTEXTLEN, index)), L'\0');
        SendPointer(CB_GETLBTEXT, index, text.data());
        return AnswerText(text, o_text);
    });
}

HRESULT STDMETHODCALLTYPE Combo::GetItemParam(LONG i_index, Qorv::PARAM_T* o_param) noexcept {
    if (o_param == nullptr)
        return E_POINTER;
    *o_param = 0;
    return WithControl([&] {
        if (!Holds(i_index))
            return E_INVALIDARG;
        *o_param = static_cast<Qorv::PARAM_T>(Send(CB_GETITEMDATA, static_cast<WPARAM>(i_index)));
        return S_OK;
    });
}

} // namespace DevHost
