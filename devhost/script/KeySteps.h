#pragma once

#include "qorv/Base.h"

#include <string>

// The keyboard of a script. Keys go where the focus is, or to the window when the focus is outside of it.

namespace DevHost {

/// Presses a key: "Tab", "F5", "Ctrl+A", "Ctrl+Shift+Home". Its modifiers stay down until `ReleaseModifiers`. Throws a
/// `Failure` for a key that there is not.
bool PressKey(HWND i_window, const std::wstring& i_name);

/// Types a text, character by character.
bool TypeText(HWND i_window, const std::wstring& i_text);

/// To be called when the messages of the last key have been handled: the program sees Shift, Ctrl and Alt up again.
void ReleaseModifiers() noexcept;

} // namespace DevHost
