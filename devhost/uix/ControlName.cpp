#include "uix/ControlName.h"

namespace DevHost {
namespace {

// Holds the name's atom. Names come from a few layouts and pages, so atoms are never freed.
constexpr wchar_t property[] = L"QorvHostControlName";

struct Search {
    ATOM name;
    HWND found;
};

BOOL CALLBACK Look(HWND i_control, LPARAM i_search) {
    auto* const search = reinterpret_cast<Search*>(i_search);
    if (reinterpret_cast<UINT_PTR>(GetPropW(i_control, property)) == search->name && IsWindowVisible(i_control))
        search->found = i_control;
    return search->found == nullptr;
}

} // namespace

void SetControlName(HWND i_control, const std::wstring& i_name) {
    if (const ATOM name = AddAtomW(i_name.c_str()))
        SetPropW(i_control, property, reinterpret_cast<HANDLE>(UINT_PTR{name}));
}

HWND FindControl(HWND i_window, const std::wstring& i_name) {
    Search search{FindAtomW(i_name.c_str()), nullptr};
    if (search.name != 0)
        EnumChildWindows(i_window, Look, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

} // namespace DevHost
