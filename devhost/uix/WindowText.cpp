#include "uix/WindowText.h"

namespace DevHost {

std::wstring WindowText(HWND i_window) {
    std::wstring text(static_cast<std::size_t>(SendMessageW(i_window, WM_GETTEXTLENGTH, 0, 0)), L'\0');
    const LRESULT length = SendMessageW(i_window, WM_GETTEXT, text.size() + 1, reinterpret_cast<LPARAM>(text.data()));
    text.resize(static_cast<std::size_t>(length));
    return text;
}

std::wstring ReadableCaption(const std::wstring& i_caption) {
    std::wstring readable;
    for (std::size_t index = 0; index < i_caption.size() && i_caption[index] != L'\t'; ++index) {
        if (i_caption[index] == L'&' && index + 1 < i_caption.size())
            ++index;
        readable += i_caption[index];
    }
    return readable;
}

SIZE TextSize(const std::wstring& i_text, HFONT i_font, int i_width, UINT i_flags) {
    const HDC screen = GetDC(nullptr);
    const HGDIOBJ old_font = SelectObject(screen, i_font);
    RECT rect{0, 0, i_width, 0};
    DrawTextW(screen, i_text.c_str(), static_cast<int>(i_text.size()), &rect, i_flags | DT_CALCRECT);
    SelectObject(screen, old_font);
    ReleaseDC(nullptr, screen);
    return {rect.right, rect.bottom};
}

} // namespace DevHost
