#pragma once

#include "qorv/Base.h"

namespace DevHost {

/// Where a window of this size goes: in the middle of another rectangle, but wholly in the work area, and never larger
/// than it.
RECT CentredPlace(SIZE i_size, const RECT& i_around, const RECT& i_work_area) noexcept;

/// The same for a window with this owner, null for none: around the owner while that can be seen, else around the
/// middle of its screen.
RECT CentredPlace(SIZE i_size, HWND i_owner) noexcept;

} // namespace DevHost
