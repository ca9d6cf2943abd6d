#include "services/Image.h"

#include "services/Failure.h"

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

} // namespace DevHost
