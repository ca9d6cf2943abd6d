#pragma once

#include "uix/DialogItem.h"
#include "uix/ToolTips.h"

namespace DevHost {

/// A text, drawn as the layout's flags say. A single line that doesn't fit ends in an ellipsis, or has it in its
/// middle.
class Label final : public Qorv::CoClass<Label, DialogItem, Qorv::IUIX_Label> {
public:
    void OnCommand(WORD i_notification) override;
    void Draw(const DRAWITEMSTRUCT& i_request) const override;

    HRESULT STDMETHODCALLTYPE put_Text(Qorv::PCStr i_text) noexcept override;
    HRESULT STDMETHODCALLTYPE put_IsCutInMiddle(VARIANT_BOOL i_is_cut_in_middle) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ScreenRect(RECT* o_rect) noexcept override;

private:
    void Make(const LayoutItem& i_description, const ItemPlace& i_place) override;

    UINT m_draw_text_flags = 0;
    bool m_is_cut_in_middle = false;
    ToolTips m_tool_tips;
};

} // namespace DevHost
