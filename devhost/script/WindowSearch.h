#pragma once

#include "qorv/Base.h"

#include <functional>
#include <string_view>

namespace DevHost {

/// The foremost visible top-level window of this thread that is accepted; null if there is none.
HWND FindTopWindow(const std::function<bool(HWND)>& i_accepts);

/// The same for a window's controls and their children.
HWND FindChild(HWND i_window, const std::function<bool(HWND)>& i_accepts);

/// Whether a window is of this class, as in `CreateWindow`.
bool HasClass(HWND i_window, std::wstring_view i_class);

} // namespace DevHost
