#include "core/host/Cancellation.h"

#include "core/trace/Check.h"

bool IsCanceled(Qorv::IQorv_CancelFlag* i_cancel_flag) noexcept {
    TRACE_FUNCTION();
    VARIANT_BOOL is_canceled = VARIANT_FALSE;
    return i_cancel_flag != nullptr && SUCCEEDED(i_cancel_flag->get_IsCanceled(&is_canceled)) &&
           is_canceled != VARIANT_FALSE;
}

HRESULT STDMETHODCALLTYPE CanceledFlag::get_IsCanceled(VARIANT_BOOL* o_is_canceled) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(o_is_canceled != nullptr, E_POINTER);
    *o_is_canceled = VARIANT_TRUE;
    return TRACE_RESULT(S_OK);
}
