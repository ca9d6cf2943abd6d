#include "script/WindowSearch.h"

#include "base/Unicode.h"

#include <array>

namespace DevHost {
namespace {

struct Search {
    const std::function<bool(HWND)>& accepts;
    HWND found = nullptr;
};

BOOL CALLBACK Look(HWND i_window, LPARAM i_search) {
    auto* const search = reinterpret_cast<Search*>(i_search);
    if (IsWindowVisible(i_window) && search->accepts(i_window))
        search->found = i_window;
    return search->found == nullptr;
}

} // namespace

HWND FindTopWindow(const std::function<bool(HWND)>& i_accepts) {
    Search search{i_accepts};
    EnumThreadWindows(GetCurrentThreadId(), Look, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

HWND FindChild(HWND i_window, const std::function<bool(HWND)>& i_accepts) {
    Search search{i_accepts};
    EnumChildWindows(i_window, Look, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

bool HasClass(HWND i_window, std::wstring_view i_class) {
    std::array<wchar_t, 64> name{};
    const int length = GetClassNameW(i_window, name.data(), int{name.size()});
    return EqualIgnoringCase({name.data(), static_cast<std::size_t>(length)}, i_class);
}

} // namespace DevHost
