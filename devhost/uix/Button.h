#pragma once

#include "uix/DialogItem.h"

#include <oleacc.h>

namespace DevHost {

/// A push button.
class Button final : public Qorv::CoClass<Button, DialogItem> {
public:
    void OnCommand(WORD i_notification) override {
        if (i_notification == BN_CLICKED)
            Post(Qorv::UIX_ItemEvent_Click);
    }

private:
    void Make(const LayoutItem& i_description, const ItemPlace& i_place) override {
        CreateControl(i_description, i_place, {L"BUTTON", WS_TABSTOP | BS_PUSHBUTTON, 0, ROLE_SYSTEM_PUSHBUTTON});
    }
};

} // namespace DevHost
