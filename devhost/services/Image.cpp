#include "services/Image.h"

#include "base/Failure.h"

namespace DevHost {

HRESULT STDMETHODCALLTYPE Image::AddBitmap(Qorv::IUIX_Bitmap* i_bitmap) noexcept {
    if (i_bitmap == nullptr)
        return E_POINTER;
    return Answer([&] { m_bitmaps.emplace_back(i_bitmap); });
}

HRESULT STDMETHODCALLTYPE Image::get_Count(ULONG* o_count) noexcept {
    if (o_count == nullptr)
        return E_POINTER;
    *o_count = static_cast<ULONG>(m_bitmaps.size());
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Image::get_Bitmap(ULONG i_index, Qorv::IUIX_Bitmap** o_bitmap) noexcept {
    if (o_bitmap == nullptr)
        return E_POINTER;
    *o_bitmap = nullptr;
    if (i_index >= m_bitmaps.size())
        return E_INVALIDARG;
    m_bitmaps[i_index].CopyTo(o_bitmap);
    return S_OK;
}

Qorv::ComPtr<Bitmap> SquareOf(Qorv::IUIX_Image* i_image, ULONG i_side) {
    ULONG count = 0;
    i_image->get_Count(&count);
    Qorv::ComPtr<Bitmap> best;
    for (ULONG index = 0; index < count; ++index) {
        Qorv::ComPtr<Qorv::IUIX_Bitmap> bitmap;
        i_image->get_Bitmap(index, &bitmap);
        const auto candidate = Qorv::OwnObject<Bitmap>(bitmap);
        if (candidate == nullptr)
            continue;
        const bool is_better = best == nullptr || (best->Width() < i_side ? candidate->Width() > best->Width()
                                                                          : candidate->Width() >= i_side &&
                                                                                candidate->Width() < best->Width());
        if (is_better)
            best = candidate;
    }
    return best != nullptr ? best->Scaled(i_side, i_side) : nullptr;
}

} // namespace DevHost
