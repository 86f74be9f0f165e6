#pragma once

#include "library/DatabaseReader.h"

namespace tessera {

// Makes the records of a library from what a database holds, linked to each other and to the
// host's files.
class LibraryLoader : public RecordSink {
public:
    LibraryLoader(Library& library, std::uint32_t& databaseFlags, Host& host, const JobContext& context)
        : m_library(library), m_databaseFlags(databaseFlags), m_host(host), m_context(context)
    {
    }

    void databaseFlags(std::uint32_t flags) override { m_databaseFlags = flags; }
    void track(const TrackFields& fields) override;
    void trackAlbum(std::int32_t albumId) override { m_tracks.back()->albumId = albumId; }
    void album(const AlbumFields& fields, std::span<const std::uint32_t> tracks) override;
    void artist(const ArtistFields& fields, std::span<const std::uint32_t> albums) override;
    void image(std::uint32_t album, ByteView bytes) override;

private:
    Library& m_library;
    std::uint32_t& m_databaseFlags;
    Host& m_host;
    const JobContext& m_context;
    std::vector<Track*> m_tracks; // by index in the file
    std::vector<Album*> m_albums;
};

} // namespace tessera
