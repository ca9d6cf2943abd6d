#include "ui/list/NaturalOrder.h"

#include "core/trace/Trace.h"
#include "qorv/Base.h"

#include <array>

namespace Ui {
namespace {

/// `o_key` may be null with size 0: then the needed size is returned. 0 when it fails.
int MapToSortKey(std::wstring_view i_title, char* o_key, std::size_t i_size) noexcept {
    TRACE_FUNCTION();
    // Hyphens count like other characters (string sort): "a-1" and "a-2" stay together, not among "a1" and "a2".
    constexpr DWORD flags = LCMAP_SORTKEY | NORM_IGNORECASE | SORT_DIGITSASNUMBERS | SORT_STRINGSORT;
    // The platform writes bytes here, and takes the size in bytes, although its argument is a text.
    return LCMapStringEx(LOCALE_NAME_INVARIANT, flags, i_title.data(), static_cast<int>(i_title.size()),
                         reinterpret_cast<LPWSTR>(o_key), static_cast<int>(i_size), nullptr, nullptr, 0);
}

/// Empty for a text that the platform cannot map.
std::string PlatformSortKey(std::wstring_view i_title) {
    TRACE_FUNCTION();
    std::array<char, 2048> key; // Enough for any usual title: asking for the size first would take twice the time.
    if (const int size = MapToSortKey(i_title, key.data(), key.size()); size > 0)
        return {key.data(), static_cast<std::size_t>(size)};
    std::string long_key(static_cast<std::size_t>(MapToSortKey(i_title, nullptr, 0)), '\0');
    if (!long_key.empty())
        MapToSortKey(i_title, long_key.data(), long_key.size());
    return long_key;
}

} // namespace

std::string NaturalSortKey(std::wstring_view i_title) {
    TRACE_FUNCTION();
    std::string key = PlatformSortKey(i_title);
    key.append(reinterpret_cast<const char*>(i_title.data()), i_title.size() * sizeof(wchar_t));
    return key;
}

} // namespace Ui
