#pragma once

#include "qorv/Base.h"
#include "services/Localization.h"

#include <string>
#include <vector>

namespace DevHost {

/// One item of a dialog's layout.
struct LayoutItem {
    std::wstring kind; ///< "label", "button"...
    std::wstring id;
    RECT place{}; ///< In layout units, in the client area or in its fixed area.
    bool is_fixed = false;
    DWORD style = 0;
    DWORD draw_text_flags = 0;
    DWORD scroll_style = 0;
    std::wstring text;
    std::wstring image;
    std::wstring name;     ///< What a screen reader calls it; empty if its text says enough.
    std::wstring label_id; ///< The item whose text is its name, if that may change.
};

/// A dialog's layout, read from its XML description. Lengths are in layout units.
struct Layout {
    /// Reads one dialog of a document with root element "dialogs". Throws a `Failure` with E_INVALIDARG for a document
    /// that cannot be read, contains impossible values, or has no such dialog.
    static Layout Read(const void* i_data, std::size_t i_size, const std::wstring& i_id);

    /// Replaces texts that are ids of localized strings ("$$$." and the id). An unknown id stays visible.
    void Localize(const Localization& i_texts);

    std::wstring title;
    int width = 0;  ///< Of the client area.
    int height = 0; ///< Of the client area, with the fixed area.
    int fixed_height = 0;
    std::wstring font_name;
    double font_points = 0;
    bool is_foreground = false;
    bool is_scrollable = false;
    bool has_help_button = false;
    std::wstring default_item; ///< There may be no such item.
    std::vector<LayoutItem> items;
};

} // namespace DevHost
