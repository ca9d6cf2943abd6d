#pragma once

#include "qorv/CoClass.h"
#include "qorv/Host.h"

/// Whether the caller of an operation has given up. No flag, or one that cannot tell, means that it has not.
bool IsCanceled(Qorv::IQorv_CancelFlag* i_cancel_flag) noexcept;

/// The flag of a caller who has given up already.
class CanceledFlag final : public Qorv::CoClass<CanceledFlag, Qorv::IQorv_CancelFlag> {
public:
    HRESULT STDMETHODCALLTYPE get_IsCanceled(VARIANT_BOOL* o_is_canceled) noexcept override;
};
