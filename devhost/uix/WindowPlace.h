#pragma once

#include "qorv/Base.h"

namespace DevHost {

/// Where a window of this size goes: centred on another rectangle, but inside the work area, and never larger than it.
RECT CentredPlace(SIZE i_size, const RECT& i_around, const RECT& i_work_area) noexcept;

/// The same for a window with this owner (null for none): centred on the owner while that is visible, else on its
/// screen.
RECT CentredPlace(SIZE i_size, HWND i_owner) noexcept;

} // namespace DevHost
