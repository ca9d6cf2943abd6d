#pragma once

#include "qorv/CoClass.h"
#include "qorv/Host.h"

#include <functional>

/// A callable to run on the host's main thread.
class ThreadSafeCall final : public Qorv::CoClass<ThreadSafeCall, Qorv::IQorv_ThreadSafeCallback> {
public:
    /// An empty callable is a programming error and makes the call fail.
    explicit ThreadSafeCall(std::function<void()> i_callable);

    HRESULT STDMETHODCALLTYPE OnExecute() noexcept override;
    virtual ~ThreadSafeCall();

private:
    std::function<void()> m_callable;
};

/// Runs the callable on the host's main thread and waits for it without limit. If this is the main thread, it runs at
/// once. Returns the host's result. Initialise any result that the callable sets to E_UNEXPECTED: a callable that never
/// ran must not look like a success.
HRESULT CallThreadSafe(Qorv::IQorv_Inst* host_instance, std::function<void()> callable);
