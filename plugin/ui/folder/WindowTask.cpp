#include "ui/folder/WindowTask.h"

#include "core/host/ThreadSafeCall.h"
#include "core/trace/Check.h"
#include "ui/folder/StopFlag.h"

namespace Ui {

struct WindowTask::State {
    const Qorv::ComPtr<StopFlag> stop_flag = Qorv::Create<StopFlag>();
    HRESULT result = E_UNEXPECTED;
    FailureReason failure_reason;
};

WindowTask::WindowTask(Qorv::IQorv_Inst* i_host_instance, HWND i_window, UINT i_message, WPARAM i_serial, Work i_work)
    : m_state(std::make_shared<State>()) {
    TRACE_FUNCTION();
    CHECK_THROW(m_state->stop_flag != nullptr, HResultException(E_OUTOFMEMORY));
    m_task = WorkerTask([host = Qorv::ComPtr(i_host_instance), state = m_state, i_window, i_message, i_serial,
                         work = std::move(i_work)]() mutable {
        {
            const StopScope operation(state->stop_flag->Operation());
            state->result = work(state->stop_flag);
        }
        if (FAILED(state->result))
            state->failure_reason = TakeThreadReason();
        work = nullptr; // Nothing of the work is kept once it is over.
        // On the UI thread, where tasks are abandoned: until then the window exists.
        CallThreadSafe(host, [&] {
            if (!state->stop_flag->IsSet())
                PostMessageW(i_window, i_message, i_serial, 0);
        });
    });
}

WindowTask::~WindowTask() {
    TRACE_FUNCTION();
    Abandon();
    m_task.Wait();
}

void WindowTask::Abandon() noexcept {
    TRACE_FUNCTION();
    m_state->stop_flag->Set();
}

HRESULT WindowTask::GetResult() const noexcept {
    TRACE_FUNCTION();
    return m_state->result;
}

const FailureReason& WindowTask::GetFailureReason() const noexcept {
    TRACE_FUNCTION();
    return m_state->failure_reason;
}

} // namespace Ui
