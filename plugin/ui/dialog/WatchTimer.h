#pragma once

#include "qorv/Base.h"

#include <functional>

namespace Ui {

/// Calls back twice a second from the thread's message loop, whichever it is, until it is destroyed. A backstop for
/// posted messages that may be lost: a timer needs no room in the queue. UI thread. If the system has no timer left, it
/// never calls.
class WatchTimer {
public:
    /// The callback may destroy the timer.
    explicit WatchTimer(std::function<void()> i_callback);
    ~WatchTimer();
    WatchTimer(const WatchTimer&) = delete;
    WatchTimer& operator=(const WatchTimer&) = delete;

private:
    static void CALLBACK OnTimer(HWND i_window, UINT i_message, UINT_PTR i_id, DWORD i_time) noexcept;

    UINT_PTR m_id = 0;
};

} // namespace Ui
