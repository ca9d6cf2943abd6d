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

    Bitmap(ULONG i_width, ULONG i_height, std::vector<std::uint32_t> i_pixels)
        : m_width(i_width), m_height(i_height), m_pixels(std::move(i_pixels)) {}

    HRESULT STDMETHODCALLTYPE get_Width(ULONG* o_pixels) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Height(ULONG* o_pixels) noexcept override;

    const std::vector<std::uint32_t>& Pixels() const noexcept { return m_pixels; }

private:
    ULONG m_width;
    ULONG m_height;
    std::vector<std::uint32_t> m_pixels;
};

} // namespace DevHost
