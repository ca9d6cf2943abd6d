#include "ui/list/CountText.h"

#include "core/trace/Trace.h"
#include "qorv/Base.h"

#include <array>

namespace Ui {
namespace {

/// One of the user's numbers settings; empty where there is none.
std::wstring Setting(LCTYPE i_type) {
    TRACE_FUNCTION();
    std::array<wchar_t, 16> text{};
    GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, i_type, text.data(), static_cast<int>(text.size()));
    return text.data();
}

} // namespace

std::wstring CountText(std::size_t i_count) {
    TRACE_FUNCTION();
    const std::wstring digits = std::to_wstring(i_count);
    std::wstring separator = Setting(LOCALE_STHOUSAND);
    std::wstring point = Setting(LOCALE_SDECIMAL);
    // The system's own settings ask for decimals, so the form is given. "3;2;0" groups as in India, all others by
    // three.
    const bool is_indian = Setting(LOCALE_SGROUPING).starts_with(L"3;2");
    const NUMBERFMTW format{.NumDigits = 0,
                            .LeadingZero = 1,
                            .Grouping = is_indian ? 32U : 3U,
                            .lpDecimalSep = point.data(),
                            .lpThousandSep = separator.data(),
                            .NegativeOrder = 1};
    std::array<wchar_t, 64> text{};
    const int length = GetNumberFormatEx(LOCALE_NAME_USER_DEFAULT, 0, digits.c_str(), &format, text.data(),
                                         static_cast<int>(text.size()));
    return length > 0 ? text.data() : digits;
}

} // namespace Ui
