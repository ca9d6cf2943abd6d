#pragma once

#include "qorv/CoClass.h"
#include "qorv/Uix.h"

/// Passes the key presses of the host's modal loop to a browser first, so that Tab, Enter and the editing keys work in
/// its page. Main thread.
class AcceleratorMonitor final : public Qorv::CoClass<AcceleratorMonitor, Qorv::IUIX_EventLoopMonitor> {
public:
    /// Holds `i_browser`, which may be null, as long as this object exists.
    explicit AcceleratorMonitor(IUnknown* i_browser);
    ~AcceleratorMonitor();

    HRESULT STDMETHODCALLTYPE OnEventLoopMonitor(Qorv::IUIX_LoopEvent* io_event) noexcept override;

private:
    const Qorv::ComPtr<IUnknown> _browser;
};
