#pragma once

#include "qorv/CoClass.h"
#include "qorv/Uix.h"
#include "services/Bitmap.h"

#include <vector>

namespace DevHost {

/// One picture in several sizes. Main thread only.
class Image final : public Qorv::CoClass<Image, Qorv::IUIX_Image> {
public:
    HRESULT STDMETHODCALLTYPE AddBitmap(Qorv::IUIX_Bitmap* i_bitmap) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Count(ULONG* o_count) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Bitmap(ULONG i_index, Qorv::IUIX_Bitmap** o_bitmap) noexcept override;

private:
    std::vector<Qorv::ComPtr<Qorv::IUIX_Bitmap>> m_bitmaps;
};

/// An image as a square of this many pixels: scaled from its smallest bitmap that is large enough, or else its largest.
/// Null for an image without bitmaps made by the host.
Qorv::ComPtr<Bitmap> SquareOf(Qorv::IUIX_Image* i_image, ULONG i_side);

} // namespace DevHost
