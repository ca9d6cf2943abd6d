#pragma once

#include "qorv/Base.h"

#include <string>

// The keyboard of a script. Keys go to the focus, or to the window if the focus is outside it.

namespace DevHost {

/// Presses a key: "Tab", "F5", "Ctrl+A", "Ctrl+Shift+Home". Its modifiers stay down until `ReleaseModifiers`. Throws a
/// `Failure` for an unknown key.
bool PressKey(HWND i_window, const std::wstring& i_name);

/// Types text, character by character.
bool TypeText(HWND i_window, const std::wstring& i_text);

/// Releases Shift, Ctrl and Alt. Call it when the messages of the last key have been handled.
void ReleaseModifiers() noexcept;

} // namespace DevHost
