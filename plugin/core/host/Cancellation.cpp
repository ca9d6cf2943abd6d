#include "core/host/Cancellation.h"

#include "core/trace/Trace.h"

bool IsCanceled(Qorv::IQorv_CancelFlag* i_cancel_flag) noexcept {
    TRACE_FUNCTION();
    VARIANT_BOOL is_canceled = VARIANT_FALSE;
    return i_cancel_flag != nullptr && SUCCEEDED(i_cancel_flag->get_IsCanceled(&is_canceled)) &&
           is_canceled != VARIANT_FALSE;
}
