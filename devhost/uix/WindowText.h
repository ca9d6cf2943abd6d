#pragma once

#include "qorv/Base.h"

#include <string>

namespace DevHost {

/// The title of a window, or the text of a control, however long.
std::wstring WindowText(HWND i_window);

/// A caption as a person reads it: "&" only marks a letter, and what stands behind a tab is a key.
std::wstring ReadableCaption(const std::wstring& i_caption);

/// How large a text is when it is drawn with this font and wrapped to this many pixels; `i_flags` are DT_.
SIZE TextSize(const std::wstring& i_text, HFONT i_font, int i_width, UINT i_flags);

} // namespace DevHost
