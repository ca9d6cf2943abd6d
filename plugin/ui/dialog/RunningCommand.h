#pragma once

#include "ui/dialog/FailureText.h"
#include "ui/folder/Reaper.h"
#include "ui/folder/WindowTask.h"

#include <functional>
#include <memory>
#include <optional>

namespace Ui {

/// A dialog's command that runs on a worker: none, or one. UI thread.
class RunningCommand {
public:
    /// What to do next, if the dialog still exists.
    using Done = std::function<void(const Failure&)>;

    /// A command that has ended.
    struct End {
        Failure failure;
        Done done;
    };

    /// The reaper outlives it.
    RunningCommand(Qorv::IQorv_Inst* i_host_instance, Reaper& io_reaper);
    ~RunningCommand();
    RunningCommand(const RunningCommand&) = delete;
    RunningCommand& operator=(const RunningCommand&) = delete;

    bool IsRunning() const noexcept { return m_task != nullptr; }

    /// Begins a command while none runs. Its end is posted to the window, with a number as the first parameter.
    void Begin(HWND i_window, WindowTask::Work i_work, Done i_done);

    /// The end that a message reports. No value if the message is late: its command was abandoned.
    std::optional<End> TakeEnd(WPARAM i_number);
    /// The end of a command whose message never arrived. To be called from time to time.
    std::optional<End> TakeUntoldEnd();

    /// Leaves the command to the reaper. Nothing follows it.
    void Abandon() noexcept;

private:
    Qorv::ComPtr<Qorv::IQorv_Inst> m_host_instance;
    Reaper& m_reaper;
    std::shared_ptr<WindowTask> m_task;
    Done m_done;
    WPARAM m_number = 0;
};

} // namespace Ui
