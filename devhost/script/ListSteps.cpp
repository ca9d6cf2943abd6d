#include "script/ListSteps.h"

#include "script/WindowSearch.h"
#include "uix/ControlName.h"
#include "uix/List.h"
#include "uix/WindowText.h"

#include <algorithm>
#include <array>
#include <commctrl.h>
#include <optional>

namespace DevHost {
namespace {

constexpr wchar_t list_class[] = L"SysListView32"; // Not WC_LISTVIEW: its type depends on a macro.
constexpr wchar_t menu_class[] = L"#32768";

std::wstring CellText(HWND i_list, int i_row, int i_column) {
    std::array<wchar_t, 1024> text{};
    LVITEMW cell{};
    cell.iSubItem = i_column;
    cell.pszText = text.data();
    cell.cchTextMax = int{text.size()};
    SendMessageW(i_list, LVM_GETITEMTEXTW, static_cast<WPARAM>(i_row), reinterpret_cast<LPARAM>(&cell));
    return cell.pszText != nullptr ? cell.pszText : L"";
}

int RowCount(HWND i_list) {
    return static_cast<int>(SendMessageW(i_list, LVM_GETITEMCOUNT, 0, 0));
}

HWND HeadOf(HWND i_list) {
    return reinterpret_cast<HWND>(SendMessageW(i_list, LVM_GETHEADER, 0, 0));
}

int ColumnCount(HWND i_list) {
    const HWND head = HeadOf(i_list);
    return head != nullptr ? static_cast<int>(SendMessageW(head, HDM_GETITEMCOUNT, 0, 0)) : 1;
}

/// The window's list; null while it cannot be used.
HWND UsableList(HWND i_window) {
    const HWND list = FindChild(i_window, [](HWND i_child) { return HasClass(i_child, list_class); });
    return list != nullptr && IsWindowEnabled(list) && !IsListBusy(list) ? list : nullptr;
}

std::optional<int> FindRow(HWND i_list, const std::wstring& i_text) {
    for (int row = 0, count = RowCount(i_list); row < count; ++row)
        if (CellText(i_list, row, 0) == i_text)
            return row;
    return std::nullopt;
}

void PostMouse(HWND i_control, UINT i_message, WPARAM i_keys, const RECT& i_place) {
    const LONG x = i_place.left + std::min(4L, (i_place.right - i_place.left) / 2);
    const LONG y = (i_place.top + i_place.bottom) / 2;
    PostMessageW(i_control, i_message, i_keys, MAKELPARAM(x, y));
}

void PostClick(HWND i_control, WPARAM i_keys, const RECT& i_place) {
    PostMouse(i_control, WM_LBUTTONDOWN, MK_LBUTTON | i_keys, i_place);
    PostMouse(i_control, WM_LBUTTONUP, i_keys, i_place);
}

/// Scrolls to a row and returns the rectangle of its text; nothing while there is no such row.
std::optional<RECT> ShowRow(HWND i_list, const std::wstring& i_text) {
    const std::optional<int> row = i_list != nullptr ? FindRow(i_list, i_text) : std::nullopt;
    if (!row)
        return std::nullopt;
    SendMessageW(i_list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(*row), FALSE);
    RECT place{LVIR_LABEL, 0, 0, 0};
    if (SendMessageW(i_list, LVM_GETITEMRECT, static_cast<WPARAM>(*row), reinterpret_cast<LPARAM>(&place)) == FALSE)
        return std::nullopt;
    return place;
}

bool ClickRowWith(HWND i_window, const std::wstring& i_text, WPARAM i_keys) {
    const HWND list = UsableList(i_window);
    const std::optional<RECT> place = ShowRow(list, i_text);
    if (place)
        PostClick(list, i_keys, *place);
    return place.has_value();
}

std::wstring ColumnTitle(HWND i_head, int i_column) {
    std::array<wchar_t, 256> text{};
    HDITEMW item{};
    item.mask = HDI_TEXT;
    item.pszText = text.data();
    item.cchTextMax = int{text.size()};
    SendMessageW(i_head, HDM_GETITEMW, static_cast<WPARAM>(i_column), reinterpret_cast<LPARAM>(&item));
    return text.data();
}

HMENU OpenMenu() {
    const HWND menu = FindTopWindow([](HWND i_window) { return HasClass(i_window, menu_class); });
    return menu != nullptr ? reinterpret_cast<HMENU>(SendMessageW(menu, MN_GETHMENU, 0, 0)) : nullptr;
}

MENUITEMINFOW MenuItem(HMENU i_menu, UINT i_position, std::array<wchar_t, 256>& o_text) {
    MENUITEMINFOW item{};
    item.cbSize = sizeof(item);
    item.fMask = MIIM_FTYPE | MIIM_STATE | MIIM_STRING;
    item.dwTypeData = o_text.data();
    item.cch = static_cast<UINT>(o_text.size());
    GetMenuItemInfoW(i_menu, i_position, TRUE, &item);
    return item;
}

/// How many presses of Down lead from the first command to the one with this text; nothing if it cannot be chosen.
std::optional<int> StepsDown(HMENU i_menu, const std::wstring& i_text) {
    int steps = 0;
    for (UINT position = 0, count = static_cast<UINT>(GetMenuItemCount(i_menu)); position < count; ++position) {
        std::array<wchar_t, 256> text{};
        const MENUITEMINFOW item = MenuItem(i_menu, position, text);
        if ((item.fType & MFT_SEPARATOR) != 0)
            continue;
        if (ReadableCaption(text.data()) == i_text)
            return (item.fState & MFS_DISABLED) == 0 ? std::optional(steps) : std::nullopt;
        ++steps;
    }
    return std::nullopt;
}

} // namespace

bool ClickRow(HWND i_window, const std::wstring& i_text) {
    return ClickRowWith(i_window, i_text, 0);
}

bool ClickRowToo(HWND i_window, const std::wstring& i_text) {
    return ClickRowWith(i_window, i_text, MK_CONTROL);
}

bool OpenRow(HWND i_window, const std::wstring& i_text) {
    const HWND list = UsableList(i_window);
    const std::optional<RECT> place = ShowRow(list, i_text);
    if (!place)
        return false;
    PostClick(list, 0, *place);
    PostMouse(list, WM_LBUTTONDBLCLK, MK_LBUTTON, *place);
    PostMouse(list, WM_LBUTTONUP, 0, *place);
    return true;
}

bool ClickColumn(HWND i_window, const std::wstring& i_title) {
    const HWND list = UsableList(i_window);
    const HWND head = list != nullptr ? HeadOf(list) : nullptr;
    for (int column = 0; head != nullptr && column < ColumnCount(list); ++column) {
        if (ColumnTitle(head, column) != i_title)
            continue;
        RECT place{};
        SendMessageW(head, HDM_GETITEMRECT, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(&place));
        InflateRect(&place, -(place.right - place.left) / 3, 0); // Its edges resize the columns.
        PostClick(head, 0, place);
        return true;
    }
    return false;
}

bool EditRowText(HWND i_window, const std::wstring& i_text) {
    const HWND list = UsableList(i_window);
    const HWND edit = list != nullptr ? reinterpret_cast<HWND>(SendMessageW(list, LVM_GETEDITCONTROL, 0, 0)) : nullptr;
    if (edit == nullptr)
        return false;
    SendMessageW(edit, EM_SETSEL, 0, -1);
    for (const wchar_t character : i_text)
        PostMessageW(edit, WM_CHAR, character, 1);
    return true;
}

bool ChooseItem(HWND i_window, const std::wstring& i_name_and_text) {
    const std::size_t blank = std::min(i_name_and_text.find(L' '), i_name_and_text.size());
    const std::wstring text = i_name_and_text.substr(std::min(blank + 1, i_name_and_text.size()));
    const HWND combo = FindControl(i_window, i_name_and_text.substr(0, blank));
    if (combo == nullptr || !IsWindowEnabled(combo))
        return false;
    const LRESULT index = SendMessageW(combo, CB_FINDSTRINGEXACT, WPARAM(-1), reinterpret_cast<LPARAM>(text.c_str()));
    COMBOBOXINFO info{};
    info.cbSize = sizeof(info);
    if (index == CB_ERR || GetComboBoxInfo(combo, &info) == FALSE)
        return false;
    SetFocus(combo);
    SendMessageW(combo, CB_SHOWDROPDOWN, TRUE, 0);
    SendMessageW(info.hwndList, LB_SETTOPINDEX, static_cast<WPARAM>(index), 0);
    RECT place{};
    SendMessageW(info.hwndList, LB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&place));
    PostClick(info.hwndList, 0, place);
    return true;
}

bool ChooseCommand(HWND i_window, const std::wstring& i_text) {
    const HMENU menu = OpenMenu();
    const HWND list = UsableList(i_window);
    if (menu == nullptr) {
        constexpr LPARAM by_keyboard = -1;
        if (list != nullptr)
            PostMessageW(list, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(list), by_keyboard);
        return false;
    }
    const std::optional<int> steps = StepsDown(menu, i_text);
    if (!steps)
        return false;
    PostMessageW(i_window, WM_KEYDOWN, VK_HOME, 1);
    for (int step = 0; step < *steps; ++step)
        PostMessageW(i_window, WM_KEYDOWN, VK_DOWN, 1);
    PostMessageW(i_window, WM_KEYDOWN, VK_RETURN, 1);
    return true;
}

bool ShowsBusyList(HWND i_window) {
    return FindChild(i_window, IsListBusy) != nullptr;
}

bool ListShowsText(HWND i_control, const std::wstring& i_text) {
    if (!HasClass(i_control, list_class) || IsListBusy(i_control))
        return false; // A busy list's rows are about to be replaced.
    const int columns = ColumnCount(i_control);
    for (int row = 0, count = RowCount(i_control); row < count; ++row)
        for (int column = 0; column < columns; ++column)
            if (CellText(i_control, row, column).find(i_text) != std::wstring::npos)
                return true;
    return false;
}

} // namespace DevHost
