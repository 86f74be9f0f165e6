#pragma once

#include "library/Records.h"

#include <span>
#include <string>
#include <string_view>

namespace tessera {

// Templates with case-insensitive tokens in angle brackets. Stateless but for the sample album
// and the host's artwork folder; safe to use from any thread once made.
class TokenParser {
public:
    // Builds the sample album, its artist and two tracks.
    TokenParser();
    TokenParser(const TokenParser&) = delete;
    TokenParser& operator=(const TokenParser&) = delete;

    // The folder that "<MJArtworkDir>" stands for, without a trailing backslash.
    void setArtworkFolder(std::string folder) { m_artworkFolder = std::move(folder); }
    const std::string& artworkFolder() const { return m_artworkFolder; }

    std::string expandAlbum(std::string_view text, const Album& album) const;
    enum TrackFlag : unsigned { kPreview = 1, kFromHostFile = 2 };
    // Throws HostError(kErrorPointer) for a track without a host file unless it is a preview.
    std::string expandTrack(std::string_view text, const Track& track, unsigned flags) const;
    // No escape pass: backslashes survive.
    std::string expandArtwork(std::string_view pattern, const Album& album) const;

    Album& sampleAlbum() { return m_album; }
    const Album& sampleAlbum() const { return m_album; }
    const Track& sampleTrack() const { return m_tracks[0]; }

private:
    Artist m_artist;
    Album m_album;
    Track m_tracks[2];
    std::string m_artworkFolder;
};

// The escape pass that album and track templates go through first; works in 8192 characters.
std::string processTemplateEscapes(std::string_view text);

std::string artworkTokenHelp();
std::string trackTokenHelp();
// Token texts of the two insert menus, in menu order.
std::span<const char* const> albumTokens();
std::span<const char* const> trackTokens();

} // namespace tessera
