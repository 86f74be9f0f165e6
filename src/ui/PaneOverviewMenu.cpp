// What can be done with the albums of the overview.

#include "ui/AlbumMenu.h"
#include "ui/Commands.h"
#include "ui/IconSizes.h"
#include "ui/PaneOverview.h"
#include "ui/SortMenu.h"
#include "ui/ids.h"

#include <algorithm>

namespace tessera {

Menu PaneOverview::contextMenu() const
{
    const std::vector<Album*> albums = m_plvwDetails.selectedAlbums();
    Menu mnu = beginAlbumMenu(albums, "PaneOverview");
    if (!mnu)
        return mnu;
    addSortMenu(mnu.get(), m_plvwDetails.handle(), albumCommand::kSortFirst, m_plvwDetails.sortColumn());
    addFolderEntry(mnu, albums.size());
    return mnu;
}

Handled PaneOverview::onRightClick(NMHDR&)
{
    m_balloon.hide();
    if (commands().isBusy() || m_plvwDetails.selectedCount() == 0)
        return 1;
    if (const Menu mnu = contextMenu())
        runAlbumMenu(commands(), handle(), mnu);
    return 1;
}

Handled PaneOverview::onDoubleClick(NMHDR& header)
{
    if (const int item = notificationAs<NMITEMACTIVATE>(header).iItem; item >= 0 && !commands().isBusy())
        play({&m_plvwDetails.album(item)}, GetKeyState(VK_CONTROL) < 0);
    return 0;
}

Handled PaneOverview::onEnter(NMHDR&)
{
    play(m_plvwDetails.selectedAlbums(), GetKeyState(VK_CONTROL) < 0);
    return 0;
}

void PaneOverview::onPlay(const Command& command)
{
    play(m_plvwDetails.selectedAlbums(), command.id == albumCommand::kAppend);
}

// A host call may end the plug-in, so the message comes first.
void PaneOverview::play(const std::vector<Album*>& albums, bool append)
{
    if (commands().isBusy())
        return;
    m_balloon.hide();
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
        commands().openFolder(*m_plvwDetails.selectedAlbums().front());
}

Handled PaneOverview::onWheel(const Message& message)
{
    return m_plvwDetails.style() == ListStyle::Icons ? stepIconSize(commands(), m_wheel, message) : kDefault;
}

} // namespace tessera
