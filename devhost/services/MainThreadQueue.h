#pragma once

#include "qorv/Host.h"

#include <deque>
#include <memory>
#include <mutex>

namespace DevHost {

/// Runs what other threads ask for on the thread that made the queue. The calls come in as window messages, so every
/// message loop of that thread runs them, a dialog's too.
class MainThreadQueue {
public:
    MainThreadQueue();
    ~MainThreadQueue();
    MainThreadQueue(const MainThreadQueue&) = delete;
    MainThreadQueue& operator=(const MainThreadQueue&) = delete;

    /// Runs the callback on the queue's thread and waits for its result, at most `i_wait` milliseconds (INFINITE:
    /// without limit); from that thread itself at once. A call that was not begun in time is taken back:
    /// HRESULT_FROM_WIN32(WAIT_TIMEOUT). E_ABORT once the queue is closed.
    HRESULT Execute(Qorv::IQorv_ThreadSafeCallback* i_callback, DWORD i_wait);

    /// Waits for an object of the system on the queue's thread, and runs calls and window messages meanwhile. False
    /// when the time (milliseconds) is over first.
    bool WaitAndPump(HANDLE i_object, DWORD i_wait);

    bool HasPendingCalls();

    /// Ends the waiting calls, and all later ones, with E_ABORT.
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
