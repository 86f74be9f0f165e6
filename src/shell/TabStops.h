#pragma once

#include <vector>
#include <windows.h>

namespace tessera {

// The windows below a window that take the focus by the Tab key, in their order on the screen's
// stack: visible, enabled, marked as tab stops; what lies inside a tab stop is not entered.
std::vector<HWND> tabStops(HWND window);
// Place of the stop that holds the focus or has it inside; -1: none.
int focusedStop(const std::vector<HWND>& stops, HWND focus);

} // namespace tessera
