#pragma once

#include "qorv/Host.h"
#include "qorv/Uix.h"

#include <initializer_list>
#include <string>

namespace Ui {

/// Shows one of the host's message boxes on the main thread and waits for the answer: the index of the button pressed,
/// or of the last button if the box was closed in another way. The buttons are ids of localized texts; Enter presses
/// the default one. Without an owner, the box belongs to the window that the user is working in. Any thread.
HRESULT ShowMessageBox(Qorv::IQorv_Inst* host_instance, const std::wstring& i_text, Qorv::UIX_MsgBoxIcon i_icon,
                       std::initializer_list<Qorv::PCStr> i_buttons, ULONG& o_answer, HWND i_owner = nullptr,
                       ULONG i_default_button = 0);

} // namespace Ui
