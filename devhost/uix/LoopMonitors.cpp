#include "uix/LoopMonitors.h"

#include "uix/LoopEvent.h"

#include <algorithm>

namespace DevHost {

bool LoopMonitors::Remove(Qorv::IUIX_EventLoopMonitor* i_monitor) {
    const auto found = std::ranges::find(m_monitors, i_monitor, &Qorv::ComPtr<Qorv::IUIX_EventLoopMonitor>::Get);
    if (found == m_monitors.end())
        return false;
    const auto removed = std::move(*found); // Released last: it may call back.
    m_monitors.erase(found);
    return true;
}

bool LoopMonitors::Handle(const MSG& i_message) {
    if (m_monitors.empty())
        return false;
    const auto event = Qorv::Create<LoopEvent>(i_message);
    const auto monitors = m_monitors; // One of them may add or remove some.
    for (auto monitor = monitors.rbegin(); monitor != monitors.rend(); ++monitor) {
        (*monitor)->OnEventLoopMonitor(event);
        if (event->IsHandled())
            return true;
    }
    return false;
}

} // namespace DevHost
