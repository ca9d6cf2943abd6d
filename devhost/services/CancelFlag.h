#pragma once

#include "qorv/CoClass.h"
#include "qorv/Host.h"

#include <atomic>

namespace DevHost {

/// Set when the user cancels an operation. Any thread.
class CancelFlag final : public Qorv::CoClass<CancelFlag, Qorv::IQorv_CancelFlag> {
public:
    void Cancel() noexcept { m_is_canceled = true; }

    HRESULT STDMETHODCALLTYPE get_IsCanceled(VARIANT_BOOL* o_is_canceled) noexcept override {
        if (o_is_canceled == nullptr)
            return E_POINTER;
        *o_is_canceled = m_is_canceled ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    }

private:
    std::atomic<bool> m_is_canceled = false;
};

} // namespace DevHost
