#include "ui/TokenMenu.h"

#include "base/Errors.h"
#include "tokens/TokenParser.h"
#include "windowing/Menu.h"

#include <span>

namespace tessera {

namespace {

std::string showTokenMenu(HWND owner, POINT screen, std::span<const char* const> tokens)
{
    Menu mnu = Menu::popup();
    if (!mnu) {
        assertionFailed("mnu.CreatePopupMenu()", "TokenParser", __LINE__);
        return {};
    }
    UINT id = 0;
    for (const char* const token : tokens) {
        mnu.add(++id, token);
    }
    const UINT chosen = mnu.track(owner, screen);
    return chosen == 0 ? std::string() : mnu.itemText(chosen);
}

} // namespace

std::string ShowAlbumTokenMenu(HWND owner, POINT screen)
{
    return showTokenMenu(owner, screen, albumTokens());
}

std::string ShowTrackTokenMenu(HWND owner, POINT screen)
{
    return showTokenMenu(owner, screen, trackTokens());
}

} // namespace tessera
