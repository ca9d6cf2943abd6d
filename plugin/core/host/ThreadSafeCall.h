#pragma once

#include "qorv/CoClass.h"
#include "qorv/Host.h"

#include <functional>

/// A piece of code for the host's main thread.
class ThreadSafeCall final : public Qorv::CoClass<ThreadSafeCall, Qorv::IQorv_ThreadSafeCallback> {
public:
    /// An empty callable is a programming error, which shows as a failed call.
    explicit ThreadSafeCall(std::function<void()> i_callable);

    HRESULT STDMETHODCALLTYPE OnExecute() noexcept override;
    virtual ~ThreadSafeCall();

private:
    std::function<void()> m_callable;
};

/// Runs the callable on the host's main thread and waits for it without limit; at once when this is the main thread.
/// Returns the host's result. Let a result that the callable sets start as E_UNEXPECTED: a callable that never ran is
/// no success.
HRESULT CallThreadSafe(Qorv::IQorv_Inst* host_instance, std::function<void()> callable);
