#pragma once

#include "qorv/Base.h"

#include <string>

namespace DevHost {

/// The tool tips of a window's controls. They are destroyed with the window.
class ToolTips {
public:
    ToolTips() = default;
    /// Sets the tip of a control in this dialog, or in one of its items. Throws a `Failure`.
    explicit ToolTips(HWND i_dialog);

    /// An empty text for none.
    void SetText(HWND i_control, const std::wstring& i_text) const;

private:
    HWND m_window = nullptr;
};

} // namespace DevHost
