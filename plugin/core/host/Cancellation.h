#pragma once

#include "qorv/CoClass.h"
#include "qorv/Host.h"

/// Whether the caller of an operation has cancelled it. False without a flag, or if the flag fails.
bool IsCanceled(Qorv::IQorv_CancelFlag* i_cancel_flag) noexcept;

/// A flag that is already set.
class CanceledFlag final : public Qorv::CoClass<CanceledFlag, Qorv::IQorv_CancelFlag> {
public:
    HRESULT STDMETHODCALLTYPE get_IsCanceled(VARIANT_BOOL* o_is_canceled) noexcept override;
};
