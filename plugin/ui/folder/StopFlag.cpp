#include "ui/folder/StopFlag.h"

#include "core/trace/Check.h"

namespace Ui {

HRESULT STDMETHODCALLTYPE StopFlag::get_IsCanceled(VARIANT_BOOL* o_is_canceled) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(o_is_canceled != nullptr, E_POINTER);
    *o_is_canceled = IsSet() ? VARIANT_TRUE : VARIANT_FALSE;
    return TRACE_RESULT(S_OK);
}

} // namespace Ui
