#pragma once

#include <string>
#include <windows.h>

namespace tessera {

// The insert menus at a point of the screen. They answer the token chosen, "" for none.
std::string ShowAlbumTokenMenu(HWND owner, POINT screen);
std::string ShowTrackTokenMenu(HWND owner, POINT screen);

} // namespace tessera
