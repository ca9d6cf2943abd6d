#include "uix/DialogItem.h"

#include "uix/Button.h"
#include "uix/Combo.h"
#include "uix/ControlAccessible.h"
#include "uix/ControlName.h"
#include "uix/Edit.h"
#include "uix/Label.h"
#include "uix/List.h"
#include "uix/Picture.h"
#include "uix/WindowText.h"

namespace DevHost {
namespace {

using Qorv::ComPtr;

template <typename Kind>
ComPtr<DialogItem> CreateKind() {
    return Qorv::Create<Kind>();
}

struct ItemKind {
    const wchar_t* name;
    ComPtr<DialogItem> (*create)();
};

constexpr ItemKind item_kinds[] = {
    {L"label", &CreateKind<Label>}, {L"button", &CreateKind<Button>}, {L"picture", &CreateKind<Picture>},
    {L"list", &CreateKind<List>},   {L"combo", &CreateKind<Combo>},   {L"edit", &CreateKind<Edit>},
};

} // namespace

ComPtr<DialogItem> DialogItem::Create(const LayoutItem& i_description, const ItemPlace& i_place) {
    for (const ItemKind& kind : item_kinds)
        if (i_description.kind == kind.name) {
            auto item = kind.create();
            if (item == nullptr)
                throw std::bad_alloc();
            item->Make(i_description, i_place);
            return item;
        }
    throw Failure(E_INVALIDARG, L"The layout has an item of an unknown kind: \"" + i_description.kind + L"\"");
}

void DialogItem::CreateControl(const LayoutItem& i_description, const ItemPlace& i_place, const ControlStyle& i_style) {
    m_id = i_description.id;
    m_events = i_place.events;
    m_role = i_style.role;
    m_is_fixed = i_description.is_fixed;
    m_window =
        CreateWindowExW(i_style.extended_style, i_style.window_class, i_description.text.c_str(),
                        i_style.style | WS_CHILD | WS_VISIBLE, static_cast<int>(i_place.rect.left),
                        static_cast<int>(i_place.rect.top), static_cast<int>(i_place.rect.right - i_place.rect.left),
                        static_cast<int>(i_place.rect.bottom - i_place.rect.top), i_place.parent,
                        reinterpret_cast<HMENU>(UINT_PTR{i_place.control_id}), GetModuleHandleW(nullptr), nullptr);
    if (m_window == nullptr)
        throw LastErrorFailure(L"Cannot make a control");
    BeginListening();
    Send(WM_SETFONT, reinterpret_cast<WPARAM>(i_place.font), FALSE);
    SetControlName(m_window, m_id);
}

/// A control outlives its item only if the dialog could not be created.
DialogItem::~DialogItem() {
    if (m_window != nullptr)
        EndListening();
}

/// Not SetWindowSubclass, which looks up a window property for every message: a list gets many.
void DialogItem::BeginListening() {
    SetWindowLongPtrW(m_window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    m_procedure = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(m_window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&ControlProcedure)));
}

void DialogItem::EndListening() const {
    SetWindowLongPtrW(m_window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_procedure));
    SetWindowLongPtrW(m_window, GWLP_USERDATA, 0);
}

LRESULT CALLBACK DialogItem::ControlProcedure(HWND i_window, UINT i_message, WPARAM i_wparam, LPARAM i_lparam) {
    const ComPtr<DialogItem> item(reinterpret_cast<DialogItem*>(GetWindowLongPtrW(i_window, GWLP_USERDATA)));
    if (i_message == WM_SETFOCUS)
        item->TellFocus(i_window);
    if (i_message != WM_NCDESTROY)
        return item->OnControlMessage(i_message, i_wparam, i_lparam);
    item->EndListening();
    const LRESULT result = CallWindowProcW(item->m_procedure, i_window, i_message, i_wparam, i_lparam);
    item->m_window = nullptr;
    item->m_events = nullptr;
    item->OnGone();
    return result;
}

void DialogItem::SetAccessibleName(std::wstring i_name, HWND i_label) {
    m_name = std::move(i_name);
    m_label = i_label;
}

std::wstring DialogItem::AccessibleName() const {
    if (m_label == nullptr)
        return m_name.empty() ? ReadableCaption(WindowText(m_window)) : m_name;
    std::wstring name = ReadableCaption(WindowText(m_label));
    if (name.ends_with(L':'))
        name.pop_back();
    return name;
}

LRESULT DialogItem::OnControlMessage(UINT i_message, WPARAM i_wparam, LPARAM i_lparam) {
    constexpr auto client_object = static_cast<LONG>(0xFFFFFFFC); // OBJID_CLIENT
    if (i_message == WM_GETOBJECT && static_cast<LONG>(i_lparam) == client_object)
        if (const LRESULT answer = AnswerScreenReader(m_window, i_wparam, AccessibleName(), m_role))
            return answer;
    return CallWindowProcW(m_procedure, m_window, i_message, i_wparam, i_lparam);
}

void DialogItem::Post(Qorv::UIX_ItemEventKind i_kind, LONG i_detail) {
    if (m_events != nullptr && !m_is_own_change)
        m_events->Post(*this, i_kind, i_detail);
}

void DialogItem::ForgetEvents() {
    if (m_events != nullptr)
        m_events->Forget(*this);
}

void DialogItem::TellFocus(HWND i_control) const {
    if (m_events != nullptr)
        m_events->OnFocus(i_control);
}

HRESULT STDMETHODCALLTYPE DialogItem::get_Text(BSTR* o_text) noexcept {
    if (o_text == nullptr)
        return E_POINTER;
    *o_text = nullptr;
    return WithControl([&] { return AnswerText(WindowText(m_window), o_text); });
}

HRESULT STDMETHODCALLTYPE DialogItem::put_Text(Qorv::PCStr i_text) noexcept {
    if (i_text == nullptr)
        return E_POINTER;
    return ChangeControl([&] {
        if (!SetWindowTextW(m_window, i_text))
            return E_FAIL;
        InvalidateRect(m_window, nullptr, TRUE);
        return S_OK;
    });
}

HRESULT STDMETHODCALLTYPE DialogItem::put_IsEnabled(VARIANT_BOOL i_is_enabled) noexcept {
    return WithControl([&] {
        // The focus must not stay on a disabled control.
        if (i_is_enabled == VARIANT_FALSE && GetFocus() == m_window)
            SendMessageW(GetParent(m_window), WM_NEXTDLGCTL, FALSE, FALSE);
        EnableWindow(m_window, i_is_enabled != VARIANT_FALSE);
    });
}

HRESULT STDMETHODCALLTYPE DialogItem::put_IsVisible(VARIANT_BOOL i_is_visible) noexcept {
    return WithControl([&] { ShowWindow(m_window, i_is_visible != VARIANT_FALSE ? SW_SHOWNA : SW_HIDE); });
}

HRESULT STDMETHODCALLTYPE DialogItem::get_HasFocus(VARIANT_BOOL* o_has_focus) noexcept {
    if (o_has_focus == nullptr)
        return E_POINTER;
    *o_has_focus = VARIANT_FALSE;
    return WithControl([&] { *o_has_focus = GetFocus() == m_window ? VARIANT_TRUE : VARIANT_FALSE; });
}

/// Through the dialog, which also moves the default button's mark.
HRESULT STDMETHODCALLTYPE DialogItem::SetFocus() noexcept {
    return WithControl(
        [&] { SendMessageW(GetParent(m_window), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(m_window), TRUE); });
}

} // namespace DevHost
