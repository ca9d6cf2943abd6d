#pragma once

#include "qorv/Uix.h"

#include <span>

namespace DevHost {

/// Shows a menu at a screen position and waits. Returns the chosen command's id, 0 for none. Throws a `Failure`.
LONG ChooseFromMenu(HWND i_owner, POINT i_place, std::span<const Qorv::UIX_Command> i_commands);

} // namespace DevHost
