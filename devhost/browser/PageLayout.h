#pragma once

#include "browser/Page.h"
#include "uix/Scale.h"

#include <vector>

namespace DevHost {

/// Where the blocks of a page go and how they look: one below the other, with consecutive buttons in a row.
class PageLayout {
public:
    explicit PageLayout(const Scale& i_scale);

    struct Places {
        std::vector<RECT> blocks; ///< In pixels from the page's top left corner; empty for hidden blocks.
        SIZE size{};              ///< Of the entire page.
    };
    Places Arrange(const Page& i_page, int i_width) const;

    HFONT FontOf(PageBlock::Kind i_kind) const noexcept;

private:
    SIZE SizeOf(const PageBlock& i_block, int i_width) const;

    Scale m_scale;
    Font m_text_font;
    Font m_heading_font;
};

} // namespace DevHost
