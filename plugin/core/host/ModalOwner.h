#pragma once

#include "qorv/Host.h"

namespace Ui {

/// The window that should own a new modal window: the dialog that the user is working in, otherwise the host's main
/// frame. Null when there is neither. Main thread.
HWND ModalOwner(Qorv::IQorv_Inst* host_instance) noexcept;

} // namespace Ui
