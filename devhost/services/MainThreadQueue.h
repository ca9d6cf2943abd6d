#pragma once

#include "qorv/Host.h"

#include <deque>
#include <memory>
#include <mutex>

namespace DevHost {

/// Runs other threads' calls on the thread that created the queue. They arrive as window messages, so every message
/// loop of that thread runs them, including a dialog's.
class MainThreadQueue {
public:
    MainThreadQueue();
    ~MainThreadQueue();
    MainThreadQueue(const MainThreadQueue&) = delete;
    MainThreadQueue& operator=(const MainThreadQueue&) = delete;

    /// Runs the callback on the queue's thread and waits for its result, at most `i_wait` milliseconds (INFINITE:
    /// without limit); on that thread itself it runs at once. A call that has not begun in time is withdrawn:
    /// HRESULT_FROM_WIN32(WAIT_TIMEOUT). E_ABORT once the queue is closed.
    HRESULT Execute(Qorv::IQorv_ThreadSafeCallback* i_callback, DWORD i_wait);

    /// Waits on the queue's thread for a system object, running calls and window messages meanwhile. False if the time
    /// (milliseconds) runs out first.
    bool WaitAndPump(HANDLE i_object, DWORD i_wait);

    bool HasPendingCalls();

    /// Ends all waiting and later calls with E_ABORT.
    void Close();

private:
    struct Call;
    using SharedCall = std::shared_ptr<Call>;

    static LRESULT CALLBACK WindowProcedure(HWND i_window, UINT i_message, WPARAM i_wparam, LPARAM i_lparam);
    bool Post(const SharedCall& i_call);
    void RunPending();

    const DWORD m_thread_id = GetCurrentThreadId();
    HWND m_window = nullptr;
    std::mutex m_mutex; ///< Guards the two below.
    std::deque<SharedCall> m_pending;
    bool m_is_closed = false;
};

} // namespace DevHost
