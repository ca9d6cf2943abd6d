#pragma once

#include "qorv/Base.h"

#include <deque>
#include <filesystem>
#include <string>

namespace DevHost {

/// Uses the windows of the main thread as a person would: through their controls, by window messages. Runs within any
/// message loop of the thread; each step waits for what it needs. docs/window-scripts.md describes the language.
///
/// A step that cannot be done in time ends the script: the reason goes to standard error, every window of the thread is
/// closed, and `HasFailed` returns true. Main thread only.
class WindowScript {
public:
    /// `i_step_time` is how long a step may wait, in milliseconds. Throws a `Failure` for a file that cannot be read or
    /// has a line that isn't a step.
    explicit WindowScript(const std::filesystem::path& i_file, DWORD i_step_time = 30000);
    ~WindowScript();
    WindowScript(const WindowScript&) = delete;
    WindowScript& operator=(const WindowScript&) = delete;

    bool IsDone() const noexcept { return m_steps.empty(); }
    /// For when no window is left. Whether all steps were done; standard error names the first that was not.
    bool End();
    bool HasFailed() const noexcept { return m_has_failed; }

private:
    struct Verb;
    struct Step {
        std::size_t line = 0;
        std::wstring text; ///< For messages.
        const Verb* verb = nullptr;
        std::wstring argument;
    };

    static const Verb verbs[];
    void AddSteps(const std::wstring& i_line, std::size_t i_number);

    static LRESULT CALLBACK WindowProcedure(HWND i_window, UINT i_message, WPARAM i_wparam, LPARAM i_lparam);
    void OnTimer();
    void Fail(const std::wstring& i_reason);

    HWND m_window = nullptr;  ///< Only for its timer's messages.
    std::deque<Step> m_steps; ///< The remaining steps.
    DWORD m_step_time;
    ULONGLONG m_step_begin;
    bool m_is_working = false;
    bool m_has_failed = false;
};

} // namespace DevHost
