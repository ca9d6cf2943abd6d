#pragma once

#include "qorv/Base.h"

namespace Ui {

// What a dialog posts to its own window. The first parameter is the number of the load or the task.
inline constexpr UINT folder_loaded_message = WM_APP + 1;
inline constexpr UINT task_done_message = WM_APP + 2;

} // namespace Ui
