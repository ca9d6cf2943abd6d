#pragma once

#include "uix/DialogItem.h"

namespace DevHost {

/// One of the host's images, centred in its place.
class Picture final : public Qorv::CoClass<Picture, DialogItem> {
public:
    void Draw(const DRAWITEMSTRUCT& i_request) const override;

private:
    void Make(const LayoutItem& i_description, const ItemPlace& i_place) override;

    Qorv::ComPtr<Bitmap> m_bitmap;
};

} // namespace DevHost
