#include "ui/AlbumMenu.h"

#include "base/Errors.h"
#include "ui/Commands.h"
#include "ui/ids.h"

namespace tessera {

namespace {

std::string forMenu(const std::string& text)
{
    std::string shown;
    for (const char each : text)
        shown.append(each == '&' ? 2 : 1, each);
    return shown;
}

} // namespace

Menu beginAlbumMenu(std::span<Album* const> albums, const char* unit)
{
    Menu mnu = Menu::popup();
    if (!mnu) {
        assertionFailed("mnu.CreatePopupMenu()", unit, __LINE__);
        return mnu;
    }
    const std::string name = albums.size() == 1 ? forMenu(albums.front()->displayTitle) : "All";
    mnu.add(albumCommand::kPlay, "Play: " + name);
    mnu.add(albumCommand::kAppend, "Append To Playlist: " + name);
    return mnu;
}

void addFolderEntry(Menu& menu, std::size_t albums)
{
    menu.addSeparator();
    menu.add(albumCommand::kGoToDirectory, "Go To Directory", albums <= 1 ? MF_ENABLED : MF_GRAYED);
}

void runAlbumMenu(Commands& commands, HWND window, const Menu& menu)
{
    POINT cursor{};
    GetCursorPos(&cursor);
    UINT command = 0;
    commands.runLoop(
        [&] { command = menu.track(window, cursor, TPM_LEFTALIGN | TPM_TOPALIGN | TPM_RIGHTBUTTON); });
    if (command != 0 && IsWindow(window))
        SendMessageA(window, WM_COMMAND, command, 0);
}

} // namespace tessera
