#pragma once

#include <memory>
#include <mutex>
#include <set>

/// Something that runs on behalf of an operation and can be ended from outside: a request.
class Stoppable {
public:
    /// Any thread, once. Must not wait, nor call the signal.
    virtual void Stop() noexcept = 0;

protected:
    Stoppable() = default;
    ~Stoppable() = default;
};

/// Ends an operation that nobody waits for any more: the request that it hangs in now, and every one that it would
/// begin after that. The operation's thread says which signal is its own (`StopScope`), and its requests join that.
class StopSignal {
public:
    StopSignal() = default;
    StopSignal(const StopSignal&) = delete;
    StopSignal& operator=(const StopSignal&) = delete;

    /// Any thread. It cannot be taken back.
    void Stop() noexcept;
    bool IsStopped() const noexcept;

    /// Between the two `io_stoppable` is ended with the operation; at once when that is over. The operation's thread.
    void Add(Stoppable& io_stoppable);
    void Remove(Stoppable& io_stoppable) noexcept;

    /// The signal of the operation that runs on this thread; null when it has none.
    static std::shared_ptr<StopSignal> OfThread() noexcept;

private:
    mutable std::mutex m_lock;
    bool m_is_stopped = false;
    std::set<Stoppable*> m_running;
};

/// While it lives, what its thread does belongs to the operation of a signal. Scopes may stand in each other.
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
