#pragma once

#include "uix/DialogItem.h"

namespace DevHost {

/// A text, drawn as the layout's flags say. One line that has no room ends in an ellipsis.
class Label final : public DialogItem {
public:
    Label(const LayoutItem& i_description, const ItemPlace& i_place);

    void Draw(const DRAWITEMSTRUCT& i_request) const override;

private:
    UINT m_draw_text_flags;
};

} // namespace DevHost
