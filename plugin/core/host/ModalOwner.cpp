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

/// The thread's topmost enabled window, or null.
HWND UsableDialog() noexcept {
    TRACE_FUNCTION();
    HWND window = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), FindUsableDialog, reinterpret_cast<LPARAM>(&window));
    return window;
}

} // namespace

HWND Ui::ModalOwner(Qorv::IQorv_Inst* host_instance) noexcept {
    TRACE_FUNCTION();
    // The dialog that the user is working in may have an owner other than the frame.
    if (const HWND active = GetActiveWindow(); active != nullptr && IsWindowEnabled(active))
        return active;
    // None of our windows is active while the user works in another program.
    HWND frame = nullptr;
    if (FAILED(host_instance->get_MainFrameWnd(&frame)) || frame == nullptr)
        return UsableDialog();
    // If a dialog has disabled the frame, the dialog owns the new window: the frame must not own a second one.
    return GetLastActivePopup(frame);
}
