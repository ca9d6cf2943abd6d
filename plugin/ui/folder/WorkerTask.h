#pragma once

#include <functional>
#include <future>
#include <memory>

namespace Ui {

/// A piece of work on its own thread, on which COM is initialized.
class WorkerTask {
public:
    /// No work.
    WorkerTask() noexcept = default;
    /// Begins the work, which must not throw. Throws `std::system_error` when the system can't create a thread.
    explicit WorkerTask(std::function<void()> i_work);
    WorkerTask(WorkerTask&&) noexcept = default;
    /// Waits for the old work, like the destructor: without serving calls, so `Wait` first.
    WorkerTask& operator=(WorkerTask&&) noexcept = default;

    /// Waits for the work's end. The work may wait for this thread meanwhile (`CallThreadSafe`): messages that are
    /// posted or sent to the thread's windows are dispatched, which is how the host's calls come in. The user's input
    /// stays in the queue. Returns at once when there is no work.
    void Wait() noexcept;

    /// Waits for the end of work that no longer needs this thread: no message is dispatched.
    void Join() noexcept;
    /// Whether the work is over, or there is none.
    bool IsOver() const noexcept;

private:
    std::shared_ptr<void> m_ended; ///< An event; the work has it too.
    std::shared_future<void> m_future;
};

} // namespace Ui
