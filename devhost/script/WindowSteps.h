#pragma once

#include "qorv/Base.h"

#include <string>

// What a script can do with a window and its simple controls. Each step returns false if what it needs isn't there yet.

namespace DevHost {

/// The window that a person can use now: the foremost visible, enabled window of the thread with a title bar. Null if
/// there is none.
HWND WindowInUse();

bool WaitForTitle(HWND i_window, const std::wstring& i_title);
/// Waits until a control or a list's row shows the text, perhaps as part of a longer one.
bool WaitForText(HWND i_window, const std::wstring& i_text);
/// Waits until no control and no row shows the text any more.
bool WaitUntilGone(HWND i_window, const std::wstring& i_text);
/// Waits until the browser shows a page whose address begins like this.
bool WaitForPage(HWND i_window, const std::wstring& i_address);
/// "NAME TEXT": types a text into the field of that name, replacing its content.
bool FillField(HWND i_window, const std::wstring& i_name_and_text);
/// Clicks the button or link with that caption, or the item with that id.
bool PressButton(HWND i_window, const std::wstring& i_caption);
/// Gives the focus to the item with that id.
bool FocusItem(HWND i_window, const std::wstring& i_name);
/// Closes the window by its close box.
bool CloseByBox(HWND i_window, const std::wstring& i_nothing);
/// Takes a picture of the window to a file.
bool TakePicture(HWND i_window, const std::wstring& i_path);

} // namespace DevHost
