#include "library/TrackOrder.h"

#include "base/Text.h"

#include <algorithm>

namespace tessera {

std::vector<Track*> tracksInOrder(const Album& album, bool byLocation)
{
    std::vector<Track*> tracks;
    tracks.reserve(album.tracks.size());
    for (const auto& [id, track] : album.tracks)
        tracks.push_back(track);
    if (byLocation)
        std::ranges::stable_sort(tracks, [](const Track* left, const Track* right) {
            return compareNoCase(left->fileName, right->fileName) < 0;
        });
    return tracks;
}

} // namespace tessera
