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
    /// Whether the work was abandoned: to be asked between its steps.
    using IsAbandoned = std::function<bool()>;
    using Work = std::function<HRESULT(const IsAbandoned&)>;

    /// Begins the work, which must not touch windows and must not throw. When it is over, the message is posted to the
    /// window, with the given first parameter. Throws `std::system_error` when the system can't create a thread.
    WindowTask(Qorv::IQorv_Inst* i_host_instance, HWND i_window, UINT i_message, WPARAM i_serial, Work i_work);
    /// Abandons the work and waits for its end.
    ~WindowTask();
    WindowTask(const WindowTask&) = delete;
    WindowTask& operator=(const WindowTask&) = delete;

    /// From here on no message is posted.
    void Abandon() noexcept;

    // Valid once the message has arrived.
    HRESULT GetResult() const noexcept;
    /// Why the work failed; empty when nothing is known but the code.
    const FailureReason& GetFailureReason() const noexcept;

private:
    struct State;
    std::shared_ptr<State> m_state;
    WorkerTask m_task;
};

} // namespace Ui
