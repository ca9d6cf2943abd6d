#pragma once

#include "uix/DialogItem.h"

namespace DevHost {

/// A push button.
class Button final : public DialogItem {
public:
    Button(const LayoutItem& i_description, const ItemPlace& i_place)
        : DialogItem(i_description, i_place, L"BUTTON", WS_TABSTOP | BS_PUSHBUTTON) {}

    std::optional<Qorv::UIX_ItemEventKind> EventOf(WORD i_notification) const override {
        return i_notification == BN_CLICKED ? std::optional(Qorv::UIX_ItemEvent_Click) : std::nullopt;
    }
};

} // namespace DevHost
