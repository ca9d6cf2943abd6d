#include "script/WindowSteps.h"

#include "script/ListSteps.h"
#include "script/WindowPicture.h"
#include "script/WindowSearch.h"
#include "uix/ControlName.h"
#include "uix/WindowText.h"

#include <algorithm>

namespace DevHost {
namespace {

bool ShowsText(HWND i_window, const std::wstring& i_text) {
    return FindChild(i_window, [&](HWND i_child) {
               return WindowText(i_child).find(i_text) != std::wstring::npos || ListShowsText(i_child, i_text);
           }) != nullptr;
}

HWND FindButton(HWND i_window, const std::wstring& i_caption) {
    const HWND named = FindControl(i_window, i_caption);
    return named != nullptr ? named : FindChild(i_window, [&](HWND i_child) {
        return HasClass(i_child, L"Button") && ReadableCaption(WindowText(i_child)) == i_caption;
    });
}

} // namespace

HWND WindowInUse() {
    return FindTopWindow([](HWND i_window) { // Tool tips, open combos and menus are windows without a title bar.
        RECT place;
        return (GetWindowLongW(i_window, GWL_STYLE) & WS_CAPTION) == WS_CAPTION && IsWindowEnabled(i_window) &&
               GetWindowRect(i_window, &place) && !IsRectEmpty(&place);
    });
}

bool WaitForTitle(HWND i_window, const std::wstring& i_title) {
    return WindowText(i_window).find(i_title) != std::wstring::npos;
}

bool WaitForText(HWND i_window, const std::wstring& i_text) {
    return ShowsText(i_window, i_text);
}

bool WaitUntilGone(HWND i_window, const std::wstring& i_text) {
    return !ShowsBusyList(i_window) && !ShowsText(i_window, i_text);
}

bool WaitForPage(HWND i_window, const std::wstring& i_address) {
    return FindChild(i_window, [&](HWND i_child) {
               return HasClass(i_child, L"QorvHostPage") && WindowText(i_child).starts_with(i_address);
           }) != nullptr;
}

bool FillField(HWND i_window, const std::wstring& i_name_and_text) {
    const std::size_t blank = std::min(i_name_and_text.find(L' '), i_name_and_text.size());
    const HWND field = FindControl(i_window, i_name_and_text.substr(0, blank));
    if (field == nullptr || !IsWindowEnabled(field))
        return false;
    SetFocus(field);
    SendMessageW(field, EM_SETSEL, 0, -1);
    SendMessageW(field, WM_CLEAR, 0, 0);
    for (const wchar_t character : i_name_and_text.substr(std::min(blank + 1, i_name_and_text.size())))
        SendMessageW(field, WM_CHAR, character, 1);
    return true;
}

bool PressButton(HWND i_window, const std::wstring& i_caption) {
    const HWND button = FindButton(i_window, i_caption);
    if (button == nullptr || !IsWindowEnabled(button))
        return false;
    SetFocus(button);
    PostMessageW(button, BM_CLICK, 0, 0);
    return true;
}

bool FocusItem(HWND i_window, const std::wstring& i_name) {
    const HWND control = FindControl(i_window, i_name);
    if (control == nullptr || !IsWindowEnabled(control))
        return false;
    SetFocus(control);
    return true;
}

bool CloseByBox(HWND i_window, const std::wstring& /*i_nothing*/) {
    return PostMessageW(i_window, WM_SYSCOMMAND, SC_CLOSE, 0) != FALSE;
}

bool TakePicture(HWND i_window, const std::wstring& i_path) {
    SaveWindowPicture(i_window, i_path);
    return true;
}

} // namespace DevHost
