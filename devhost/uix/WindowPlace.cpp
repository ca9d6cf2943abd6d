#include "uix/WindowPlace.h"

#include <algorithm>

namespace DevHost {
namespace {

LONG Place(LONG i_length, LONG i_middle, LONG i_begin, LONG i_end) noexcept {
    return std::clamp(i_middle - i_length / 2, i_begin, i_end - i_length);
}

} // namespace

RECT CentredPlace(SIZE i_size, const RECT& i_around, const RECT& i_work_area) noexcept {
    const LONG width = std::min(i_size.cx, i_work_area.right - i_work_area.left);
    const LONG height = std::min(i_size.cy, i_work_area.bottom - i_work_area.top);
    const LONG x = Place(width, (i_around.left + i_around.right) / 2, i_work_area.left, i_work_area.right);
    const LONG y = Place(height, (i_around.top + i_around.bottom) / 2, i_work_area.top, i_work_area.bottom);
    return {x, y, x + width, y + height};
}

RECT CentredPlace(SIZE i_size, HWND i_owner) noexcept {
    MONITORINFO monitor{};
    monitor.cbSize = sizeof(monitor);
    GetMonitorInfoW(MonitorFromWindow(i_owner, MONITOR_DEFAULTTOPRIMARY), &monitor);
    RECT around = monitor.rcWork;
    if (i_owner != nullptr && IsWindowVisible(i_owner) && !IsIconic(i_owner))
        GetWindowRect(i_owner, &around);
    return CentredPlace(i_size, around, monitor.rcWork);
}

} // namespace DevHost
