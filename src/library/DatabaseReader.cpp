#include "library/DatabaseReader.h"

#include "base/Text.h"
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

std::uint32_t FieldReader::idCount()
{
    const std::uint32_t count = length();
    if (count > remaining() / 4)
        throw shortRead();
    return count;
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
                               RecordSink& sink, Texts texts)
    : m_fields(bytes), m_fileName(fileName), m_context(context), m_sink(sink), m_texts(texts)
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
    require(m_regular && linksAgree());
}

void DatabaseReader::require(bool regular)
{
    if (!regular)
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

// A list may be as long as the file: in ascending order each id finds its place at once.
template <class Step>
void DatabaseReader::forEachId(Step step)
{
    std::int32_t last = 0;
    for (std::uint32_t i = m_fields.idCount(); i > 0; --i) {
        m_context.stopIfTerminating();
        const std::int32_t id = m_fields.number();
        step(id);
        require(id > last);
        last = id;
    }
}

// As a tag has it, with any character but the NUL, where texts end.
std::string_view DatabaseReader::readName()
{
    const std::string_view name = m_fields.text();
    require(m_texts == Texts::Any || name.find('\0') == std::string_view::npos);
    return name;
}

// It goes to the host, to the disk and into what is dragged out.
std::string_view DatabaseReader::readPath()
{
    const std::string_view path = m_fields.text();
    require(m_texts == Texts::Any || !hasControlCharacter(path));
    return path;
}

void DatabaseReader::readHeader()
{
    m_context.log.line("Reading header information");
    const std::uint32_t first = m_fields.word();
    const std::uint32_t second = m_fields.word();
    require(first == ts2::kFirstMagic && second == ts2::kSecondMagic);
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
    track.fileName = readPath();
    require(m_tracks.append(track.id));
    m_sink.track(track);
    const std::int32_t albumId = m_fields.number();
    require(albumId != kListed);
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
    album.hostTitle = readName();
    const bool titleOnce = (album.flags & kAlbumTitleOnce) != 0;
    album.displayTitle = titleOnce ? album.hostTitle : readName();
    expect(titleOnce || album.displayTitle != album.hostTitle);
    album.type = readName();
    album.artistId = m_fields.number();
    album.genre = readName();
    album.duration = m_fields.number();
    album.minBitrate = m_fields.number();
    album.maxBitrate = m_fields.number();
    album.year = m_fields.number();
    album.rank = m_fields.number();
    album.newDate = m_fields.number();
    linkTracks(album.id);
    album.path = readPath();
    album.thumbnailFile = readPath();
    require(m_albums.append(album.id));
    if ((album.flags & kAlbumHasImage) != 0)
        m_imageAlbums.push_back(static_cast<std::uint32_t>(m_albumLinks.size()));
    m_albumLinks.push_back({album.artistId, false});
    m_sink.album(album, m_indices);
}

void DatabaseReader::linkTracks(std::int32_t albumId)
{
    m_indices.clear();
    forEachId([&](std::int32_t id) {
        if (id == 0)
            throw ReadFailure{"*plId", assertions::kZeroTrackId, Severity::Stop, {}};
        const std::int64_t index = m_tracks.find(id);
        if (index < 0)
            throw ReadFailure{"pTrack", assertions::kUnknownTrack, Severity::Stop, {}};
        std::int32_t& trackAlbum = m_trackAlbums[static_cast<std::size_t>(index)];
        require(trackAlbum == albumId);
        trackAlbum = kListed;
        m_indices.push_back(static_cast<std::uint32_t>(index));
    });
    expect(!m_indices.empty());
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
    artist.hostName = readName();
    const bool nameOnce = (artist.flags & ts2::kNameOnce) != 0;
    artist.displayName = nameOnce ? artist.hostName : readName();
    expect(artist.flags <= ts2::kNameOnce && (nameOnce || artist.displayName != artist.hostName));
    const std::uint32_t complete = m_fields.word();
    expect(complete <= 1);
    artist.complete = complete != 0;
    linkAlbums(artist.id);
    require(artist.id > m_lastArtist);
    m_lastArtist = artist.id;
    m_sink.artist(artist, m_indices);
}

void DatabaseReader::linkAlbums(std::int32_t artistId)
{
    m_indices.clear();
    forEachId([&](std::int32_t id) {
        const std::int64_t index = m_albums.find(id);
        if (index < 0)
            throw ReadFailure{"pAlbum", assertions::kUnknownAlbum, Severity::Stop, {}};
        AlbumLinks& links = m_albumLinks[static_cast<std::size_t>(index)];
        require(!links.listed && links.artistId == artistId);
        links.listed = true;
        m_indices.push_back(static_cast<std::uint32_t>(index));
    });
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
    require(index < m_imageAlbums.size() && m_imageAlbums[index] == album);
    m_sink.image(static_cast<std::uint32_t>(album), bytes);
}

bool DatabaseReader::linksAgree() const
{
    const auto heeded = [this](auto agrees) {
        return [this, agrees](const auto& links) {
            m_context.stopIfTerminating();
            return agrees(links);
        };
    };
    return std::ranges::all_of(
               m_trackAlbums, heeded([](std::int32_t id) { return id == kListed || id == ts2::kNoAlbum; })) &&
           std::ranges::all_of(m_albumLinks, heeded([](const AlbumLinks& links) { return links.listed; }));
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
    DatabaseReader(bytes, fileName, quiet, sink, DatabaseReader::Texts::Any).read();
    return std::nullopt;
} catch (const ReadFailure& failure) {
    return failure;
}

} // namespace tessera
