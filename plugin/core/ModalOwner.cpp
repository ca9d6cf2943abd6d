#include "core/ModalOwner.h"

#include "core/Trace.h"

HWND Ui::ModalOwner(Qorv::IQorv_Inst* host_instance) noexcept {
    TRACE_FUNCTION();
    // A dialog that the user is in may have another owner than the frame.
    if (const HWND active = GetActiveWindow(); active != nullptr && IsWindowEnabled(active))
        return active;
    HWND frame = nullptr;
    if (FAILED(host_instance->get_MainFrameWnd(&frame)) || frame == nullptr)
        return nullptr;
    // A frame that a dialog disabled must not get a second one of its own: the new one stands on top of the first.
    return GetLastActivePopup(frame);
}
