#pragma once

#include "qorv/Base.h"

#include <string>

// What a script can do with a window and its simple controls. Each is done, or answers false when what it needs is not
// there yet.

namespace DevHost {

/// The window that a person can use now: of the thread's visible and enabled ones with a title bar the foremost. Null
/// for none.
HWND WindowInUse();

bool WaitForTitle(HWND i_window, const std::wstring& i_title);
/// Waits for a text of a control or of a list's row, or a part of it.
bool WaitForText(HWND i_window, const std::wstring& i_text);
/// Waits until no control and no row shows the text any more.
bool WaitUntilGone(HWND i_window, const std::wstring& i_text);
/// Waits until the browser shows a page whose address begins so.
bool WaitForPage(HWND i_window, const std::wstring& i_address);
/// "NAME TEXT": types a text into the field of that name, in place of what is there.
bool FillField(HWND i_window, const std::wstring& i_name_and_text);
/// Clicks the button or link of that caption, or item of that id.
bool PressButton(HWND i_window, const std::wstring& i_caption);
/// Gives the focus to the item of that id.
bool FocusItem(HWND i_window, const std::wstring& i_name);
/// Closes the window by its close box.
bool CloseByBox(HWND i_window, const std::wstring& i_nothing);
/// Takes a picture of the window to a file.
bool TakePicture(HWND i_window, const std::wstring& i_path);

} // namespace DevHost
