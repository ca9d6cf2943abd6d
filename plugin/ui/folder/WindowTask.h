#pragma once

#include "core/trace/FailureReason.h"
#include "qorv/Host.h"
#include "ui/folder/WorkerTask.h"

#include <functional>
#include <memory>
#include <string>

namespace Ui {

/// A piece of work on a worker thread, which posts a message to a window when it ends.
///
/// Created and read on the UI thread. After `Abandon` it may be destroyed on another thread, so that work that hangs
/// holds up no window.
class WindowTask {
public:
    /// The flag is set when the work is abandoned. The work passes it to its calls of the provider.
    using Work = std::function<HRESULT(Qorv::IQorv_CancelFlag* i_stop_flag)>;

    /// Begins the work, which must not touch windows and must not throw. When it is over, the message is posted to the
    /// window, with the given first parameter. Throws `std::system_error` when the system can't create a thread.
    WindowTask(Qorv::IQorv_Inst* i_host_instance, HWND i_window, UINT i_message, WPARAM i_serial, Work i_work);
    /// Abandons the work and waits for its end.
    ~WindowTask();
    WindowTask(const WindowTask&) = delete;
    WindowTask& operator=(const WindowTask&) = delete;

    /// From here on no message is posted.
    void Abandon() noexcept;

    /// Whether the work is over. Its message may not have arrived yet, or may never arrive.
    bool IsOver() const noexcept { return m_task.IsOver(); }

    // Valid once the work is over.
    HRESULT GetResult() const noexcept;
    /// Why the work failed; empty when nothing is known but the code.
    const FailureReason& GetFailureReason() const noexcept;

private:
    struct State;
    std::shared_ptr<State> m_state;
    WorkerTask m_task;
};

} // namespace Ui
