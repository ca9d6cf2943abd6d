#pragma once

#include "uix/DialogItem.h"
#include "uix/ToolTips.h"

#include <vector>

namespace DevHost {

/// A drop-down list.
class Combo final : public Qorv::CoClass<Combo, DialogItem, Qorv::IUIX_Combo> {
public:
    void OnCommand(WORD i_notification) override;

    HRESULT STDMETHODCALLTYPE Clear() noexcept override;
    HRESULT STDMETHODCALLTYPE InsertItem(LONG i_index, Qorv::PCStr i_text, Qorv::PCStr i_hint, Qorv::IUIX_Image* i_icon,
                                         Qorv::PARAM_T i_param, ULONG i_flags) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Count(LONG* o_count) noexcept override;
    HRESULT STDMETHODCALLTYPE get_SelItem(LONG* o_index) noexcept override;
    HRESULT STDMETHODCALLTYPE put_SelItem(LONG i_index) noexcept override;
    HRESULT STDMETHODCALLTYPE GetItemText(LONG i_index, BSTR* o_text) noexcept override;
    HRESULT STDMETHODCALLTYPE GetItemParam(LONG i_index, Qorv::PARAM_T* o_param) noexcept override;

private:
    void Make(const LayoutItem& i_description, const ItemPlace& i_place) override;
    void FitClosedHeight(int i_height);
    void WidenListFor(Qorv::PCStr i_text);
    LONG Count() const { return static_cast<LONG>(Send(CB_GETCOUNT)); }
    LONG Selected() const { return static_cast<LONG>(Send(CB_GETCURSEL)); }
    bool Holds(LONG i_index) const { return i_index >= 0 && i_index < Count(); }
    void Remember();

    LONG m_selected = -1; ///< The selection that the plug-in knows about.
    LONG m_list_width = 0;
    std::vector<std::wstring> m_hints; ///< Of the items.
    ToolTips m_tool_tips;
};

} // namespace DevHost
