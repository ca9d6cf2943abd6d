#pragma once

#include "uix/DialogItem.h"

namespace DevHost {

/// A single-line edit box.
class Edit final : public Qorv::CoClass<Edit, DialogItem, Qorv::IUIX_Edit> {
public:
    void OnCommand(WORD i_notification) override;

    HRESULT STDMETHODCALLTYPE SelectText(LONG i_first, LONG i_last) noexcept override;

private:
    void Make(const LayoutItem& i_description, const ItemPlace& i_place) override;
};

} // namespace DevHost
