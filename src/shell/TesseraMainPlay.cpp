// Playing albums and showing their folders.

#include "shell/TesseraMain.h"

#include "library/TrackOrder.h"
#include "windowing/FileDialogs.h"

namespace tessera {

PlayRequest TesseraMain::requestFor(const Album& album) const
{
    PlayRequest request;
    for (const Track* const track : tracksInOrder(album, m_settings.general.sortTracksByLocation)) {
        request.files.push_back(track->fileName);
    }
    return request;
}

// The records are read before the host is called: a call of the host may end everything.
void TesseraMain::playAlbums(std::span<Album* const> albums, bool append)
{
    if (!maySelect()) {
        return;
    }
    std::vector<PlayRequest> requests;
    for (const Album* const album : albums) {
        PlayRequest request = requestFor(*album);
        request.append = append || !requests.empty();
        request.playNow = !request.append;
        requests.push_back(std::move(request));
    }
    const std::shared_ptr<TesseraMain> alive = shared_from_this();
    for (const PlayRequest& request : requests) {
        playFiles(request);
    }
}

void TesseraMain::playAlbumFrom(const Album& album, int start)
{
    PlayRequest request = requestFor(album);
    request.start = start;
    request.playNow = true;
    playFiles(request);
}

void TesseraMain::playEntry(int entry)
{
    if (maySelect()) {
        m_host.playEntry(entry);
    }
}

void TesseraMain::openFolder(const Album& album)
{
    bool shown = m_artwork.places().mayOpen(album.path, album);
    const std::string path = album.path;
    if (shown) {
        runLoop([&] { shown = showFolder(m_hwndOwner, path); }); // the system may handle messages inside
    }
    if (!shown && !m_terminating) {
        showMessage(MB_OK | MB_ICONEXCLAMATION, format("There is no folder '%s'!", shownName(path).c_str()));
    }
}

} // namespace tessera
