#include "library/DatabaseReader.h"

#include "library/Assertions.h"
#include "library/Format.h"

#include <algorithm>

namespace tessera {

namespace {

// In place of a track's album id once the album has listed it.
constexpr std::int32_t kListed = 0;

ReadFailure invalid()
{
    return {nullptr, 0, Severity::Stop, "Invalid database!"};
}

ReadFailure shortRead()
{
    return {"(DWORD)lLength <= m_dwFileRemaining", assertions::kShortRead, Severity::Stop, {}};
}

std::string versionMessage(const std::string& fileName, std::int32_t found)
{
    return format("Error reading \"%s\"\n\nInvalid version of database ... can only support version %d ... "
                  "found %d!",
                  fileName.c_str(), static_cast<int>(ts2::kVersion), static_cast<int>(found));
}

bool ascending(const std::vector<std::int32_t>& ids)
{
    return std::ranges::adjacent_find(ids, std::greater_equal<>()) == ids.end();
}

} // namespace

std::uint32_t FieldReader::word()
{
    std::uint32_t value = 0;
    if (!m_dwFileRemaining.take(value))
        throw shortRead();
    return value;
}

// A length or count; below 1 it takes nothing.
std::uint32_t FieldReader::length()
{
    const std::int32_t value = number();
    m_sawNegative = m_sawNegative || value < 0;
    return static_cast<std::uint32_t>(std::max(value, 0));
}

std::string_view FieldReader::text()
{
    const ByteView bytes = block(length());
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

void FieldReader::idList(std::vector<std::int32_t>& ids)
{
    const std::uint32_t count = length();
    if (count > remaining() / 4)
        throw shortRead();
    ids.resize(count);
    for (std::int32_t& id : ids)
        id = number();
}

ByteView FieldReader::block(std::uint32_t length)
{
    ByteView bytes;
    if (!m_dwFileRemaining.takeBlock(length, bytes))
        throw shortRead();
    return bytes;
}

bool DatabaseReader::Ids::append(std::int32_t id)
{
    if (id < 1 || (!m_ids.empty() && id <= m_ids.back()))
        return false;
    m_ids.push_back(id);
    return true;
}

// Below 0 when there is no such id.
std::int64_t DatabaseReader::Ids::find(std::int32_t id)
{
    if (m_next >= m_ids.size() || m_ids[m_next] != id) {
        const auto found = std::ranges::lower_bound(m_ids, id);
        if (found == m_ids.end() || *found != id)
            return -1;
        m_next = static_cast<std::size_t>(found - m_ids.begin());
    }
    return static_cast<std::int64_t>(m_next++);
}

DatabaseReader::DatabaseReader(ByteView bytes, const std::string& fileName, JobContext& context,
                               RecordSink& sink)
    : m_fields(bytes), m_fileName(fileName), m_context(context), m_sink(sink)
{
}

void DatabaseReader::read()
{
    readHeader();
    readTracks();
    readAlbums();
    readArtists();
    if ((m_flags & ts2::kHasImages) != 0)
        readImages();
    expect(m_imageCount == m_imageAlbums.size() && m_fields.remaining() == 0 && !m_fields.sawNegative());
    if (!m_regular || !linksAgree())
        refuse();
}

void DatabaseReader::refuse()
{
    throw invalid();
}

// A count is believed only as far as the bytes that are left can bear it out.
std::size_t DatabaseReader::reservation(std::uint32_t count, std::uint32_t shortest) const
{
    return std::min(count, m_fields.remaining() / shortest);
}

template <class Step>
void DatabaseReader::forEachRecord(std::uint32_t count, Step step)
{
    for (std::uint32_t i = 0; i < count; ++i) {
        m_context.stopIfTerminating();
        m_context.log.progress(i + 1, count);
        step(i);
    }
}

void DatabaseReader::readHeader()
{
    m_context.log.line("Reading header information");
    const std::uint32_t first = m_fields.word();
    const std::uint32_t second = m_fields.word();
    if (first != ts2::kFirstMagic || second != ts2::kSecondMagic)
        refuse();
    const std::uint32_t version = m_fields.word();
    if (version != ts2::kVersion)
        throw ReadFailure{nullptr, 0, Severity::Stop,
                          versionMessage(m_fileName, static_cast<std::int32_t>(version))};
    m_flags = m_fields.word();
    m_sink.databaseFlags(m_flags);
    m_trackCount = m_fields.word();
    m_albumCount = m_fields.word();
    m_artistCount = m_fields.word();
    m_imageCount = m_fields.word();
}

void DatabaseReader::readTracks()
{
    m_context.log.print("Reading tracks - %d", static_cast<int>(m_trackCount));
    m_tracks.reserve(reservation(m_trackCount, ts2::kShortestTrack));
    m_trackAlbums.reserve(reservation(m_trackCount, ts2::kShortestTrack));
    forEachRecord(m_trackCount, [this](std::uint32_t) { readTrack(); });
}

void DatabaseReader::readTrack()
{
    TrackFields track;
    track.position = m_fields.position();
    expect(m_fields.word() == 0); // flags
    track.id = m_fields.number();
    track.fileName = m_fields.text();
    if (!m_tracks.append(track.id))
        refuse();
    m_sink.track(track);
    const std::int32_t albumId = m_fields.number();
    expect(albumId != kListed);
    m_trackAlbums.push_back(albumId);
    m_sink.trackAlbum(albumId);
}

void DatabaseReader::readAlbums()
{
    m_context.log.print("Reading %s - %d", "albums", static_cast<int>(m_albumCount));
    m_albumLinks.reserve(reservation(m_albumCount, ts2::kShortestAlbum));
    forEachRecord(m_albumCount, [this](std::uint32_t) { readAlbum(); });
}

void DatabaseReader::readAlbum()
{
    AlbumFields album;
    album.position = m_fields.position();
    album.flags = m_fields.word();
    album.id = m_fields.number();
    album.hostTitle = m_fields.text();
    const bool titleOnce = (album.flags & kAlbumTitleOnce) != 0;
    album.displayTitle = titleOnce ? album.hostTitle : m_fields.text();
    expect(titleOnce || album.displayTitle != album.hostTitle);
    album.type = m_fields.text();
    album.artistId = m_fields.number();
    album.genre = m_fields.text();
    album.duration = m_fields.number();
    album.minBitrate = m_fields.number();
    album.maxBitrate = m_fields.number();
    album.year = m_fields.number();
    album.rank = m_fields.number();
    album.newDate = m_fields.number();
    m_fields.idList(m_list);
    linkTracks(album.id);
    album.path = m_fields.text();
    album.thumbnailFile = m_fields.text();
    if (!m_albums.append(album.id))
        refuse();
    if ((album.flags & kAlbumHasImage) != 0)
        m_imageAlbums.push_back(static_cast<std::uint32_t>(m_albumLinks.size()));
    m_albumLinks.push_back({album.artistId, false});
    m_sink.album(album, m_indices);
}

void DatabaseReader::linkTracks(std::int32_t albumId)
{
    expect(!m_list.empty() && ascending(m_list));
    m_indices.clear();
    for (const std::int32_t id : m_list) {
        if (id == 0)
            throw ReadFailure{"*plId", assertions::kZeroTrackId, Severity::Stop, {}};
        const std::int64_t index = m_tracks.find(id);
        if (index < 0)
            throw ReadFailure{"pTrack", assertions::kUnknownTrack, Severity::Stop, {}};
        std::int32_t& trackAlbum = m_trackAlbums[static_cast<std::size_t>(index)];
        expect(trackAlbum == albumId);
        trackAlbum = kListed;
        m_indices.push_back(static_cast<std::uint32_t>(index));
    }
}

void DatabaseReader::readArtists()
{
    m_context.log.print("Reading artists - %d", static_cast<int>(m_artistCount));
    forEachRecord(m_artistCount, [this](std::uint32_t) { readArtist(); });
}

void DatabaseReader::readArtist()
{
    ArtistFields artist;
    artist.position = m_fields.position();
    artist.flags = m_fields.word();
    artist.id = m_fields.number();
    artist.hostName = m_fields.text();
    const bool nameOnce = (artist.flags & ts2::kNameOnce) != 0;
    artist.displayName = nameOnce ? artist.hostName : m_fields.text();
    expect(artist.flags <= ts2::kNameOnce && (nameOnce || artist.displayName != artist.hostName));
    const std::uint32_t complete = m_fields.word();
    expect(complete <= 1);
    artist.complete = complete != 0;
    m_fields.idList(m_list);
    linkAlbums(artist.id);
    if (artist.id <= m_lastArtist)
        refuse();
    m_lastArtist = artist.id;
    m_sink.artist(artist, m_indices);
}

void DatabaseReader::linkAlbums(std::int32_t artistId)
{
    expect(ascending(m_list));
    m_indices.clear();
    for (const std::int32_t id : m_list) {
        const std::int64_t index = m_albums.find(id);
        if (index < 0)
            throw ReadFailure{"pAlbum", assertions::kUnknownAlbum, Severity::Stop, {}};
        AlbumLinks& links = m_albumLinks[static_cast<std::size_t>(index)];
        expect(!links.listed && links.artistId == artistId);
        links.listed = true;
        m_indices.push_back(static_cast<std::uint32_t>(index));
    }
}

void DatabaseReader::readImages()
{
    m_context.log.print("Reading %s - %d", "images", static_cast<int>(m_imageCount));
    forEachRecord(m_imageCount, [this](std::uint32_t index) { readImage(index); });
}

void DatabaseReader::readImage(std::size_t index)
{
    const std::int64_t album = m_albums.find(m_fields.number());
    if (album < 0)
        throw ReadFailure{"pAlbum", assertions::kUnknownImageAlbum, Severity::Stop, {}};
    const ByteView bytes = m_fields.block(m_fields.word());
    expect(index < m_imageAlbums.size() && m_imageAlbums[index] == album);
    m_sink.image(static_cast<std::uint32_t>(album), bytes);
}

bool DatabaseReader::linksAgree() const
{
    return std::ranges::all_of(m_trackAlbums,
                               [](std::int32_t id) { return id == kListed || id == ts2::kNoAlbum; }) &&
           std::ranges::all_of(m_albumLinks, &AlbumLinks::listed);
}

namespace {

class NoPrompt : public Prompt {
public:
    void message(Severity, const std::string&) override {}
    void assertion(const std::string&, const std::string&, unsigned long) override {}
};

} // namespace

std::optional<ReadFailure> readQuietly(ByteView bytes, const std::string& fileName,
                                       const std::atomic<bool>& terminating, RecordSink& sink)
try {
    SilentLog log;
    NoPrompt prompt;
    JobContext quiet{systemFiles(), log, prompt, terminating};
    DatabaseReader(bytes, fileName, quiet, sink).read();
    return std::nullopt;
} catch (const ReadFailure& failure) {
    return failure;
}

} // namespace tessera
