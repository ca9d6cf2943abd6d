#include "uix/ToolTips.h"

#include "base/Failure.h"

#include <commctrl.h>

namespace DevHost {

ToolTips::ToolTips(HWND i_dialog)
    : m_window(CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX,
                               CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, i_dialog, nullptr,
                               GetModuleHandleW(nullptr), nullptr)) {
    if (m_window == nullptr)
        throw LastErrorFailure(L"Cannot make a tool tip");
}

void ToolTips::SetText(HWND i_control, const std::wstring& i_text) const {
    std::wstring text = i_text;
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V2_SIZE; // Without visual styles the control accepts no larger one.
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = GetParent(i_control);
    tool.uId = reinterpret_cast<UINT_PTR>(i_control);
    tool.lpszText = text.data();
    SendMessageW(m_window, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    if (!text.empty())
        SendMessageW(m_window, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
}

} // namespace DevHost
