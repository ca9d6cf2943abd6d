#pragma once

#include "uix/Scale.h"

#include <string>
#include <vector>

namespace DevHost {

/// The content of a message box.
struct MessageContent {
    std::wstring title;
    std::wstring text;
    std::vector<std::wstring> buttons; ///< At least one.
    PCWSTR icon = nullptr;             ///< One of the system's (IDI_), null for none.
    std::size_t default_button = 0;
};

/// Where everything of a message box goes, in pixels of its client area.
struct MessageLayout {
    MessageLayout(const MessageContent& i_content, const Scale& i_scale);

    Font font;               ///< The system's for messages.
    std::wstring shown_text; ///< With line breaks in words that are too wide.
    SIZE client{};
    RECT icon{};
    RECT text{};
    std::vector<RECT> buttons;
    LONG button_area_top = 0;
};

} // namespace DevHost
