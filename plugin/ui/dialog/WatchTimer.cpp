#include "ui/dialog/WatchTimer.h"

#include "core/trace/Check.h"

#include <map>

namespace Ui {
namespace {

constexpr UINT period = 500; // Milliseconds.

/// The timers by their ids. A message of the system's timer may still be in the queue after the timer is gone.
std::map<UINT_PTR, std::function<void()>>& Callbacks() {
    static std::map<UINT_PTR, std::function<void()>> callbacks;
    return callbacks;
}

HRESULT Call(UINT_PTR i_id) noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        const auto found = Callbacks().find(i_id);
        if (found == Callbacks().end())
            return TRACE_RESULT(S_FALSE);
        const auto callback = found->second; // It may destroy the timer.
        callback();
        return TRACE_RESULT(S_OK);
    };
}

} // namespace

WatchTimer::WatchTimer(std::function<void()> i_callback) {
    TRACE_FUNCTION();
    m_id = SetTimer(nullptr, 0, period, &OnTimer);
    if (m_id != 0)
        Callbacks()[m_id] = std::move(i_callback);
}

WatchTimer::~WatchTimer() {
    TRACE_FUNCTION();
    if (m_id == 0)
        return;
    KillTimer(nullptr, m_id);
    Callbacks().erase(m_id);
}

void CALLBACK WatchTimer::OnTimer(HWND, UINT, UINT_PTR i_id, DWORD) noexcept {
    TRACE_FUNCTION();
    Call(i_id);
}

} // namespace Ui
