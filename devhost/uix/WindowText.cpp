#include "uix/WindowText.h"

#include <algorithm>
#include <string_view>

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

std::wstring WithBrokenWords(const std::wstring& i_text, HFONT i_font, int i_width) {
    constexpr std::size_t most_in_a_line = 4096; // More are not measured.
    const HDC screen = GetDC(nullptr);
    const HGDIOBJ old_font = SelectObject(screen, i_font);
    std::wstring broken;
    for (std::size_t begin = 0; begin < i_text.size();) {
        const std::size_t end = std::min(i_text.find_first_of(L" \t\r\n", begin), i_text.size() - 1) + 1;
        std::wstring_view word = std::wstring_view(i_text).substr(begin, end - begin);
        for (;;) {
            const int size = static_cast<int>(std::min(word.size(), most_in_a_line));
            int fits = 0;
            SIZE ignored{};
            GetTextExtentExPointW(screen, word.data(), size, i_width, &fits, nullptr, &ignored);
            if (fits + 1 >= size) // The blank at its end may stick out.
                break;
            fits = std::max(fits, 1);
            if (fits > 1 && IS_LOW_SURROGATE(word[static_cast<std::size_t>(fits)]))
                --fits;
            broken.append(word.substr(0, static_cast<std::size_t>(fits))) += L'\n';
            word.remove_prefix(static_cast<std::size_t>(fits));
        }
        broken += word;
        begin = end;
    }
    SelectObject(screen, old_font);
    ReleaseDC(nullptr, screen);
    return broken;
}

} // namespace DevHost
