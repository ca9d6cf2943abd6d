#pragma once

#include "qorv/CoClass.h"
#include "qorv/Host.h"

#include <memory>

class Plugin;

namespace Ui {
class OpenSaveDialog;
}

/// The plug-in's subscriber to the host's events. It does nothing when the event it subscribes to arrives, because the
/// plug-in adds no commands to the host's main view. It also holds the plug-in's one dialog object. Main thread only.
class EventsHandler final : public Qorv::CoClass<EventsHandler, Qorv::IEventHandler> {
public:
    /// The plug-in, which owns the handler, must outlive it.
    explicit EventsHandler(Plugin* i_plugin);
    ~EventsHandler();

    HRESULT Init() noexcept;
    HRESULT Shutdown() noexcept;

    /// Empty before `Init` and after `Shutdown`.
    std::shared_ptr<Ui::OpenSaveDialog> GetDialog() const noexcept { return m_dialog; }

    HRESULT STDMETHODCALLTYPE OnEvent(ULONG i_event, IUnknown* i_sender, IUnknown* i_arguments) noexcept override;

private:
    Plugin* m_plugin;
    ULONG m_handled_event = 0;
    std::shared_ptr<Ui::OpenSaveDialog> m_dialog;
};
