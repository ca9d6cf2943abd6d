#include "core/host/StopSignal.h"

#include "core/trace/Trace.h"

namespace {

thread_local const StopScope* current_scope = nullptr;

} // namespace

void StopSignal::Stop() noexcept {
    TRACE_FUNCTION();
    const std::lock_guard guard(m_lock); // Nothing that is stopped here can be destroyed while the lock is held.
    m_is_stopped = true;
    for (Stoppable* const running : m_running)
        running->Stop();
    m_running.clear();
}

bool StopSignal::IsStopped() const noexcept {
    TRACE_FUNCTION();
    const std::lock_guard guard(m_lock);
    return m_is_stopped;
}

void StopSignal::Add(Stoppable& io_stoppable) {
    TRACE_FUNCTION();
    const std::lock_guard guard(m_lock);
    if (m_is_stopped)
        io_stoppable.Stop();
    else
        m_running.insert(&io_stoppable);
}

void StopSignal::Remove(Stoppable& io_stoppable) noexcept {
    TRACE_FUNCTION();
    const std::lock_guard guard(m_lock);
    m_running.erase(&io_stoppable);
}

std::shared_ptr<StopSignal> StopSignal::OfThread() noexcept {
    TRACE_FUNCTION();
    return current_scope != nullptr ? current_scope->m_signal : nullptr;
}

StopScope::StopScope(std::shared_ptr<StopSignal> i_signal) noexcept
    : m_signal(std::move(i_signal)), m_outer(current_scope) {
    TRACE_FUNCTION();
    current_scope = this;
}

StopScope::~StopScope() {
    TRACE_FUNCTION();
    current_scope = m_outer;
}
