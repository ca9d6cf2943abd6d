#pragma once

#include <memory>
#include <mutex>
#include <set>

/// Something that runs on behalf of an operation and can be stopped from outside, such as a request.
class Stoppable {
public:
    /// Called at most once, on any thread. Must not wait or call the signal.
    virtual void Stop() noexcept = 0;

protected:
    Stoppable() = default;
    ~Stoppable() = default;
};

/// Stops an operation that nobody waits for any more: its current request, and every request that it starts later. The
/// operation's thread sets its signal with a `StopScope`; its requests then register with that signal.
class StopSignal {
public:
    StopSignal() = default;
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;

    /// Any thread. It cannot be undone.
    void Stop() noexcept;
    bool IsStopped() const noexcept;

    /// `io_stoppable` is stopped if the signal is set between these two calls, or at once if it is already set. Called
    /// on the operation's thread.
    void Add(Stoppable& io_stoppable);
    void Remove(Stoppable& io_stoppable) noexcept;

    /// The signal of the operation that runs on this thread, or null.
    static std::shared_ptr<StopSignal> OfThread() noexcept;

private:
    mutable std::mutex m_lock;
    bool m_is_stopped = false;
    std::set<Stoppable*> m_running;
};

/// While it exists, what its thread does belongs to the signal's operation. Scopes may be nested.
class StopScope {
public:
    explicit StopScope(std::shared_ptr<StopSignal> i_signal) noexcept;
    StopScope(const StopScope&) = delete;
    StopScope& operator=(const StopScope&) = delete;
    ~StopScope();

private:
    friend class StopSignal;

    const std::shared_ptr<StopSignal> m_signal;
    const StopScope* const m_outer;
};
