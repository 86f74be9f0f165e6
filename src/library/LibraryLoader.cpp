#include "library/LibraryLoader.h"

#include "library/Assertions.h"

#include <new>

namespace tessera {

namespace {

template <class Collection>
auto& appended(Collection& records, std::int32_t id)
{
    using Record = typename Collection::mapped_type::element_type;
    auto& record = *records.emplace(id, std::make_unique<Record>()).first->second;
    record.id = id;
    return record;
}

} // namespace

void LibraryLoader::track(const TrackFields& fields)
{
    Track& track = appended(m_library.tracks, fields.id);
    m_tracks.push_back(&track);
    track.filePosition = fields.position;
    track.fileName = fields.fileName;
    track.m_pMJFile = m_host.file(track.fileName);
    if (!track.m_pMJFile)
        throw ReadFailure{nullptr, 0, Severity::Exclamation,
                          format("Could not find the filename '%s' in your MJ database!",
                                 shownName(track.fileName).c_str())};
}

void LibraryLoader::album(const AlbumFields& fields, std::span<const std::uint32_t> tracks)
{
    Album& album = appended(m_library.albums, fields.id);
    m_albums.push_back(&album);
    album.filePosition = fields.position;
    album.flags = fields.flags;
    album.hostTitle = fields.hostTitle;
    album.displayTitle = fields.displayTitle;
    album.type = fields.type;
    album.genre = fields.genre;
    album.duration = fields.duration;
    album.minBitrate = fields.minBitrate;
    album.maxBitrate = fields.maxBitrate;
    album.year = fields.year;
    album.rank = fields.rank;
    album.newDate = fields.newDate;
    album.path = fields.path;
    album.thumbnailFile = fields.thumbnailFile;
    album.tracks.reserve(tracks.size());
    for (const std::uint32_t index : tracks) {
        m_context.stopIfTerminating();
        Track* track = m_tracks[index];
        track->album = &album;
        album.tracks.emplace(track->id, track);
    }
}

void LibraryLoader::artist(const ArtistFields& fields, std::span<const std::uint32_t> albums)
{
    Artist& artist = appended(m_library.artists, fields.id);
    artist.filePosition = fields.position;
    artist.flags = fields.flags;
    artist.hostName = fields.hostName;
    artist.displayName = fields.displayName;
    artist.complete = fields.complete;
    artist.albums.reserve(albums.size());
    for (const std::uint32_t index : albums) {
        m_context.stopIfTerminating();
        Album* album = m_albums[index];
        album->artist = &artist;
        artist.albums.emplace(album->id, album);
    }
}

void LibraryLoader::image(std::uint32_t index, ByteView bytes)
{
    Album& album = *m_albums[index];
    album.imageLength = static_cast<std::uint32_t>(bytes.size());
    try {
        album.m_hGlobalThumbnail.assign(bytes.begin(), bytes.end());
    } catch (const std::bad_alloc&) {
        throw ReadFailure{"pAlbum->m_hGlobalThumbnail", assertions::kImageMemory, Severity::Stop, {}};
    }
}

} // namespace tessera
