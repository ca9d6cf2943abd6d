#include "browser/PageLayout.h"

#include "uix/WindowText.h"

#include <algorithm>

namespace DevHost {
namespace {

using Kind = PageBlock::Kind;

// Lengths in layout units.
constexpr int margin = 28;
constexpr int max_width = 520; // Longer lines are hard to read.
constexpr int paragraph_gap = 12;
constexpr int heading_gap = 18;
constexpr int small_gap = 4;     // Below a label and a list's item.
constexpr int field_padding = 8; // Above and below the text together, including the frame.
constexpr int button_height = 32;
constexpr int button_padding = 20;
constexpr int min_button_width = 96;
constexpr int button_gap = 10;

constexpr wchar_t font_name[] = L"Tahoma";
constexpr double text_points = 9.75;
constexpr double heading_points = 15;
constexpr UINT text_flags = DT_WORDBREAK | DT_NOPREFIX;

/// Layout units below a block.
int GapBelow(Kind i_kind) {
    switch (i_kind) {
    case Kind::Heading:
        return heading_gap;
    case Kind::Label:
    case Kind::ListItem:
        return small_gap;
    default:
        return paragraph_gap;
    }
}

} // namespace

PageLayout::PageLayout(const Scale& i_scale)
    : m_scale(i_scale)
    , m_text_font(i_scale.MakeFont(font_name, text_points))
    , m_heading_font(i_scale.MakeFont(font_name, heading_points)) {}

HFONT PageLayout::FontOf(Kind i_kind) const noexcept {
    return i_kind == Kind::Heading ? m_heading_font.get() : m_text_font.get();
}

SIZE PageLayout::SizeOf(const PageBlock& i_block, int i_width) const {
    const auto width = LONG{i_width};
    switch (i_block.kind) {
    case Kind::Field:
    case Kind::Password:
        return {width, TextSize(L"X", m_text_font.get(), 0, DT_SINGLELINE).cy + m_scale.Pixels(field_padding)};
    case Kind::Button: {
        const LONG caption = TextSize(i_block.text, m_text_font.get(), 0, DT_SINGLELINE).cx;
        return {std::clamp(caption + 2 * LONG{m_scale.Pixels(button_padding)}, LONG{m_scale.Pixels(min_button_width)},
                           std::max(width, LONG{m_scale.Pixels(min_button_width)})),
                m_scale.Pixels(button_height)};
    }
    case Kind::Link: {
        const SIZE text = TextSize(i_block.text, m_text_font.get(), i_width, text_flags);
        return {std::min(text.cx + 2, width), text.cy + 2}; // Room for the focus around it.
    }
    default:
        return {width, TextSize(i_block.text, FontOf(i_block.kind), i_width, text_flags).cy};
    }
}

PageLayout::Places PageLayout::Arrange(const Page& i_page, int i_width) const {
    const int edge = m_scale.Pixels(margin);
    const int width = std::clamp(i_width - 2 * edge, m_scale.Pixels(min_button_width), m_scale.Pixels(max_width));
    Places places;
    LONG bottom = edge;
    LONG gap = 0;
    const RECT* last_button = nullptr;
    places.blocks.reserve(i_page.blocks.size());
    for (const PageBlock& block : i_page.blocks) {
        RECT& place = places.blocks.emplace_back();
        if (block.kind == Kind::Hidden)
            continue;
        const SIZE size = SizeOf(block, width);
        const LONG beside = last_button != nullptr ? last_button->right + m_scale.Pixels(button_gap) : 0;
        const bool is_beside = block.kind == Kind::Button && last_button != nullptr && beside + size.cx <= edge + width;
        const LONG left = is_beside ? beside : edge;
        const LONG top = is_beside ? last_button->top : bottom + gap;
        place = {left, top, left + size.cx, top + size.cy};
        bottom = place.bottom;
        gap = m_scale.Pixels(GapBelow(block.kind));
        last_button = block.kind == Kind::Button ? &place : nullptr;
    }
    places.size = {0, bottom + edge}; // Never wider than the window.
    return places;
}

} // namespace DevHost
