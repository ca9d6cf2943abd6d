#pragma once

#include "qorv/Base.h"

#include <string>

namespace DevHost {

/// The title of a window, or the text of a control, of any length.
std::wstring WindowText(HWND i_window);

/// A caption as a person reads it: without the "&" that marks a letter, and without the key name after a tab.
std::wstring ReadableCaption(const std::wstring& i_caption);

/// The size of a text drawn with this font and wrapped to this many pixels; `i_flags` are DT_.
SIZE TextSize(const std::wstring& i_text, HFONT i_font, int i_width, UINT i_flags);

/// The text with line breaks in words that are wider than this, where drawing would cut them off.
std::wstring WithBrokenWords(const std::wstring& i_text, HFONT i_font, int i_width);

} // namespace DevHost
