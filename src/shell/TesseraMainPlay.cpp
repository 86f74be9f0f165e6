// Playing albums and showing their folders.

#include "shell/TesseraMain.h"

#include "base/Text.h"
#include "library/TrackOrder.h"

#include <shellapi.h>

namespace tessera {

// The records are read before the host is called: a call of the host may end everything.
void TesseraMain::playAlbums(std::span<Album* const> albums, bool append)
{
    if (!maySelect()) {
        return;
    }
    std::vector<PlayRequest> requests;
    for (const Album* const album : albums) {
        PlayRequest request;
        for (const Track* const track : tracksInOrder(*album, m_settings.general.sortTracksByLocation)) {
            request.files.push_back(track->fileName);
        }
        request.append = append || !requests.empty();
        request.playNow = !request.append;
        requests.push_back(std::move(request));
    }
    const std::shared_ptr<TesseraMain> alive = shared_from_this();
    for (const PlayRequest& request : requests) {
        playFiles(request);
    }
}

void TesseraMain::openFolder(const std::string& path)
{
    const std::string parameters = format("/n,/e,%s", path.c_str());
    ShellExecuteA(m_hwndOwner, "open", "explorer", parameters.c_str(), nullptr, SW_SHOWNORMAL);
}

} // namespace tessera
