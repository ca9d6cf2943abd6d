#pragma once

#include "qorv/Base.h"

// The host's UI service ("UIX"), as far as plug-ins need it. Main thread only.

namespace Qorv {

/// One decoded picture.
struct IUIX_Bitmap : IUnknown {
    static constexpr IID Id = {0xbfec748b, 0x3215, 0x42c6, {0xbb, 0x93, 0x21, 0x7e, 0xf9, 0x3e, 0x69, 0xe2}};
    virtual HRESULT STDMETHODCALLTYPE get_Width(ULONG* o_pixels) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Height(ULONG* o_pixels) = 0;
};

/// One picture in several sizes.
struct IUIX_Image : IUnknown {
    static constexpr IID Id = {0x60fb3224, 0xc9ee, 0x40a4, {0xaa, 0x8b, 0xd8, 0x93, 0x8d, 0x7d, 0x72, 0x24}};
    virtual HRESULT STDMETHODCALLTYPE AddBitmap(IUIX_Bitmap* i_bitmap) = 0;
    /// How many bitmaps were added.
    virtual HRESULT STDMETHODCALLTYPE get_Count(ULONG* o_count) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_Bitmap(ULONG i_index, IUIX_Bitmap** o_bitmap) = 0;
};

/// The service itself.
struct IUIX_Inst : IUnknown {
    static constexpr IID Id = {0x3de0ecb5, 0x31ef, 0x404a, {0xbf, 0xfa, 0x49, 0x25, 0x78, 0x1a, 0x84, 0xba}};
    /// A new image without bitmaps, for the resources of the given ids.
    virtual HRESULT STDMETHODCALLTYPE CreateImage(const ULONG* i_ids, ULONG i_count, IUIX_Image** o_image) = 0;
    /// Decodes a PNG; the stream is read from its position to its end and not kept.
    virtual HRESULT STDMETHODCALLTYPE CreateBitmapFromStream(IStream* i_stream, IUIX_Bitmap** o_bitmap) = 0;
};

} // namespace Qorv
