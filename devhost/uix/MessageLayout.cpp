#include "uix/MessageLayout.h"

#include "uix/MessageDialog.h"
#include "uix/WindowText.h"

#include <algorithm>
#include <numeric>

namespace DevHost {
namespace {

// Lengths in layout units.
constexpr int margin = 16;
constexpr int icon_size = 32;
constexpr int text_width = 380;
constexpr int wide_text_width = 640;  // For texts that would otherwise be too high.
constexpr int high_text_height = 240; // Beyond this a text is too high.
constexpr int max_text_height = 480;  // Longer text is cut off.
constexpr int min_client_width = 280;
constexpr int button_height = 26;
constexpr int min_button_width = 88;
constexpr int button_padding = 14;
constexpr int button_gap = 8;
constexpr int button_margin = 12;

Font MakeMessageFont() {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof(metrics);
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(metrics), &metrics, 0);
    return Font(CreateFontIndirectW(&metrics.lfMessageFont));
}

/// What remains of the screen for the text, so that the buttons stay on it.
LONG ScreenHeightForText(const Scale& i_scale) {
    RECT area{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    const LONG frame = GetSystemMetrics(SM_CYCAPTION) + 2 * GetSystemMetrics(SM_CYFIXEDFRAME);
    return area.bottom - area.top - frame - LONG{i_scale.Pixels(2 * margin + button_height + 2 * button_margin)};
}

/// Breaks the text, in a wider box if it would be too high otherwise, and returns its size.
SIZE FitText(std::wstring& io_text, HFONT i_font, const Scale& i_scale) {
    const std::wstring whole = std::move(io_text);
    SIZE size{};
    for (const int width : {text_width, wide_text_width}) {
        io_text = WithBrokenWords(whole, i_font, i_scale.Pixels(width));
        size = TextSize(io_text, i_font, i_scale.Pixels(width), MessageDialog::text_flags);
        if (size.cy <= i_scale.Pixels(high_text_height))
            break;
    }
    size.cy = std::min({size.cy, LONG{i_scale.Pixels(max_text_height)}, ScreenHeightForText(i_scale)});
    return size;
}

LONG ButtonWidth(const std::wstring& i_caption, HFONT i_font, const Scale& i_scale) {
    const LONG text = TextSize(i_caption, i_font, 0, DT_SINGLELINE).cx;
    return std::max(text + 2 * LONG{i_scale.Pixels(button_padding)}, LONG{i_scale.Pixels(min_button_width)});
}

} // namespace

MessageLayout::MessageLayout(const MessageContent& i_content, const Scale& i_scale)
    : font(MakeMessageFont()), shown_text(i_content.text) {
    const LONG edge = i_scale.Pixels(margin);
    const LONG icon_side = i_content.icon != nullptr ? i_scale.Pixels(icon_size) : 0;
    const LONG text_left = icon_side != 0 ? edge + icon_side + edge : edge;
    const SIZE text_size = FitText(shown_text, font.get(), i_scale);
    const LONG content_height = std::max(icon_side, text_size.cy);

    const LONG gap = i_scale.Pixels(button_gap);
    const LONG button_edge = i_scale.Pixels(button_margin);
    std::vector<LONG> widths;
    std::ranges::transform(i_content.buttons, std::back_inserter(widths),
                           [&](const std::wstring& i_caption) { return ButtonWidth(i_caption, font.get(), i_scale); });
    const LONG buttons_width =
        std::accumulate(widths.begin(), widths.end(), gap * static_cast<LONG>(widths.size() - 1));

    button_area_top = edge + content_height + edge;
    client.cx = std::max(
        {text_left + text_size.cx + edge, buttons_width + 2 * button_edge, LONG{i_scale.Pixels(min_client_width)}});
    client.cy = button_area_top + i_scale.Pixels(button_height) + 2 * button_edge;
    icon = {edge, edge, edge + icon_side, edge + icon_side};
    // A single line is centred on the icon.
    const LONG text_top = edge + (content_height - text_size.cy) / 2;
    text = {text_left, text_top, text_left + text_size.cx, text_top + text_size.cy};
    LONG left = client.cx - button_edge - buttons_width;
    for (const LONG width : widths) {
        buttons.push_back({left, button_area_top + button_edge, left + width, client.cy - button_edge});
        left += width + gap;
    }
}

} // namespace DevHost
