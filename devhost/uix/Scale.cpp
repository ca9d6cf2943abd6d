#include "uix/Scale.h"

#include "base/Failure.h"

#include <cmath>

namespace DevHost {
namespace {

constexpr double points_per_inch = 72;

} // namespace

Scale Scale::OfScreen() noexcept {
    const HDC screen = GetDC(nullptr);
    const int dots_per_inch = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(nullptr, screen);
    return Scale(dots_per_inch > 0 ? dots_per_inch : units_per_inch);
}

RECT Scale::Pixels(const RECT& i_units) const noexcept {
    return {Pixels(static_cast<int>(i_units.left)), Pixels(static_cast<int>(i_units.top)),
            Pixels(static_cast<int>(i_units.right)), Pixels(static_cast<int>(i_units.bottom))};
}

Font Scale::MakeFont(const std::wstring& i_name, double i_points, int i_weight) const {
    LOGFONTW description{};
    description.lfHeight = -static_cast<LONG>(std::lround(i_points * m_dots_per_inch / points_per_inch));
    description.lfWeight = i_weight;
    description.lfCharSet = DEFAULT_CHARSET;
    description.lfQuality = CLEARTYPE_QUALITY;
    i_name.copy(description.lfFaceName, LF_FACESIZE - 1);
    Font font(CreateFontIndirectW(&description));
    if (font == nullptr)
        throw LastErrorFailure(L"Cannot make a font");
    return font;
}

} // namespace DevHost
