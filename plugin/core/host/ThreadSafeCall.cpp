#include "core/host/ThreadSafeCall.h"

#include "core/trace/Check.h"

namespace {

constexpr DWORD wait_without_limit = 0xFFFFFFFF;

} // namespace

ThreadSafeCall::ThreadSafeCall(std::function<void()> i_callable) : m_callable(std::move(i_callable)) {
    TRACE_FUNCTION();
}

ThreadSafeCall::~ThreadSafeCall() {
    TRACE_FUNCTION();
}

HRESULT STDMETHODCALLTYPE ThreadSafeCall::OnExecute() noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        m_callable();
        return TRACE_RESULT(S_OK);
    };
}

HRESULT CallThreadSafe(Qorv::IQorv_Inst* host_instance, std::function<void()> callable) {
    TRACE_FUNCTION();
    auto call = Qorv::Create<ThreadSafeCall>(std::move(callable));
    CHECK_RETURN(call != nullptr, E_OUTOFMEMORY);
    const HRESULT result = host_instance->ExecuteOnMainThread(call, wait_without_limit);
    call.Reset();
    CHECK_HRESULT(result);
    return result == S_OK ? TRACE_RESULT(S_OK) : trace_function.Return(result, L"S_FALSE");
}
