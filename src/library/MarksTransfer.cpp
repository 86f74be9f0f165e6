#include "library/MarksTransfer.h"

#include "base/Text.h"
#include "library/AlbumPartners.h"
#include "library/DatabaseReader.h"

#include <atomic>

namespace tessera {

namespace {

constexpr std::int32_t kHighestRank = 10;

bool anyMark(const Marks& marks)
{
    return marks.rank != 0 || marks.favourite || marks.isNew;
}

// What is no rank counts as none.
Marks marksOf(const AlbumFields& album)
{
    const bool ranked = album.rank >= 1 && album.rank <= kHighestRank;
    const bool isNew = (album.flags & kAlbumNew) != 0;
    return {ranked ? album.rank : 0, album.newDate, isNew, (album.flags & kAlbumFavourite) != 0};
}

Marks merged(Marks here, const Marks& there)
{
    if (there.rank != 0)
        here.rank = there.rank;
    here.favourite = here.favourite || there.favourite;
    if (there.isNew) {
        here.isNew = true;
        here.newDate = there.newDate;
    }
    return here;
}

// Keeps what the comparison needs of a database; texts point into its bytes.
class OtherLibrary : public RecordSink {
public:
    std::vector<AlbumIdentity> albums;
    std::vector<Marks> marks; // of each album

    void track(const TrackFields& track) override { m_fileNames.push_back(track.fileName); }
    void album(const AlbumFields& album, std::span<const std::uint32_t> tracks) override
    {
        AlbumIdentity& identity = albums.emplace_back();
        identity.title = album.hostTitle;
        identity.path = album.path;
        identity.files.reserve(tracks.size());
        for (const std::uint32_t index : tracks)
            identity.files.push_back(m_fileNames[index]);
        marks.push_back(marksOf(album));
        identity.counts = anyMark(marks.back());
    }
    void artist(const ArtistFields& artist, std::span<const std::uint32_t> indices) override
    {
        for (const std::uint32_t index : indices)
            albums[index].artist = artist.displayName;
    }

private:
    std::vector<std::string_view> m_fileNames;
};

class MarkedCounter : public RecordSink {
public:
    std::size_t count = 0;
    void album(const AlbumFields& album, std::span<const std::uint32_t>) override
    {
        count += anyMark(marksOf(album)) ? 1 : 0;
    }
};

std::vector<AlbumIdentity> identitiesOf(const Library& library)
{
    std::vector<AlbumIdentity> all;
    all.reserve(library.albums.size());
    for (const auto& [id, album] : library.albums) {
        AlbumIdentity& identity = all.emplace_back();
        identity.title = album->hostTitle;
        identity.path = album->path;
        if (album->artist)
            identity.artist = album->artist->displayName;
        identity.files.reserve(album->tracks.size());
        for (const auto& [trackId, track] : album->tracks)
            identity.files.push_back(track->fileName);
    }
    return all;
}

// An album that is no longer new keeps its date.
bool lives(const Marks& earlier, const Marks& now)
{
    return (earlier.rank == 0 || now.rank != 0) && (!earlier.favourite || now.favourite) &&
           (!earlier.isNew || now.isNew || now.newDate == earlier.newDate);
}

// Why the file cannot be taken; empty when the sink has it all. The bytes stay the caller's.
std::string readInto(RecordSink& sink, ByteView bytes, const std::string& fileName)
{
    const std::atomic<bool> goingOn{false};
    const std::optional<ReadFailure> failure = readQuietly(bytes, fileName, goingOn, sink);
    if (!failure)
        return {};
    return failure->message.empty() ? "Invalid database!" : failure->message;
}

} // namespace

void MarkCounts::add(const Marks& marks)
{
    ranks += marks.rank != 0 ? 1 : 0;
    favourites += marks.favourite ? 1 : 0;
    news += marks.isNew ? 1 : 0;
}

MarksPlan planMarks(const std::string& fileName, const Library& library, FileSystem& files)
{
    MarksPlan plan;
    plan.fileName = fileName;
    const auto bytes = files.readAll(fileName);
    if (!bytes) {
        plan.failure = format("Could not open the database '%s'!", shownName(fileName).c_str());
        return plan;
    }
    OtherLibrary other;
    plan.failure = readInto(other, *bytes, fileName);
    if (!plan.failure.empty())
        return plan;
    for (const Marks& marks : other.marks)
        plan.found.add(marks);
    if (!plan.found.any())
        return plan;

    const std::vector<std::uint32_t> partners = findPartners(identitiesOf(library), other.albums);
    auto partner = partners.begin();
    for (const auto& [id, album] : library.albums) {
        const std::uint32_t index = *partner++;
        if (index == kNoPartner)
            continue;
        plan.matched.add(other.marks[index]);
        const Marks before = marksOf(*album);
        const Marks after = merged(before, other.marks[index]);
        if (after != before)
            plan.changes.push_back({album.get(), after});
    }
    return plan;
}

std::optional<std::size_t> markedAlbums(ByteView bytes, const std::atomic<bool>& terminating)
{
    MarkedCounter counter;
    return readQuietly(bytes, {}, terminating, counter) ? std::nullopt : std::optional(counter.count);
}

LivingMarks livingMarks(ByteView later, ByteView earlier, const std::atomic<bool>& terminating)
{
    OtherLibrary now;
    OtherLibrary before;
    readQuietly(later, {}, terminating, now);
    readQuietly(earlier, {}, terminating, before);
    const std::vector<std::uint32_t> partners = findPartners(now.albums, before.albums);
    LivingMarks marks;
    marks.absent = static_cast<std::size_t>(std::ranges::count(before.albums, true, &AlbumIdentity::counts));
    for (std::size_t i = 0; i < partners.size(); ++i) {
        if (partners[i] == kNoPartner)
            continue;
        --marks.absent;
        marks.living += lives(before.marks[partners[i]], now.marks[i]) ? 1 : 0;
    }
    return marks;
}

} // namespace tessera
