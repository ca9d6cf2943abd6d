#pragma once

#include "qorv/Host.h"
#include "qorv/Uix.h"

#include <initializer_list>
#include <string>

namespace Ui {

/// Shows a message box of the host's, on the main thread, and waits for its answer: the index of the button pressed,
/// the last one's when the box was closed otherwise. The buttons are ids of localized texts. Without an owner the box
/// belongs to the window that the user is in. Any thread.
HRESULT ShowMessageBox(Qorv::IQorv_Inst* host_instance, const std::wstring& i_text, Qorv::UIX_MsgBoxIcon i_icon,
                       std::initializer_list<Qorv::PCStr> i_buttons, ULONG& o_answer, HWND i_owner = nullptr);

} // namespace Ui
