#include "auth/AcceleratorMonitor.h"

#include "core/trace/Check.h"

#include <oleidl.h>

using Qorv::ComPtr;

AcceleratorMonitor::AcceleratorMonitor(IUnknown* i_browser) : _browser(i_browser) {
    TRACE_FUNCTION();
}

AcceleratorMonitor::~AcceleratorMonitor() {
    TRACE_FUNCTION();
}

HRESULT STDMETHODCALLTYPE AcceleratorMonitor::OnEventLoopMonitor(Qorv::IUIX_LoopEvent* io_event) noexcept {
    TRACE_FUNCTION();
    CHECK_RETURN(io_event != nullptr, E_INVALIDARG);
    MSG message{};
    CHECK_HRESULT(io_event->get_Message(&message.message));
    if (message.message != WM_KEYDOWN)
        return TRACE_RESULT(S_OK);
    CHECK_HRESULT(io_event->get_Window(&message.hwnd));
    CHECK_HRESULT(io_event->get_WParam(&message.wParam));
    CHECK_HRESULT(io_event->get_LParam(&message.lParam));
    // Queried each time: the browser has it only while it is active.
    ComPtr<IOleInPlaceActiveObject> active_object;
    if (_browser == nullptr || FAILED(_browser->QueryInterface(&active_object)))
        return TRACE_RESULT(S_OK);
    if (active_object->TranslateAccelerator(&message) == S_OK)
        CHECK_HRESULT(io_event->put_Handled(VARIANT_TRUE));
    return TRACE_RESULT(S_OK);
}
