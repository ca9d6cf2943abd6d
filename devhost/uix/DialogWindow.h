#pragma once

#include "qorv/Base.h"
#include "uix/LoopMonitors.h"

#include <optional>
#include <string>

namespace DevHost {

/// A modal system dialog, initially empty: Tab, Shift+Tab, the arrow keys and the mnemonics move between its controls,
/// Enter presses the default button, Esc and the close box end it. Main thread only.
///
/// The most derived class calls `Destroy` in its destructor, so that the window still finds the complete object.
class DialogWindow {
public:
    DialogWindow(const DialogWindow&) = delete;
    DialogWindow& operator=(const DialogWindow&) = delete;

    /// Null after `Destroy`, or once the system has destroyed the window with its owner.
    HWND Window() const noexcept { return m_window; }

    /// Shows the window until `EndModal`, the close box or Esc; the owner is disabled meanwhile. `io_result` is the
    /// result for the latter two, and receives the actual one. WM_QUIT ends the dialog like its close box, and is
    /// passed on to the outer loop. Returns a failure of `OnInit`.
    HRESULT RunModal(LoopMonitors& io_monitors, LONG& io_result);

    /// Ends `RunModal` after the current message.
    void EndModal(LONG i_result) noexcept;

    void Destroy() noexcept;

protected:
    /// Creates a hidden window with a client area of this many pixels, as far as the screen has room, centred on its
    /// owner. `i_style` holds WS_ bits. Throws a `Failure`.
    DialogWindow(HWND i_owner, DWORD i_style, DWORD i_extended_style, const std::wstring& i_title, SIZE i_client_size);
    ~DialogWindow();

    /// Before the window is shown the first time.
    virtual HRESULT OnInit() { return S_OK; }
    /// A control's notification; 0 for a button's click.
    virtual void OnCommand(WORD i_control_id, WORD i_notification) = 0;
    virtual void OnSize() {}
    /// The window is being destroyed; its controls still exist.
    virtual void OnDestroy() {}
    /// Every other message; return nothing for the default behaviour.
    virtual std::optional<LRESULT> OnMessage(UINT i_message, WPARAM i_wparam, LPARAM i_lparam);

private:
    class DisabledOwner;

    static INT_PTR CALLBACK DialogProcedure(HWND i_window, UINT i_message, WPARAM i_wparam, LPARAM i_lparam);
    INT_PTR Process(UINT i_message, WPARAM i_wparam, LPARAM i_lparam);
    HRESULT InitOnce();
    void PumpUntilEnded(LoopMonitors& io_monitors);

    HWND m_window = nullptr;
    HWND m_owner = nullptr;
    LONG m_result = 0;
    bool m_is_initialized = false;
    bool m_is_running = false;
    bool m_is_ended = false;
};

} // namespace DevHost
