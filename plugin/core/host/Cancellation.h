#pragma once

#include "qorv/Host.h"

/// Whether the caller of an operation has given up. No flag, or one that cannot tell, means that it has not.
bool IsCanceled(Qorv::IQorv_CancelFlag* i_cancel_flag) noexcept;
