#pragma once

#include "ui/folder/WorkerTask.h"

#include <list>
#include <memory>

namespace Ui {

/// Destroys on its own threads what takes long to destroy, such as a listing that hangs in the network, so that closing
/// a window never waits. UI thread.
class Reaper {
public:
    Reaper();
    /// Waits until everything is destroyed, and serves thread-safe calls to this thread meanwhile.
    ~Reaper();
    Reaper(const Reaper&) = delete;
    Reaper& operator=(const Reaper&) = delete;

    /// Takes the last reference to an object that may be destroyed on any thread. If no thread can be created, it is
    /// destroyed right here. Null is ignored.
    void Take(std::shared_ptr<void> i_object) noexcept;

private:
    std::list<WorkerTask> m_tasks;
};

} // namespace Ui
