#pragma once

#include "uix/DialogItem.h"

namespace DevHost {

/// A text, drawn as the layout's flags say. A single line that doesn't fit ends in an ellipsis.
class Label final : public Qorv::CoClass<Label, DialogItem> {
public:
    void Draw(const DRAWITEMSTRUCT& i_request) const override;

private:
    void Make(const LayoutItem& i_description, const ItemPlace& i_place) override;

    UINT m_draw_text_flags = 0;
};

} // namespace DevHost
