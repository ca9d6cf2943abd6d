#include "core/EventsHandler.h"

#include "afs/FileSystem.h"
#include "core/Plugin.h"
#include "core/trace/Check.h"
#include "ui/dialog/OpenSaveDialog.h"

namespace {

constexpr wchar_t customize_command_bars[] = L"e.mainView.customizeCmdBars";

} // namespace

EventsHandler::EventsHandler(Plugin* i_plugin) : m_plugin(i_plugin) {
    TRACE_FUNCTION();
}

EventsHandler::~EventsHandler() {
    TRACE_FUNCTION();
}

HRESULT EventsHandler::Init() noexcept {
    TRACE_FUNCTION();
    COM_BOUNDARY(nullptr) {
        m_dialog =
            std::make_shared<Ui::OpenSaveDialog>(m_plugin, m_plugin->m_qorv_inst.Get(), m_plugin->m_file_system.Get());
        m_plugin->m_qorv_inst->StringToID(customize_command_bars, VARIANT_TRUE, &m_handled_event);
        Qorv::ComPtr<Qorv::IQorv_EventServer> event_server;
        CHECK_HRESULT(m_plugin->m_qorv_inst->get_EventServer(&event_server));
        CHECK_HRESULT(event_server->RegisterNativeEventHandler(m_handled_event, this, 0));
        return TRACE_RESULT(S_OK);
    };
}

HRESULT EventsHandler::Shutdown() noexcept {
    TRACE_FUNCTION();
    const Qorv::ComPtr<EventsHandler> keep_alive(this); // The event server may be the last to hold this object.
    Qorv::ComPtr<Qorv::IQorv_EventServer> event_server;
    CHECK_HRESULT(m_plugin->m_qorv_inst->get_EventServer(&event_server));
    event_server->UnregisterNativeEventHandler(m_handled_event, this);
    m_dialog.reset();
    return TRACE_RESULT(S_OK);
}

HRESULT STDMETHODCALLTYPE EventsHandler::OnEvent(ULONG, IUnknown*, IUnknown*) noexcept {
    TRACE_FUNCTION();
    return TRACE_RESULT(S_OK);
}
