#pragma once

#include "script/WindowSteps.h"

#include <gtest/gtest.h>

#include <functional>

namespace Tests {

/// Does something to the active window as soon as there is one, while its message loop runs: once, or repeatedly until
/// it returns true. If that takes too long, fails the test and closes the window. One at a time.
class OnceInUse {
public:
    explicit OnceInUse(std::function<bool(HWND)> i_action) {
        action = std::move(i_action);
        deadline = GetTickCount64() + patience_in_ms;
        m_timer = SetTimer(nullptr, 0, 10, &OnTimer);
    }
    ~OnceInUse() {
        KillTimer(nullptr, m_timer);
        action = nullptr;
    }

private:
    static void CALLBACK OnTimer(HWND, UINT, UINT_PTR, DWORD) {
        const HWND window = DevHost::WindowInUse();
        if (window == nullptr || action == nullptr)
            return;
        if (GetTickCount64() > deadline) {
            ADD_FAILURE() << "the window never came to what the test waits for";
            action = nullptr;
            DevHost::CloseByBox(window, {});
            return;
        }
        const auto run = std::exchange(action, nullptr);
        if (!run(window))
            action = run;
    }

    static constexpr ULONGLONG patience_in_ms = 30'000;
    static inline ULONGLONG deadline = 0;
    static inline std::function<bool(HWND)> action;
    UINT_PTR m_timer = 0;
};

} // namespace Tests
