#pragma once

#include <windows.h>

namespace tessera {

// Whether the window with the focus works with a key message, so that a container's accelerators may not
// have it. Controls of ours say so themselves (WM_GETDLGCODE with the message); for the system's controls
// it is what they are known to do.
bool isOwnKey(HWND focus, const MSG& message);

// Of the keys that are held, as IOleControlSite wants them.
inline constexpr DWORD kShiftKey = 1;
inline constexpr DWORD kControlKey = 2;
inline constexpr DWORD kAltKey = 4;
DWORD keyModifiers();

} // namespace tessera
