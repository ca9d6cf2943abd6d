#pragma once

#include "qorv/Base.h"

#include <string>

namespace DevHost {

/// The texts that come up where the mouse rests over the controls of a window. They go with the window.
class ToolTips {
public:
    ToolTips() = default;
    /// Of a control in this dialog, or in one of its items. Throws a `Failure`.
    explicit ToolTips(HWND i_dialog);

    /// An empty text for none.
    void SetText(HWND i_control, const std::wstring& i_text) const;

private:
    HWND m_window = nullptr;
};

} // namespace DevHost
