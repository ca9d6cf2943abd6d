#pragma once

#include "uix/DialogWindow.h"
#include "uix/MessageLayout.h"

namespace DevHost {

/// A message box with the caller's buttons: an icon and wrapped text above a row of buttons. The first button is the
/// default; Esc and the close box answer like the last one. Main thread only.
class MessageDialog final : private DialogWindow {
public:
    static constexpr UINT text_flags = DT_WORDBREAK | DT_NOPREFIX | DT_EXPANDTABS;

    /// Throws a `Failure`.
    MessageDialog(HWND i_owner, const MessageContent& i_content);
    ~MessageDialog() { Destroy(); }

    /// Shows the box and returns the index of the button.
    ULONG Ask(LoopMonitors& io_monitors);

private:
    MessageDialog(HWND i_owner, const MessageContent& i_content, MessageLayout i_layout);
    HWND AddControl(PCWSTR i_class, const std::wstring& i_text, DWORD i_style, const RECT& i_place, WORD i_id);
    void Paint(HDC i_device) const;

    HRESULT OnInit() override;
    void OnCommand(WORD i_control_id, WORD i_notification) override;
    std::optional<LRESULT> OnMessage(UINT i_message, WPARAM i_wparam, LPARAM i_lparam) override;

    MessageLayout m_layout;
    WORD m_default_button_id = 0;
    HICON m_icon = nullptr; ///< The system's own. Null for none.
};

} // namespace DevHost
