#include "ui/dialog/RunningCommand.h"

#include "core/trace/Check.h"
#include "ui/dialog/DialogMessages.h"

namespace Ui {

RunningCommand::RunningCommand(Qorv::IQorv_Inst* i_host_instance, Reaper& io_reaper)
    : m_host_instance(i_host_instance), m_reaper(io_reaper) {
    TRACE_FUNCTION();
}

RunningCommand::~RunningCommand() {
    TRACE_FUNCTION();
    Abandon();
}

void RunningCommand::Begin(HWND i_window, WindowTask::Work i_work, Done i_done) {
    TRACE_FUNCTION();
    CHECK_THROW(!IsRunning(), HResultException(E_UNEXPECTED));
    m_task = std::make_shared<WindowTask>(m_host_instance, i_window, task_done_message, ++m_number, std::move(i_work));
    m_done = std::move(i_done);
}

std::optional<RunningCommand::End> RunningCommand::TakeEnd(WPARAM i_number) {
    TRACE_FUNCTION();
    if (m_task == nullptr || i_number != m_number)
        return std::nullopt;
    End end{{m_task->GetResult(), m_task->GetFailureReason()}, std::exchange(m_done, nullptr)};
    m_reaper.Take(std::move(m_task)); // Its thread may need another moment.
    return end;
}

std::optional<RunningCommand::End> RunningCommand::TakeUntoldEnd() {
    TRACE_FUNCTION();
    return IsRunning() && m_task->IsOver() ? TakeEnd(m_number) : std::nullopt;
}

void RunningCommand::Abandon() noexcept {
    TRACE_FUNCTION();
    if (m_task != nullptr)
        m_task->Abandon();
    m_reaper.Take(std::move(m_task));
    m_done = nullptr;
}

} // namespace Ui
