#include "ui/folder/WindowTask.h"

#include "core/host/ThreadSafeCall.h"
#include "core/trace/Check.h"

#include <atomic>

namespace Ui {

struct WindowTask::State {
    std::atomic<bool> is_abandoned = false;
    HRESULT result = E_UNEXPECTED;
    FailureReason failure_reason;
};

WindowTask::WindowTask(Qorv::IQorv_Inst* i_host_instance, HWND i_window, UINT i_message, WPARAM i_serial, Work i_work)
    : m_state(std::make_shared<State>()) {
    TRACE_FUNCTION();
    m_task = WorkerTask([host = Qorv::ComPtr(i_host_instance), state = m_state, i_window, i_message, i_serial,
                         work = std::move(i_work)]() mutable {
        state->result = work([&] { return state->is_abandoned.load(); });
        if (FAILED(state->result))
            state->failure_reason = TakeThreadReason();
        work = nullptr; // Nothing of the work is kept once it is over.
        // On the UI thread, where tasks are abandoned: until then the window exists.
        CallThreadSafe(host, [&] {
            if (!state->is_abandoned)
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
    m_state->is_abandoned = true;
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
