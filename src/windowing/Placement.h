#pragma once

#include <windows.h>

namespace tessera {

// Moves a top-level window to the middle of the window that owns it, inside the work area of that
// window's monitor; of one that is not to be seen, or of none, to the middle of the work area.
void centreOverOwner(HWND window);

} // namespace tessera
