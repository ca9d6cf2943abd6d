#pragma once

#include "qorv/Host.h"

namespace Ui {

/// The window that a new modal window belongs to: the dialog that the user is in, else the host's main frame; null when
/// there is neither. Main thread.
HWND ModalOwner(Qorv::IQorv_Inst* host_instance) noexcept;

} // namespace Ui
