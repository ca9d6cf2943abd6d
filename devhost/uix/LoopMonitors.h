#pragma once

#include "qorv/Uix.h"

#include <vector>

namespace DevHost {

/// Those who see the messages of the modal loops before these are dispatched. Main thread only.
class LoopMonitors {
public:
    void Add(Qorv::IUIX_EventLoopMonitor* i_monitor) { m_monitors.emplace_back(i_monitor); }

    /// False when the monitor was not there.
    bool Remove(Qorv::IUIX_EventLoopMonitor* i_monitor);

    /// Shows the message to the monitors, the last one first, until one has handled it.
    bool Handle(const MSG& i_message);

private:
    std::vector<Qorv::ComPtr<Qorv::IUIX_EventLoopMonitor>> m_monitors;
};

} // namespace DevHost
