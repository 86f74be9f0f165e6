#pragma once

#include "library/Records.h"
#include "windowing/Menu.h"

#include <span>

namespace tessera {

class Commands;

// A menu that begins with the entries that play and append these albums; empty-handed, after the
// assertion of the unit, when it cannot be made.
Menu beginAlbumMenu(std::span<Album* const> albums, const char* unit);
// A separator and the entry that shows the folder, for one album at most.
void addFolderEntry(Menu& menu, std::size_t albums);
// Shows the menu at the pointer and sends what is chosen to the window, if it is still there.
void runAlbumMenu(Commands& commands, HWND window, const Menu& menu);

} // namespace tessera
