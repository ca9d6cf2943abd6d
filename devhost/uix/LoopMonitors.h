#pragma once

#include "qorv/Uix.h"

#include <vector>

namespace DevHost {

/// The monitors that see the messages of modal loops before they are dispatched. Main thread only.
class LoopMonitors {
public:
    void Add(Qorv::IUIX_EventLoopMonitor* i_monitor) { m_monitors.emplace_back(i_monitor); }

    /// False if the monitor had not been added.
    bool Remove(Qorv::IUIX_EventLoopMonitor* i_monitor);

    /// Shows the message to the monitors, last one first, until one handles it.
    bool Handle(const MSG& i_message);

private:
    std::vector<Qorv::ComPtr<Qorv::IUIX_EventLoopMonitor>> m_monitors;
};

} // namespace DevHost
