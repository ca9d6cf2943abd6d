#pragma once

#include "qorv/Base.h"

namespace DevHost {

/// Lets a window show content that is larger than its client area: scroll bars appear when needed, and the child
/// windows move along.
class Scroller {
public:
    explicit Scroller(HWND i_window) noexcept : m_window(i_window) {}

    /// Sets the content's size in pixels; keeps the scroll position as far as possible.
    void SetContent(SIZE i_size) noexcept;

    /// Scrolls back to the top left corner.
    void Reset() noexcept;

    /// Scrolls a child window into view.
    void Reveal(HWND i_child) noexcept;

    /// Pass it the window's messages. True if it has handled one (never for WM_SIZE, which it only follows).
    bool Handle(UINT i_message, WPARAM i_wparam) noexcept;

    /// How far the content is scrolled.
    POINT Offset() const noexcept { return {m_horizontal.offset, m_vertical.offset}; }

private:
    struct Axis {
        int bar;
        int content = 0;
        int page = 0;
        int offset = 0;
    };

    void Update() noexcept;
    void Reveal(Axis& io_axis, int i_begin, int i_end) noexcept;
    void ScrollTo(Axis& io_axis, int i_offset) noexcept;
    void ScrollByRequest(Axis& io_axis, WORD i_request) noexcept;

    HWND m_window;
    Axis m_horizontal{.bar = SB_HORZ};
    Axis m_vertical{.bar = SB_VERT};
    bool m_is_updating = false;
};

} // namespace DevHost
