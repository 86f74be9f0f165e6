#include "shell/TabStops.h"

namespace tessera {

namespace {

void collect(HWND parent, std::vector<HWND>& stops)
{
    for (HWND child = GetWindow(parent, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        if (!IsWindowVisible(child) || !IsWindowEnabled(child)) {
            continue;
        }
        if ((GetWindowLongA(child, GWL_STYLE) & WS_TABSTOP) != 0) {
            stops.push_back(child);
        } else {
            collect(child, stops);
        }
    }
}

} // namespace

std::vector<HWND> tabStops(HWND window)
{
    std::vector<HWND> stops;
    collect(window, stops);
    return stops;
}

int focusedStop(const std::vector<HWND>& stops, HWND focus)
{
    for (std::size_t i = 0; i < stops.size(); ++i) {
        if (stops[i] == focus || IsChild(stops[i], focus)) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

} // namespace tessera
