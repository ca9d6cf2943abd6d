#pragma once

#include "qorv/CoClass.h"
#include "qorv/Host.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace DevHost {

/// The host's events: the numbers of their names, and their handlers. Main thread only.
class EventServer final : public Qorv::CoClass<EventServer, Qorv::IQorv_EventServer> {
public:
    /// The number of an event name. An unknown name gets a new one if `i_create` is set, else 0.
    ULONG EventId(const std::wstring& i_name, bool i_create);

    HRESULT STDMETHODCALLTYPE RegisterNativeEventHandler(ULONG i_event, Qorv::IEventHandler* i_handler,
                                                         ULONG i_flags) noexcept override;
    /// E_INVALIDARG for a handler that is not registered for the event.
    HRESULT STDMETHODCALLTYPE UnregisterNativeEventHandler(ULONG i_event,
                                                           Qorv::IEventHandler* i_handler) noexcept override;

    /// Sends an event to every handler.
    void Fire(ULONG i_event, IUnknown* i_sender, IUnknown* i_arguments);

    /// Releases all handlers.
    void Close() { m_handlers.clear(); }

private:
    using Handler = std::pair<ULONG, Qorv::ComPtr<Qorv::IEventHandler>>;

    std::map<std::wstring, ULONG> m_ids;
    std::vector<Handler> m_handlers;
};

} // namespace DevHost
