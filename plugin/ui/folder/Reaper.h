#pragma once

#include "ui/folder/WorkerTask.h"

#include <list>
#include <memory>

namespace Ui {

/// Destroys what takes long to destroy, such as a listing that hangs in the network, on threads of its own: so that
/// nobody who closes a window waits for it. UI thread.
class Reaper {
public:
    Reaper();
    /// Waits until everything is destroyed, and serves thread-safe calls to this thread meanwhile.
    ~Reaper();
    Reaper(const Reaper&) = delete;
    Reaper& operator=(const Reaper&) = delete;

    /// Takes the last reference to an object that may be destroyed on any thread. Without a further thread it is
    /// destroyed here and now. Null is nothing to do.
    void Take(std::shared_ptr<void> i_object) noexcept;

private:
    std::list<WorkerTask> m_tasks;
};

} // namespace Ui
