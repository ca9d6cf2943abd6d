#pragma once

#include "qorv/Base.h"

#include <string>

// What a script can do with a window's list, combos and menus. Each step returns false if what it needs isn't there
// yet. Rows are known by the text of their first column. Mouse and keys are posted, because they may open a dialog.

namespace DevHost {

/// Clicks the row: it alone is selected.
bool ClickRow(HWND i_window, const std::wstring& i_text);
/// Ctrl-clicks the row, which toggles its selection.
bool ClickRowToo(HWND i_window, const std::wstring& i_text);
/// Double-clicks the row.
bool OpenRow(HWND i_window, const std::wstring& i_text);
/// Clicks the column's header.
bool ClickColumn(HWND i_window, const std::wstring& i_title);
/// Waits until a row's text is being edited in place, and types another text.
bool EditRowText(HWND i_window, const std::wstring& i_text);
/// "NAME TEXT": picks an item of the combo of that name.
bool ChooseItem(HWND i_window, const std::wstring& i_name_and_text);
/// Picks a command from the open menu, or else from the list's own.
bool ChooseCommand(HWND i_window, const std::wstring& i_text);

/// Whether a list in the window is busy: nobody can tell yet what it will show.
bool ShowsBusyList(HWND i_window);

/// Whether a control is a list with this text in, or as part of, one of its cells.
bool ListShowsText(HWND i_control, const std::wstring& i_text);

} // namespace DevHost
