#include "services/EventServer.h"

#include "base/Failure.h"

#include <algorithm>

namespace DevHost {

ULONG EventServer::EventId(const std::wstring& i_name, bool i_create) {
    const auto found = m_ids.find(i_name);
    if (found != m_ids.end() || !i_create)
        return found != m_ids.end() ? found->second : 0;
    return m_ids[i_name] = static_cast<ULONG>(m_ids.size() + 1);
}

HRESULT STDMETHODCALLTYPE EventServer::RegisterNativeEventHandler(ULONG i_event, Qorv::IEventHandler* i_handler,
                                                                  ULONG) noexcept {
    if (i_handler == nullptr)
        return E_POINTER;
    return Answer([&] { m_handlers.emplace_back(i_event, i_handler); });
}

HRESULT STDMETHODCALLTYPE EventServer::UnregisterNativeEventHandler(ULONG i_event,
                                                                    Qorv::IEventHandler* i_handler) noexcept {
    const auto found = std::ranges::find_if(m_handlers, [&](const Handler& i_registered) {
        return i_registered.first == i_event && i_registered.second == i_handler;
    });
    if (found == m_handlers.end())
        return E_INVALIDARG;
    m_handlers.erase(found);
    return S_OK;
}

void EventServer::Fire(ULONG i_event, IUnknown* i_sender, IUnknown* i_arguments) {
    const std::vector<Handler> handlers = m_handlers; // Handlers may be registered or unregistered during the calls.
    for (const auto& [event, handler] : handlers)
        if (event == i_event)
            handler->OnEvent(i_event, i_sender, i_arguments);
}

} // namespace DevHost
