#pragma once

#include "qorv/Base.h"

#include <string>

namespace DevHost {

/// Names a control, so that a script can refer to it: the id of a layout's item, the name of a form's field. Names
/// longer than 255 characters are ignored.
void SetControlName(HWND i_control, const std::wstring& i_name);

/// The visible control with this name in a window; null if there is none.
HWND FindControl(HWND i_window, const std::wstring& i_name);

} // namespace DevHost
