#include "core/ModalOwner.h"

#include "core/Trace.h"

HWND Ui::ModalOwner(Qorv::IQorv_Inst* host_instance) noexcept {
    TRACE_FUNCTION();
    HWND frame = nullptr;
    if (FAILED(host_instance->get_MainFrameWnd(&frame)) || frame == nullptr)
        return GetActiveWindow();
    // A frame that a dialog disabled must not get a second one of its own: the new one stands on top of the first.
    return GetLastActivePopup(frame);
}
