#pragma once

#include "core/host/StopSignal.h"
#include "qorv/CoClass.h"
#include "qorv/Host.h"

#include <memory>

namespace Ui {

/// The cancel flag for a dialog's calls of the provider: set when nobody waits for them any longer. Setting it also
/// stops a request that hangs, if the worker has declared the operation its own (`StopScope`). Any thread.
class StopFlag final : public Qorv::CoClass<StopFlag, Qorv::IQorv_CancelFlag> {
public:
    void Set() noexcept { m_operation->Stop(); }
    bool IsSet() const noexcept { return m_operation->IsStopped(); }
    const std::shared_ptr<StopSignal>& Operation() const noexcept { return m_operation; }

    HRESULT STDMETHODCALLTYPE get_IsCanceled(VARIANT_BOOL* o_is_canceled) noexcept override;

private:
    const std::shared_ptr<StopSignal> m_operation = std::make_shared<StopSignal>();
};

} // namespace Ui
