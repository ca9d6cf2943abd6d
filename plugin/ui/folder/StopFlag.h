#pragma once

#include "qorv/CoClass.h"
#include "qorv/Host.h"

#include <atomic>

namespace Ui {

/// The cancel flag that a dialog's calls of the provider carry: set when nobody waits for them any longer. Any thread.
class StopFlag final : public Qorv::CoClass<StopFlag, Qorv::IQorv_CancelFlag> {
public:
    void Set() noexcept { m_is_set = true; }
    bool IsSet() const noexcept { return m_is_set; }

    HRESULT STDMETHODCALLTYPE get_IsCanceled(VARIANT_BOOL* o_is_canceled) noexcept override;

private:
    std::atomic<bool> m_is_set = false;
};

} // namespace Ui
