#include "windowing/Placement.h"

#include <algorithm>

namespace tessera {

namespace {

RECT workAreaOf(HWND window)
{
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoA(MonitorFromWindow(window, MONITOR_DEFAULTTOPRIMARY), &monitor);
    return monitor.rcWork;
}

// The start of an extent in the middle of a range, and as far as it can be inside the limits.
LONG middle(LONG extent, LONG from, LONG to, LONG low, LONG high)
{
    const LONG start = from + (to - from - extent) / 2;
    return std::max(low, std::min(start, high - extent));
}

} // namespace

void centreOverOwner(HWND window)
{
    const HWND owner = GetWindow(window, GW_OWNER);
    const RECT work = workAreaOf(owner ? owner : window);
    RECT around = work;
    if (owner && IsWindowVisible(owner) && !IsIconic(owner))
        GetWindowRect(owner, &around);
    RECT place{};
    GetWindowRect(window, &place);
    const LONG left = middle(place.right - place.left, around.left, around.right, work.left, work.right);
    const LONG top = middle(place.bottom - place.top, around.top, around.bottom, work.top, work.bottom);
    SetWindowPos(window, nullptr, static_cast<int>(left), static_cast<int>(top), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

} // namespace tessera
