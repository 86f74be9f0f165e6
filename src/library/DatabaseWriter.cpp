#include "library/DatabaseWriter.h"

#include "base/Prefetch.h"

#include <algorithm>

namespace tessera {

namespace {

std::uint32_t size32(std::size_t size)
{
    return static_cast<std::uint32_t>(size);
}

// The keys of a map of records.
template <class Map>
void putIds(BufferedWriter& writer, const Map& records)
{
    writer.put(size32(records.size()));
    for (const auto& [id, record] : records)
        writer.put(id);
}

void writeTrack(BufferedWriter& writer, Track& track)
{
    track.flags = 0;
    writer.put(track.flags);
    writer.put(track.id);
    writer.putText(track.fileName);
    writer.put(track.album ? track.album->id : ts2::kNoAlbum);
}

void writeArtist(BufferedWriter& writer, Artist& artist)
{
    artist.flags = artist.hostName == artist.displayName ? ts2::kNameOnce : 0;
    writer.put(artist.flags);
    writer.put(artist.id);
    writer.putText(artist.hostName);
    if (artist.flags == 0)
        writer.putText(artist.displayName);
    writer.put(static_cast<std::uint32_t>(artist.complete ? 1 : 0));
    putIds(writer, artist.albums);
}

} // namespace

void writeAlbum(BufferedWriter& writer, const Album& album)
{
    writer.put(album.flags);
    writer.put(album.id);
    writer.putText(album.hostTitle);
    if (!album.has(kAlbumTitleOnce))
        writer.putText(album.displayTitle);
    writer.putText(album.type);
    writer.put(album.artist ? album.artist->id : 0);
    writer.putText(album.genre);
    writer.put(album.duration);
    writer.put(album.minBitrate);
    writer.put(album.maxBitrate);
    writer.put(album.year);
    writer.put(album.rank);
    writer.put(album.newDate);
    putIds(writer, album.tracks);
    writer.putText(album.path);
    writer.putText(album.thumbnailFile);
}

std::uint32_t imageCount(const Library& library)
{
    return size32(static_cast<std::size_t>(std::ranges::count_if(
        library.albums, [](const auto& entry) { return entry.second->has(kAlbumHasImage); })));
}

namespace {

// A failure of any kind is a refusal, so that the names can be put back.
bool renamed(FileSystem& files, const std::string& from, const std::string& to)
try {
    return files.rename(from, to);
} catch (...) {
    return false;
}

// What stays behind harms nobody.
void removeQuietly(FileSystem& files, const std::string& name)
try {
    files.remove(name);
} catch (...) {
}

} // namespace

NewFile::NewFile(FileSystem& files, const std::string& target)
    : m_files(files), m_target(target), m_temporary(temporaryDatabase(target))
{
    // What cannot be opened for writing (read-only, in use, a folder) cannot be replaced either.
    if (m_files.exists(m_target) && !m_files.openForUpdate(m_target))
        return;
    m_output = m_files.createNew(m_temporary);
    m_remove = m_output != nullptr;
}

NewFile::~NewFile()
{
    m_output.reset();
    if (m_remove)
        removeQuietly(m_files, m_temporary);
}

// The name that the target has now, null when it has kept its own.
const std::string* NewFile::keepTarget(const Replacement& plan, bool moved)
{
    const bool free = plan.earlier.empty() || moved;
    for (const std::string* const name : {free ? &plan.previous : &plan.spare, &plan.spare}) {
        if (!name->empty() && renamed(m_files, m_target, *name))
            return name;
    }
    return nullptr;
}

NewFile::Outcome NewFile::takePlace(const Replacement& plan)
{
    m_output.reset();
    m_remove = false;
    const bool moved = !plan.earlier.empty() && renamed(m_files, plan.previous, plan.earlier);
    const std::string* kept = plan.previous.empty() ? nullptr : keepTarget(plan, moved);
    const bool placed = (kept || !plan.mustStay) && renamed(m_files, m_temporary, m_target);
    if (placed) {
        for (const std::string& name : plan.superseded)
            removeQuietly(m_files, name);
    } else {
        // Somebody else's new file may have the name by now.
        if (kept && !m_files.exists(m_target) && renamed(m_files, *kept, m_target))
            kept = nullptr;
        if (moved && kept != &plan.previous)
            renamed(m_files, plan.earlier, plan.previous);
    }
    return {placed, !placed && kept ? *kept : std::string()};
}

bool DatabaseWriter::write()
{
    const bool written = writeHeader() && writeTracks() && writeAlbums() && writeArtists() &&
                         ((m_flags & ts2::kHasImages) == 0 || writeImages());
    return written && m_writer.flush() && m_file.flush();
}

bool DatabaseWriter::writeHeader()
{
    m_context.log.line("Writing header information");
    for (const std::uint32_t word :
         {ts2::kFirstMagic, ts2::kSecondMagic, ts2::kVersion, m_flags, size32(m_library.tracks.size()),
          size32(m_library.albums.size()), size32(m_library.artists.size()), imageCount(m_library)})
        m_writer.put(word);
    return m_writer.good();
}

bool DatabaseWriter::writeTracks()
{
    const std::uint32_t total = size32(m_library.tracks.size());
    std::uint32_t done = 0;
    m_context.log.print("Writing tracks - %d", static_cast<int>(total));
    for (const auto& [id, track] : m_library.tracks) {
        m_context.stopIfTerminating();
        m_context.log.progress(++done, total);
        writeTrack(m_writer, *track);
    }
    return m_writer.good();
}

namespace {

// Albums are large and lie apart: waiting for one line of memory after the other took longer than
// copying. The record is asked for first, what it points to a few albums later.
[[gnu::always_inline]] inline void prefetchAhead(const Albums& albums, std::size_t place)
{
    constexpr std::size_t kRecord = 8;
    constexpr std::size_t kContents = 4;
    const auto first = albums.begin();
    if (place + kRecord < albums.size())
        prefetch(first[place + kRecord].second.get(), sizeof(Album));
    if (place + kContents >= albums.size())
        return;
    const Album& album = *first[place + kContents].second;
    for (const std::string* text : {&album.hostTitle, &album.displayTitle, &album.path})
        prefetch(text->data(), text->size());
    prefetch(album.tracks.data(), album.tracks.size() * sizeof(*album.tracks.data()));
}

} // namespace

bool DatabaseWriter::writeAlbums()
{
    const std::uint32_t total = size32(m_library.albums.size());
    std::uint32_t done = 0;
    m_context.log.print("Writing albums - %d", static_cast<int>(total));
    for (const auto& [id, album] : m_library.albums) {
        m_context.stopIfTerminating();
        prefetchAhead(m_library.albums, done);
        if (album->hostTitle == album->displayTitle)
            album->set(kAlbumTitleOnce, true);
        writeAlbum(m_writer, *album);
        m_context.log.progress(++done, total);
    }
    return m_writer.good();
}

bool DatabaseWriter::writeArtists()
{
    const std::uint32_t total = size32(m_library.artists.size());
    std::uint32_t done = 0;
    m_context.log.print("Writing artists - %d", static_cast<int>(total));
    for (const auto& [id, artist] : m_library.artists) {
        m_context.stopIfTerminating();
        writeArtist(m_writer, *artist);
        m_context.log.progress(++done, total);
    }
    return m_writer.good();
}

bool DatabaseWriter::writeImages()
{
    const std::uint32_t total = imageCount(m_library);
    std::uint32_t done = 0;
    m_context.log.print("Writing images - %d", static_cast<int>(total));
    for (const auto& [id, album] : m_library.albums) {
        m_context.stopIfTerminating();
        if (!album->has(kAlbumHasImage))
            continue;
        writeImage(*album);
        if (!m_writer.good())
            return false;
        m_context.log.progress(++done, total);
    }
    return true;
}

// A picture that cannot be opened leaves its album's id alone in the file, without a length.
void DatabaseWriter::writeImage(Album& album)
{
    m_writer.put(album.id);
    const auto bytes = m_context.files.readAll(album.thumbnailFile);
    album.imageLength = bytes ? size32(bytes->size()) : 0;
    if (!bytes) {
        m_context.prompt.message(Severity::Exclamation, format("Could not open the thumbnail file '%s'!",
                                                               shownName(album.thumbnailFile).c_str()));
        return;
    }
    m_writer.put(album.imageLength);
    m_writer.putBlock(*bytes);
}

} // namespace tessera
