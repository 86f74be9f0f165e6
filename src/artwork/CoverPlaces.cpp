#include "artwork/CoverPlaces.h"

#include "base/Paths.h"
#include "base/Text.h"

#include <algorithm>

namespace tessera {

CoverPlaces::CoverPlaces(std::string_view hostFolder, std::string_view patterns)
{
    trust(hostFolder);
    for (const std::string& pattern : split(patterns, "\t")) {
        const std::string written = pattern.substr(0, pattern.find('<'));
        const std::size_t folder = findLastBackslash(withBackslashes(written));
        trust(std::string_view(written).substr(0, folder == std::string::npos ? 0 : folder));
    }
}

void CoverPlaces::trust(std::string_view path)
{
    std::string share = networkShare(path);
    const std::size_t last = findLastBackslash(share);
    if (last != std::string::npos && last > 1 && last + 1 < share.size()) { // a server alone is not enough
        m_shares.push_back(std::move(share));
    }
}

bool CoverPlaces::mayOpen(std::string_view path, const Album& album) const
{
    if (isDevice(path)) {
        return false;
    }
    const std::string share = networkShare(path);
    return share.empty() || std::ranges::find(m_shares, share) != m_shares.end() ||
           std::ranges::any_of(album.tracks, [&](const auto& track) {
               return track.second && networkShare(track.second->fileName) == share;
           });
}

} // namespace tessera
