#include "ui/folder/Reaper.h"

#include "core/trace/Trace.h"

namespace Ui {

Reaper::Reaper() {
    TRACE_FUNCTION();
}

Reaper::~Reaper() {
    TRACE_FUNCTION();
    for (WorkerTask& task : m_tasks)
        task.Wait();
}

void Reaper::Take(std::shared_ptr<void> i_object) noexcept {
    TRACE_FUNCTION();
    if (i_object == nullptr)
        return;
    m_tasks.remove_if([](const WorkerTask& i_task) { return i_task.IsOver(); });
    try {
        m_tasks.emplace_back([object = std::move(i_object)]() mutable { object.reset(); });
    } catch (...) {
        // The object was destroyed here, by the failed attempt, however long that took.
    }
}

} // namespace Ui
