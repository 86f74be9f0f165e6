// What can be done with the albums of the overview.

#include "base/Errors.h"
#include "ui/Commands.h"
#include "ui/PaneOverview.h"
#include "ui/SortMenu.h"
#include "ui/ids.h"

#include <algorithm>

namespace tessera {

namespace {

constexpr UINT kPlayedMessage = WM_APP + 1;
constexpr int kLargestFixedSize = 5; // index of the size combo; behind it comes the custom size

std::string forMenu(const std::string& text)
{
    std::string shown;
    for (const char each : text)
        shown.append(each == '&' ? 2 : 1, each);
    return shown;
}

} // namespace

Menu PaneOverview::contextMenu() const
{
    Menu mnu = Menu::popup();
    if (!mnu) {
        assertionFailed("mnu.CreatePopupMenu()", "PaneOverview", __LINE__);
        return mnu;
    }
    const bool one = m_plvwDetails.selectedCount() == 1;
    const std::string name =
        one ? forMenu(m_plvwDetails.album(m_plvwDetails.selectedItem()).displayTitle) : "All";
    mnu.add(albumCommand::kPlay, "Play: " + name);
    mnu.add(albumCommand::kAppend, "Append To Playlist: " + name);
    addSortMenu(mnu.get(), m_plvwDetails.handle(), albumCommand::kSortFirst, m_plvwDetails.sortColumn());
    mnu.addSeparator();
    mnu.add(albumCommand::kGoToDirectory, "Go To Directory",
            m_plvwDetails.selectedCount() <= 1 ? MF_ENABLED : MF_GRAYED);
    return mnu;
}

Handled PaneOverview::onRightClick(NMHDR&)
{
    m_balloon.hide();
    if (commands().isBusy() || m_plvwDetails.selectedCount() == 0)
        return 1;
    const Menu mnu = contextMenu();
    if (!mnu)
        return 1;
    POINT cursor{};
    GetCursorPos(&cursor);
    const HWND self = handle();
    // The pane may be gone when the menu is closed.
    if (const UINT command = mnu.track(self, cursor, TPM_LEFTALIGN | TPM_TOPALIGN | TPM_RIGHTBUTTON);
        command != 0 && IsWindow(self))
        SendMessageA(self, WM_COMMAND, command, 0);
    return 1;
}

Handled PaneOverview::onDoubleClick(NMHDR& header)
{
    if (notificationAs<NMITEMACTIVATE>(header).iItem >= 0)
        play(false);
    return 0;
}

Handled PaneOverview::onEnter(NMHDR&)
{
    play(GetKeyState(VK_CONTROL) < 0);
    return 0;
}

void PaneOverview::onPlay(const Command& command)
{
    play(command.id == albumCommand::kAppend);
}

// A host call may end the plug-in, so the message comes first.
void PaneOverview::play(bool append)
{
    if (commands().isBusy())
        return;
    m_balloon.hide();
    const std::vector<Album*> albums = m_plvwDetails.selectedAlbums();
    if (albums.empty())
        return;
    if (!append)
        PostMessageA(handle(), kPlayedMessage, 0, 0);
    commands().playAlbums(albums, append);
}

Handled PaneOverview::onPlayed(const Message&)
{
    if (!commands().isBusy())
        updateOverviewStatus();
    m_plvwDetails.view().invalidate(false);
    return 0;
}

void PaneOverview::onSort(const Command& command)
{
    const int column = static_cast<int>(command.id) - albumCommand::kSortFirst;
    if (!commands().isBusy() && column < static_cast<int>(kColumnCount)) {
        m_plvwDetails.columnClicked(column);
        updateOverviewStatus();
    }
}

void PaneOverview::onGoToDirectory(const Command&)
{
    if (!commands().isBusy() && m_plvwDetails.selectedCount() > 0)
        commands().openFolder(m_plvwDetails.selectedAlbums().front()->path);
}

// With the Ctrl key down: the next icon size.
Handled PaneOverview::onWheel(const Message& message)
{
    if ((LOWORD(message.wParam) & MK_CONTROL) == 0)
        return kDefault;
    const bool larger = static_cast<short>(HIWORD(message.wParam)) > 0;
    const int size = commands().artwork().imageSizeIndex;
    const int next = std::clamp(size + (larger ? 1 : -1), 0, kLargestFixedSize);
    const bool shown = m_plvwDetails.style() == ListStyle::Icons;
    if (shown && next != size && !(larger && size > kLargestFixedSize) && !commands().isBusy() &&
        !commands().coversLoading())
        commands().imageSizeChosen(next);
    return 0;
}

} // namespace tessera
