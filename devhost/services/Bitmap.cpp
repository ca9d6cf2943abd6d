#include "services/Bitmap.h"

#include "services/Failure.h"

#include <shlwapi.h>
#include <wincodec.h>

namespace DevHost {
namespace {

using Qorv::ComPtr;

// An icon is small: a picture beyond this is a damaged or hostile one.
constexpr UINT max_side = 4096;

ComPtr<IWICBitmapSource> DecodeFirstFrame(IWICImagingFactory* i_factory, const std::string& i_bytes) {
    ComPtr<IStream> stream;
    stream.Attach(SHCreateMemStream(reinterpret_cast<const BYTE*>(i_bytes.data()), static_cast<UINT>(i_bytes.size())));
    if (stream == nullptr)
        throw std::bad_alloc();
    constexpr wchar_t what[] = L"Cannot decode a picture";
    ComPtr<IWICBitmapDecoder> decoder;
    Check(i_factory->CreateDecoder(GUID_ContainerFormatPng, nullptr, &decoder), what);
    Check(decoder->Initialize(stream, WICDecodeMetadataCacheOnDemand), what);
    ComPtr<IWICBitmapFrameDecode> frame;
    Check(decoder->GetFrame(0, &frame), what);
    ComPtr<IWICFormatConverter> converter;
    Check(i_factory->CreateFormatConverter(&converter), what);
    Check(converter->Initialize(frame, GUID_WICPixelFormat32bppPBGRA, WICBitmapDitherTypeNone, nullptr, 0,
                                WICBitmapPaletteTypeCustom),
          what);
    return converter;
}

} // namespace

ComPtr<Bitmap> Bitmap::FromPng(const std::string& i_bytes) {
    ComPtr<IWICImagingFactory> factory;
    Check(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IWICImagingFactory),
                           reinterpret_cast<void**>(&factory)),
          L"Cannot reach the system's picture decoders");
    const ComPtr<IWICBitmapSource> source = DecodeFirstFrame(factory, i_bytes);
    UINT width = 0;
    UINT height = 0;
    Check(source->GetSize(&width, &height), L"Cannot decode a picture");
    if (width == 0 || height == 0 || width > max_side || height > max_side)
        throw Failure(E_INVALIDARG, L"A picture has an unusable size");
    std::vector<std::uint32_t> pixels(size_t{width} * height);
    const UINT row_size = width * UINT{sizeof(pixels[0])};
    Check(source->CopyPixels(nullptr, row_size, row_size * height, reinterpret_cast<BYTE*>(pixels.data())),
          L"Cannot decode a picture");
    return Qorv::Create<Bitmap>(ULONG{width}, ULONG{height}, std::move(pixels));
}

HRESULT STDMETHODCALLTYPE Bitmap::get_Width(ULONG* o_pixels) noexcept {
    if (o_pixels == nullptr)
        return E_POINTER;
    *o_pixels = m_width;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Bitmap::get_Height(ULONG* o_pixels) noexcept {
    if (o_pixels == nullptr)
        return E_POINTER;
    *o_pixels = m_height;
    return S_OK;
}

} // namespace DevHost
