#include "Benches.h"

#include "library/DatabaseReader.h"

namespace tessera::bench {

namespace {

// The records of a file as views of its bytes, so that the bare work has nothing to decode.
struct RecordViews : RecordSink {
    struct AlbumView {
        AlbumFields fields;
        std::vector<std::uint32_t> tracks;
    };
    struct ArtistView {
        ArtistFields fields;
        std::vector<std::uint32_t> albums;
    };

    void track(const TrackFields& fields) override { tracks.push_back(fields); }
    void album(const AlbumFields& fields, std::span<const std::uint32_t> indices) override
    {
        albums.push_back({fields, {indices.begin(), indices.end()}});
    }
    void artist(const ArtistFields& fields, std::span<const std::uint32_t> indices) override
    {
        artists.push_back({fields, {indices.begin(), indices.end()}});
    }

    std::vector<TrackFields> tracks;
    std::vector<AlbumView> albums;
    std::vector<ArtistView> artists;
};

void fill(Album& album, const AlbumFields& fields)
{
    album.id = fields.id;
    album.flags = fields.flags;
    album.filePosition = fields.position;
    album.hostTitle = fields.hostTitle;
    album.displayTitle = fields.displayTitle;
    album.type = fields.type;
    album.genre = fields.genre;
    album.duration = fields.duration;
    album.minBitrate = fields.minBitrate;
    album.maxBitrate = fields.maxBitrate;
    album.year = fields.year;
    album.path = fields.path;
    album.thumbnailFile = fields.thumbnailFile;
}

// The same records in the same maps.
void allocate(const RecordViews& views, Host& host, Library& library)
{
    std::vector<Track*> tracks;
    std::vector<Album*> albums;
    tracks.reserve(views.tracks.size());
    albums.reserve(views.albums.size());
    for (const TrackFields& fields : views.tracks) {
        auto track = std::make_unique<Track>();
        track->id = fields.id;
        track->filePosition = fields.position;
        track->fileName = fields.fileName;
        track->m_pMJFile = host.file(track->fileName);
        tracks.push_back(track.get());
        library.tracks.emplace(fields.id, std::move(track));
    }
    for (const auto& view : views.albums) {
        auto album = std::make_unique<Album>();
        fill(*album, view.fields);
        album->tracks.reserve(view.tracks.size());
        for (const std::uint32_t index : view.tracks) {
            Track* const track = tracks[index];
            track->album = album.get();
            album->tracks.emplace(track->id, track);
        }
        albums.push_back(album.get());
        library.albums.emplace(view.fields.id, std::move(album));
    }
    for (const auto& view : views.artists) {
        auto artist = std::make_unique<Artist>();
        artist->id = view.fields.id;
        artist->flags = view.fields.flags;
        artist->hostName = view.fields.hostName;
        artist->displayName = view.fields.displayName;
        artist->albums.reserve(view.albums.size());
        for (const std::uint32_t index : view.albums) {
            albums[index]->artist = artist.get();
            artist->albums.emplace(albums[index]->id, albums[index]);
        }
        library.artists.emplace(artist->id, std::move(artist));
    }
}

} // namespace

// Looking a file up in the stub host is one copy of a pointer and part of both.
Best benchLoad(const std::string& file, int runs)
{
    Surroundings surroundings;
    OneFileHost host;
    JobContext context = surroundings.context(systemFiles());
    const auto bytes = systemFiles().readAll(file);
    require(bytes.has_value(), "cannot read the database");
    RecordViews views;
    DatabaseReader(*bytes, file, context, views).read();

    const auto work = [&] {
        Database database;
        settleHeap();
        const WorkClock::time_point start = WorkClock::now();
        require(database.read(file, host, context, [] {}), "the load failed");
        const double time = millisecondsSince(start);
        require(database.library().tracks.size() == views.tracks.size(), "the load lost tracks");
        return time;
    };
    const auto bare = [&] {
        Library library;
        settleHeap();
        const WorkClock::time_point start = WorkClock::now();
        {
            const auto read = systemFiles().readAll(file);
            require(read && read->size() == bytes->size(), "cannot read the database");
            allocate(views, host, library);
        }
        return millisecondsSince(start);
    };
    return bestOf(runs, work, bare);
}

} // namespace tessera::bench
