// Albums dragged out as their files.

#include "library/TrackOrder.h"
#include "ui/AlbumList.h"
#include "ui/Commands.h"
#include "windowing/FileDrag.h"

namespace tessera {

// The list may be gone when the drag is over.
void AlbumList::dragSelection()
{
    if (m_commands.isBusy())
        return;
    std::vector<std::string> files;
    for (const Album* const dragged : selectedAlbums()) {
        for (const Track* const track : tracksInOrder(*dragged, m_commands.general().sortTracksByLocation))
            files.push_back(track->fileName);
    }
    if (!files.empty())
        m_commands.runLoop([&] { dragFiles(files); });
}

} // namespace tessera
