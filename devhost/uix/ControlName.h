#pragma once

#include "qorv/Base.h"

#include <string>

namespace DevHost {

/// Names a control, so that a script can speak of it: the id of a layout's item, the name of a form's field. Names of
/// more than 255 characters are left out.
void SetControlName(HWND i_control, const std::wstring& i_name);

/// The control of this name in a window, null when there is none that can be seen.
HWND FindControl(HWND i_window, const std::wstring& i_name);

} // namespace DevHost
