#include "services/Bitmap.h"

#include "base/Failure.h"

#include <shlwapi.h>
#include <wincodec.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace DevHost {
namespace {

using Qorv::ComPtr;

// Icons are small: a larger picture is damaged or hostile.
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

/// How much of each source pixel goes into a target pixel, along one axis.
struct Share {
    ULONG source;
    double part;
};

std::vector<Share> SharesOf(ULONG i_target, ULONG i_target_length, ULONG i_source_length) {
    const double step = static_cast<double>(i_source_length) / i_target_length;
    const double begin = i_target * step;
    const double end = std::min(begin + step, static_cast<double>(i_source_length));
    std::vector<Share> shares;
    for (auto source = static_cast<ULONG>(begin); source < end; ++source)
        shares.push_back({source, (std::min(end, source + 1.0) - std::max(begin, static_cast<double>(source))) / step});
    return shares;
}

std::uint32_t Mean(const Bitmap& i_source, const std::vector<Share>& i_columns, const std::vector<Share>& i_rows) {
    constexpr int channel_bits = 8;
    constexpr std::uint32_t channel_mask = 0xff;
    std::array<double, 4> sums{};
    for (const Share& row : i_rows)
        for (const Share& column : i_columns) {
            std::uint32_t pixel = i_source.Pixels()[std::size_t{row.source} * i_source.Width() + column.source];
            for (double& sum : sums) {
                sum += (pixel & channel_mask) * row.part * column.part;
                pixel >>= channel_bits;
            }
        }
    std::uint32_t mean = 0;
    for (std::size_t channel = sums.size(); channel-- > 0;)
        mean = mean << channel_bits | std::min(static_cast<std::uint32_t>(std::lround(sums[channel])), channel_mask);
    return mean;
}

} // namespace

ComPtr<Bitmap> Bitmap::Scaled(ULONG i_width, ULONG i_height) const {
    std::vector<std::vector<Share>> columns;
    columns.reserve(i_width);
    for (ULONG x = 0; x < i_width; ++x)
        columns.push_back(SharesOf(x, i_width, m_width));
    std::vector<std::uint32_t> pixels;
    pixels.reserve(std::size_t{i_width} * i_height);
    for (ULONG y = 0; y < i_height; ++y) {
        const std::vector<Share> rows = SharesOf(y, i_height, m_height);
        for (const std::vector<Share>& column : columns)
            pixels.push_back(Mean(*this, column, rows));
    }
    return Qorv::Create<Bitmap>(i_width, i_height, std::move(pixels));
}

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
    std::vector<std::uint32_t> pixels(std::size_t{width} * height);
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
