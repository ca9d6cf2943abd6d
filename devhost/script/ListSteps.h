#pragma once

#include "qorv/Base.h"

#include <string>

// What a script can do with a window's list, its combos and menus. Each is done, or answers false when what it needs is
// not there yet. Rows are known by the text of their first column. Mouse and keys are posted: what they lead to may be
// a dialog.

namespace DevHost {

/// Clicks the row: it alone is selected.
bool ClickRow(HWND i_window, const std::wstring& i_text);
/// Clicks the row with Ctrl down: it is selected besides the others, or no longer.
bool ClickRowToo(HWND i_window, const std::wstring& i_text);
/// Clicks the row twice.
bool OpenRow(HWND i_window, const std::wstring& i_text);
/// Clicks the head of the column.
bool ClickColumn(HWND i_window, const std::wstring& i_title);
/// Waits until a row's text can be edited in place, and types another one.
bool EditRowText(HWND i_window, const std::wstring& i_text);
/// "NAME TEXT": picks an item of the combo of that name.
bool ChooseItem(HWND i_window, const std::wstring& i_name_and_text);
/// Picks a command of the menu that is open, or else of the list's own.
bool ChooseCommand(HWND i_window, const std::wstring& i_text);

/// Whether a control is a list and has this text in one of its cells, or a part of it.
bool ListShowsText(HWND i_control, const std::wstring& i_text);

} // namespace DevHost
