#include "ui/names/TitleMatch.h"

#include "core/trace/Trace.h"
#include "qorv/Base.h"

namespace Ui {

bool IsSameTitle(std::wstring_view i_left, std::wstring_view i_right) noexcept {
    TRACE_FUNCTION();
    return i_left.size() == i_right.size() &&
           CompareStringOrdinal(i_left.data(), static_cast<int>(i_left.size()), i_right.data(),
                                static_cast<int>(i_right.size()), TRUE) == CSTR_EQUAL;
}

std::wstring TitleKey(std::wstring_view i_title) {
    TRACE_FUNCTION();
    std::wstring key(i_title.size(), L'\0');
    const int length = static_cast<int>(i_title.size());
    if (length > 0 && LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, i_title.data(), length, key.data(), length,
                                    nullptr, nullptr, 0) != length)
        key = i_title;
    return key;
}

} // namespace Ui
