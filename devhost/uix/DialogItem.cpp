#include "uix/DialogItem.h"

#include "services/Failure.h"
#include "uix/Button.h"
#include "uix/ControlName.h"
#include "uix/Label.h"

namespace DevHost {
namespace {

template <typename Kind>
std::unique_ptr<DialogItem> CreateKind(const LayoutItem& i_description, const ItemPlace& i_place) {
    return std::make_unique<Kind>(i_description, i_place);
}

struct ItemKind {
    const wchar_t* name;
    std::unique_ptr<DialogItem> (*create)(const LayoutItem&, const ItemPlace&);
};

constexpr ItemKind item_kinds[] = {
    {L"label", &CreateKind<Label>},
    {L"button", &CreateKind<Button>},
};

} // namespace

std::unique_ptr<DialogItem> DialogItem::Create(const LayoutItem& i_description, const ItemPlace& i_place) {
    for (const ItemKind& kind : item_kinds)
        if (i_description.kind == kind.name)
            return kind.create(i_description, i_place);
    throw Failure(E_INVALIDARG, L"The layout has an item of an unknown kind: \"" + i_description.kind + L"\"");
}

DialogItem::DialogItem(const LayoutItem& i_description, const ItemPlace& i_place, const wchar_t* i_window_class,
                       DWORD i_style)
    : m_id(i_description.id)
    , m_window(CreateWindowExW(0, i_window_class, i_description.text.c_str(), i_style | WS_CHILD | WS_VISIBLE,
                               static_cast<int>(i_place.rect.left), static_cast<int>(i_place.rect.top),
                               static_cast<int>(i_place.rect.right - i_place.rect.left),
                               static_cast<int>(i_place.rect.bottom - i_place.rect.top), i_place.parent,
                               reinterpret_cast<HMENU>(UINT_PTR{i_place.control_id}), GetModuleHandleW(nullptr),
                               nullptr)) {
    if (m_window == nullptr)
        throw LastErrorFailure(L"Cannot make a control");
    SendMessageW(m_window, WM_SETFONT, reinterpret_cast<WPARAM>(i_place.font), FALSE);
    SetControlName(m_window, m_id);
}

std::optional<Qorv::UIX_ItemEventKind> DialogItem::EventOf(WORD /*i_notification*/) const {
    return std::nullopt;
}

void DialogItem::Draw(const DRAWITEMSTRUCT& /*i_request*/) const {}

} // namespace DevHost
