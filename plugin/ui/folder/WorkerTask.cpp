#include "ui/folder/WorkerTask.h"

#include "core/trace/Check.h"

#include <optional>

namespace Ui {
namespace {

/// Sets the event when the work is over, however it ends.
struct EndSignal {
    ~EndSignal() { SetEvent(event.get()); }
    std::shared_ptr<void> event;
};

struct ComOnThread {
    ComOnThread() noexcept : is_initialized(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {}
    ~ComOnThread() {
        if (is_initialized)
            CoUninitialize();
    }
    ComOnThread(const ComOnThread&) = delete;
    ComOnThread& operator=(const ComOnThread&) = delete;
    const bool is_initialized;
};

/// Dispatches queued messages other than input and painting. Returns the code of a WM_QUIT, which belongs to the
/// outer loop.
std::optional<WPARAM> ServeCalls() noexcept {
    TRACE_FUNCTION();
    std::optional<WPARAM> quit_code;
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | PM_QS_POSTMESSAGE | PM_QS_SENDMESSAGE)) {
        if (message.message == WM_QUIT)
            quit_code = message.wParam;
        else
            DispatchMessageW(&message);
    }
    return quit_code;
}

} // namespace

WorkerTask::WorkerTask(std::function<void()> i_work)
    : m_ended(CreateEventW(nullptr, TRUE, FALSE, nullptr), [](HANDLE i_event) {
        if (i_event != nullptr)
            CloseHandle(i_event);
    }) {
    TRACE_FUNCTION();
    CHECK_THROW(m_ended != nullptr, LastErrorException());
    m_future = std::async(std::launch::async, [ended = m_ended, work = std::move(i_work)] {
        const EndSignal signal{ended};
        const ComOnThread com;
        work();
    });
}

void WorkerTask::Join() noexcept {
    TRACE_FUNCTION();
    if (m_future.valid())
        m_future.wait();
}

bool WorkerTask::IsOver() const noexcept {
    TRACE_FUNCTION();
    return !m_future.valid() || WaitForSingleObject(m_ended.get(), 0) == WAIT_OBJECT_0;
}

void WorkerTask::Wait() noexcept {
    TRACE_FUNCTION();
    if (!m_future.valid())
        return;
    const auto event = m_ended; // A dispatched message may replace this task by another.
    const auto future = m_future;
    std::optional<WPARAM> quit_code;
    const HANDLE ended = event.get();
    // MWMO_INPUTAVAILABLE: messages that were queued before the wait count too.
    while (MsgWaitForMultipleObjectsEx(1, &ended, INFINITE, QS_POSTMESSAGE | QS_SENDMESSAGE, MWMO_INPUTAVAILABLE) ==
           WAIT_OBJECT_0 + 1)
        if (const auto code = ServeCalls())
            quit_code = code;
    future.wait();
    if (quit_code)
        PostQuitMessage(static_cast<int>(*quit_code));
}

} // namespace Ui
