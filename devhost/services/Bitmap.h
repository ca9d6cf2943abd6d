#pragma once

#include "qorv/CoClass.h"
#include "qorv/Uix.h"

#include <cstdint>
#include <string>
#include <vector>

namespace DevHost {

/// A decoded picture: 32 bits a pixel, blue first, colours multiplied by the opacity, rows from the top.
class Bitmap final : public Qorv::CoClass<Bitmap, Qorv::IUIX_Bitmap> {
public:
    /// Decodes a PNG. Throws a `Failure` for anything else. The calling thread must have initialized COM.
    static Qorv::ComPtr<Bitmap> FromPng(const std::string& i_bytes);

    static constexpr IID ClassId = {0x2f1f4c2d, 0x6a5b, 0x4d0e, {0x8b, 0x57, 0xd3, 0x0c, 0x9e, 0x41, 0x76, 0xa8}};

    Bitmap(ULONG i_width, ULONG i_height, std::vector<std::uint32_t> i_pixels)
        : m_width(i_width), m_height(i_height), m_pixels(std::move(i_pixels)) {}

    HRESULT STDMETHODCALLTYPE get_Width(ULONG* o_pixels) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Height(ULONG* o_pixels) noexcept override;

    ULONG Width() const noexcept { return m_width; }
    ULONG Height() const noexcept { return m_height; }
    const std::vector<std::uint32_t>& Pixels() const noexcept { return m_pixels; }

    /// The same picture in another size, neither side 0: each pixel is the mean of what it covers.
    Qorv::ComPtr<Bitmap> Scaled(ULONG i_width, ULONG i_height) const;

private:
    ULONG m_width;
    ULONG m_height;
    std::vector<std::uint32_t> m_pixels;
};

} // namespace DevHost
