#include "uix/Scroller.h"

#include "uix/Scale.h"

#include <algorithm>

namespace DevHost {
namespace {

constexpr int line_units = 24;

int Line() {
    return Scale::OfScreen().Pixels(line_units);
}

} // namespace

void Scroller::SetContent(SIZE i_size) noexcept {
    m_horizontal.content = static_cast<int>(i_size.cx);
    m_vertical.content = static_cast<int>(i_size.cy);
    Update();
}

void Scroller::Reset() noexcept {
    ScrollTo(m_horizontal, 0);
    ScrollTo(m_vertical, 0);
}

void Scroller::Reveal(HWND i_child) noexcept {
    RECT rect;
    GetWindowRect(i_child, &rect);
    MapWindowPoints(nullptr, m_window, reinterpret_cast<POINT*>(&rect), 2);
    Reveal(m_vertical, static_cast<int>(rect.top), static_cast<int>(rect.bottom));
    Reveal(m_horizontal, static_cast<int>(rect.left), static_cast<int>(rect.right));
}

/// Shows the start of what is longer than the page.
void Scroller::Reveal(Axis& io_axis, int i_begin, int i_end) noexcept {
    if (i_begin < 0 || i_end - i_begin > io_axis.page)
        ScrollTo(io_axis, io_axis.offset + i_begin - Line());
    else if (i_end > io_axis.page)
        ScrollTo(io_axis, io_axis.offset + i_end - io_axis.page + Line());
}

bool Scroller::Handle(UINT i_message, WPARAM i_wparam) noexcept {
    switch (i_message) {
    case WM_SIZE:
        Update();
        return false;
    case WM_VSCROLL:
        ScrollByRequest(m_vertical, LOWORD(i_wparam));
        return true;
    case WM_HSCROLL:
        ScrollByRequest(m_horizontal, LOWORD(i_wparam));
        return true;
    case WM_MOUSEWHEEL: {
        constexpr int lines_per_notch = 3;
        ScrollTo(m_vertical,
                 m_vertical.offset - static_cast<short>(HIWORD(i_wparam)) * lines_per_notch * Line() / WHEEL_DELTA);
        return true;
    }
    default:
        return false;
    }
}

/// A bar that appears or disappears changes the client area, which sends WM_SIZE here again: hence the flag, and two
/// rounds.
void Scroller::Update() noexcept {
    if (m_is_updating)
        return;
    m_is_updating = true;
    for (int round = 0; round < 2; ++round) {
        RECT client;
        GetClientRect(m_window, &client);
        m_horizontal.page = static_cast<int>(client.right);
        m_vertical.page = static_cast<int>(client.bottom);
        for (Axis* const axis : {&m_vertical, &m_horizontal}) {
            const SCROLLINFO info{sizeof(info),
                                  SIF_RANGE | SIF_PAGE,
                                  0,
                                  std::max(axis->content - 1, 0),
                                  static_cast<UINT>(axis->page),
                                  0,
                                  0};
            SetScrollInfo(m_window, axis->bar, &info, TRUE);
            ScrollTo(*axis, axis->offset);
        }
    }
    m_is_updating = false;
}

void Scroller::ScrollTo(Axis& io_axis, int i_offset) noexcept {
    const int offset = std::clamp(i_offset, 0, std::max(io_axis.content - io_axis.page, 0));
    const int way = io_axis.offset - offset;
    if (way == 0)
        return;
    io_axis.offset = offset;
    SetScrollPos(m_window, io_axis.bar, offset, TRUE);
    ScrollWindowEx(m_window, io_axis.bar == SB_HORZ ? way : 0, io_axis.bar == SB_VERT ? way : 0, nullptr, nullptr,
                   nullptr, nullptr, SW_SCROLLCHILDREN | SW_INVALIDATE | SW_ERASE);
}

void Scroller::ScrollByRequest(Axis& io_axis, WORD i_request) noexcept {
    SCROLLINFO info{};
    info.cbSize = sizeof(info);
    info.fMask = SIF_TRACKPOS;
    GetScrollInfo(m_window, io_axis.bar, &info);
    const int page = std::max(io_axis.page - Line(), Line());
    switch (i_request) {
    case SB_LINEUP:
        return ScrollTo(io_axis, io_axis.offset - Line());
    case SB_LINEDOWN:
        return ScrollTo(io_axis, io_axis.offset + Line());
    case SB_PAGEUP:
        return ScrollTo(io_axis, io_axis.offset - page);
    case SB_PAGEDOWN:
        return ScrollTo(io_axis, io_axis.offset + page);
    case SB_TOP:
        return ScrollTo(io_axis, 0);
    case SB_BOTTOM:
        return ScrollTo(io_axis, io_axis.content);
    case SB_THUMBPOSITION:
    case SB_THUMBTRACK:
        return ScrollTo(io_axis, info.nTrackPos);
    default:
        return;
    }
}

} // namespace DevHost
