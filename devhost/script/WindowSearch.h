#pragma once

#include "qorv/Base.h"

#include <functional>
#include <string_view>

namespace DevHost {

/// The first visible top-level window of this thread, from the foremost back, that is accepted. Null for none.
HWND FindTopWindow(const std::function<bool(HWND)>& i_accepts);

/// The same among the controls of a window, and theirs.
HWND FindChild(HWND i_window, const std::function<bool(HWND)>& i_accepts);

/// Whether a window is of this class, as in `CreateWindow`.
bool HasClass(HWND i_window, std::wstring_view i_class);

} // namespace DevHost
