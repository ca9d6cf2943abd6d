#pragma once

#include "qorv/Base.h"

#include <memory>
#include <string>

namespace DevHost {

struct DeleteGdiObject {
    void operator()(void* i_object) const noexcept { DeleteObject(i_object); }
};
using Font = std::unique_ptr<HFONT__, DeleteGdiObject>;
using Brush = std::unique_ptr<HBRUSH__, DeleteGdiObject>;

/// From layout units to pixels. A unit is a pixel at 96 dots per inch.
class Scale {
public:
    static constexpr int units_per_inch = 96;

    explicit Scale(int i_dots_per_inch) noexcept : m_dots_per_inch(i_dots_per_inch) {}

    /// The screen's scale, as the system reports it to this process.
    static Scale OfScreen() noexcept;

    int Pixels(int i_units) const noexcept { return MulDiv(i_units, m_dots_per_inch, units_per_inch); }

    /// Scales each edge separately, so that what is aligned in units is aligned in pixels.
    RECT Pixels(const RECT& i_units) const noexcept;

    /// `i_weight` is one of FW_. Throws a `Failure` if the system cannot create the font.
    Font MakeFont(const std::wstring& i_name, double i_points, int i_weight = FW_NORMAL) const;

private:
    int m_dots_per_inch;
};

} // namespace DevHost
