#include "core/host/ModalOwner.h"

#include "core/trace/Trace.h"

namespace {

bool IsUsableDialog(HWND i_window) noexcept {
    TRACE_FUNCTION();
    const bool has_title_bar = (GetWindowLongPtrW(i_window, GWL_STYLE) & WS_CAPTION) == WS_CAPTION;
    return has_title_bar && IsWindowVisible(i_window) && IsWindowEnabled(i_window);
}

BOOL CALLBACK FindUsableDialog(HWND i_window, LPARAM o_found) noexcept {
    TRACE_FUNCTION();
    if (!IsUsableDialog(i_window))
        return TRUE;
    *reinterpret_cast<HWND*>(o_found) = i_window;
    return FALSE;
}

/// The thread's foremost window that can be used; null for none.
HWND UsableDialog() noexcept {
    TRACE_FUNCTION();
    HWND window = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), FindUsableDialog, reinterpret_cast<LPARAM>(&window));
    return window;
}

} // namespace

HWND Ui::ModalOwner(Qorv::IQorv_Inst* host_instance) noexcept {
    TRACE_FUNCTION();
    // A dialog that the user is in may have another owner than the frame.
    if (const HWND active = GetActiveWindow(); active != nullptr && IsWindowEnabled(active))
        return active;
    // No window of ours is active while another program is in use.
    HWND frame = nullptr;
    if (FAILED(host_instance->get_MainFrameWnd(&frame)) || frame == nullptr)
        return UsableDialog();
    // A frame that a dialog disabled must not get a second one of its own: the new one stands on top of the first.
    return GetLastActivePopup(frame);
}
