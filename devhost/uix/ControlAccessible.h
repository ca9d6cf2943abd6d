#pragma once

#include "qorv/Base.h"

#include <string>

namespace DevHost {

/// Answers WM_GETOBJECT for a control with what the platform says of it, but with this name and role (one of
/// ROLE_SYSTEM_), so that a screen reader can tell what the control is for. 0 if it can't be answered.
LRESULT AnswerScreenReader(HWND i_control, WPARAM i_wparam, const std::wstring& i_name, LONG i_role);

} // namespace DevHost
