#include "library/Database.h"

#include "base/PatientFiles.h"
#include "library/Assertions.h"
#include "library/DatabaseWriter.h"
#include "library/Filters.h"

#include <algorithm>
#include <limits>
#include <tuple>
#include <unordered_map>
#include <vector>

namespace tessera {

namespace {

constexpr char kUnassigned[] = "(Unassigned)";
constexpr char kVarious[] = "(Various)";

// A text that many tracks share, converted and folded once.
struct SharedText {
    std::string text;
    std::u16string folded;
    std::uint32_t rank = 0; // in the order of the folded texts; equal ones have the same
};

// Texts of the host are as long as it says; what it shows of them ends at a NUL.
std::string nameOf(const std::u16string& wide)
{
    return toCodePage(std::u16string_view(wide).substr(0, wide.find(u'\0')));
}

class SharedTexts {
public:
    const SharedText* find(std::u16string wide)
    {
        if (m_last != nullptr && m_last->first == wide) // neighbours often agree
            return &m_last->second;
        const auto [found, isNew] = m_texts.try_emplace(std::move(wide));
        if (isNew)
            found->second = {nameOf(found->first), foldWide(found->first)};
        m_last = &*found;
        return &found->second;
    }

    void rank()
    {
        std::vector<SharedText*> sorted;
        sorted.reserve(m_texts.size());
        for (auto& [wide, shared] : m_texts)
            sorted.push_back(&shared);
        std::ranges::sort(sorted, {}, &SharedText::folded);
        for (std::size_t i = 1; i < sorted.size(); ++i)
            sorted[i]->rank = sorted[i - 1]->rank + (sorted[i]->folded != sorted[i - 1]->folded ? 1 : 0);
    }

private:
    using Texts = std::unordered_map<std::u16string, SharedText>;
    Texts m_texts;
    Texts::value_type* m_last = nullptr;
};

// One host file on its way into the library.
struct Entry {
    HostFilePtr file; // this and the name until the track is made
    std::string fileName;
    const SharedText* album = nullptr;
    const SharedText* type = nullptr;
    const SharedText* artist = nullptr;
    const SharedText* genre = nullptr;
    std::int32_t number = 0;
    std::int32_t duration = 0;
    std::int32_t bitrate = 0;
    std::int32_t year = 0;
    Track* track = nullptr; // once it is in the library
};
using Entries = std::vector<Entry*>;
using Group = std::span<Entry* const>;

// The value that all tracks with a value agree on.
class CommonText {
public:
    void add(const std::string& value)
    {
        if (value.empty())
            return;
        if (m_first == nullptr)
            m_first = &value;
        else if (value != *m_first)
            m_differs = true;
    }
    bool differs() const { return m_differs; }
    std::string first() const { return m_first != nullptr ? *m_first : std::string(); }

private:
    const std::string* m_first = nullptr;
    bool m_differs = false;
};

class CommonYear {
public:
    void add(std::int32_t year)
    {
        m_differs = m_differs || (year != 0 && m_first != 0 && year != m_first);
        if (m_first == 0)
            m_first = year;
    }
    std::int32_t value() const { return m_differs || m_first < 0 ? -1 : m_first; }

private:
    std::int32_t m_first = 0;
    bool m_differs = false;
};

std::int32_t wrappingSum(std::int32_t left, std::int32_t right)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(left) + static_cast<std::uint32_t>(right));
}

std::string folderOf(const std::string& fileName)
{
    const std::size_t backslash = findLastBackslash(fileName);
    return backslash == std::string::npos ? std::string() : fileName.substr(0, backslash);
}

bool equalShared(const SharedText* left, const SharedText* right)
{
    return left == right || equalNoCase(left->text, right->text);
}

bool sameRun(const Entry& left, const Entry& right)
{
    return equalShared(left.album, right.album) && equalShared(left.type, right.type);
}

// The order of the scan; the place in the host's list keeps equal tracks in its order.
struct SortKey {
    std::uint32_t album;
    std::uint32_t type;
    std::int32_t number;
    std::uint32_t place;

    auto order() const { return std::tie(album, type, number, place); }
};

class LibraryBuild {
public:
    LibraryBuild(Library& library, Host& host, JobContext& context)
        : m_library(library), m_host(host), m_context(context)
    {
    }

    // From the search to albums and artists. The host's list is kept until the build ends.
    void run(const std::string& criteria);
    void markCompleteArtists();

private:
    void link();
    bool linkFile(HostFilePtr file);
    void readProperties(Entry& entry);
    void sort();
    void scan();
    void addTrack(Entry& entry, std::int32_t id);
    void splitRun(Group run);
    void makeAlbum(Group group);
    Artist& artistNamed(const std::string& name);
    void step(std::size_t done, std::size_t total);

    Library& m_library;
    Host& m_host;
    JobContext& m_context;
    std::unique_ptr<HostFiles> m_files;
    std::vector<Entry> m_tracks;
    SharedTexts m_albums;
    SharedTexts m_types;
    SharedTexts m_artistNames;
    SharedTexts m_genres;
    Entries m_sorted;
    std::unordered_map<std::string, Artist*> m_artists; // first of its display name, upper case
};

void LibraryBuild::step(std::size_t done, std::size_t total)
{
    m_context.stopIfTerminating();
    m_context.log.progress(static_cast<std::uint32_t>(done), static_cast<std::uint32_t>(total));
}

void LibraryBuild::run(const std::string& criteria)
{
    m_context.log.print("Performing an MJ search - %s",
                        criteria.empty() ? "(Selecting Everything)" : criteria.c_str());
    m_files = m_host.search(criteria);
    if (!m_files)
        throw HostError(kErrorPointer);
    link();
    sort();
    scan();
}

void LibraryBuild::link()
{
    const std::int32_t count = m_files->count();
    m_context.log.print("Entries in MJ database - %ld", static_cast<long>(count));
    m_tracks.reserve(static_cast<std::size_t>(std::max(count, 0)));
    m_context.log.line("Linking tracks to MJ");
    long leftOut = 0;
    for (std::int32_t i = 0; i < count; ++i) {
        step(static_cast<std::size_t>(i) + 1, static_cast<std::size_t>(count));
        HostFilePtr file = m_files->file(i);
        if (!file)
            m_context.prompt.assertion("iterSortTracks->m_pMJFile != 0", assertions::kUnit,
                                       assertions::kMissingFile);
        else if (!linkFile(std::move(file)))
            ++leftOut;
    }
    if (leftOut > 0)
        m_context.log.print(
            "Files left out - %ld (names outside the system code page or with control characters)", leftOut);
}

// False for a name that the code page cannot give back or no file has: no load could find it again.
bool LibraryBuild::linkFile(HostFilePtr file)
{
    std::optional<std::string> name = toCodePageExactly(file->wideText(FileText::Filename));
    if (!name || hasControlCharacter(*name))
        return false;
    Entry& entry = m_tracks.emplace_back();
    entry.file = std::move(file);
    entry.fileName = *std::move(name);
    return true;
}

// All of a file's properties at once: files lie together in the host's order, not in that of albums.
void LibraryBuild::readProperties(Entry& entry)
{
    HostFile& file = *entry.file;
    entry.album = m_albums.find(file.wideText(FileText::Album));
    entry.type = m_types.find(file.wideText(FileText::Type));
    entry.artist = m_artistNames.find(file.wideText(FileText::Artist));
    entry.genre = m_genres.find(file.wideText(FileText::Genre));
    entry.number = file.number(FileNumber::Track);
    entry.duration = file.number(FileNumber::Duration);
    entry.bitrate = file.number(FileNumber::Bitrate);
    entry.year = file.number(FileNumber::Year);
}

void LibraryBuild::sort()
{
    m_context.log.line("Sorting tracks");
    std::size_t done = 0;
    for (Entry& entry : m_tracks) {
        step(++done, m_tracks.size());
        readProperties(entry);
    }
    m_albums.rank();
    m_types.rank();
    std::vector<SortKey> keys;
    keys.reserve(m_tracks.size());
    for (const Entry& entry : m_tracks)
        keys.push_back(
            {entry.album->rank, entry.type->rank, entry.number, static_cast<std::uint32_t>(keys.size())});
    std::ranges::sort(keys, {}, &SortKey::order);
    m_sorted.reserve(keys.size());
    for (const SortKey& key : keys)
        m_sorted.push_back(&m_tracks[key.place]);
}

void LibraryBuild::scan()
{
    m_context.log.line("Scanning for albums");
    const std::size_t count = m_sorted.size();
    for (std::size_t first = 0; first < count;) {
        std::size_t last = first;
        for (; last < count && sameRun(*m_sorted[first], *m_sorted[last]); ++last) {
            step(last + 1, count);
            addTrack(*m_sorted[last], static_cast<std::int32_t>(last) + 1);
        }
        splitRun(Group(m_sorted).subspan(first, last - first));
        first = last;
    }
}

void LibraryBuild::addTrack(Entry& entry, std::int32_t id)
{
    auto track = std::make_unique<Track>();
    track->id = id;
    track->m_pMJFile = std::move(entry.file);
    track->fileName = std::move(entry.fileName);
    entry.track = track.get();
    m_library.tracks.emplace(id, std::move(track));
}

// Two first tracks of the same number: albums of the same title, told apart by artist.
void LibraryBuild::splitRun(Group run)
{
    const bool split = run.size() > 1 && run[0]->number == run[1]->number;
    if (!split)
        return makeAlbum(run);
    Entries sorted(run.begin(), run.end());
    std::ranges::stable_sort(sorted, [](const Entry* left, const Entry* right) {
        const int order = left->artist->folded.compare(right->artist->folded);
        return order != 0 ? order < 0 : left->number < right->number;
    });
    for (auto first = sorted.begin(); first != sorted.end();) {
        const auto last = std::find_if(first, sorted.end(), [&](const Entry* entry) {
            return entry->artist->text != (*first)->artist->text;
        });
        makeAlbum(Group(first, last));
        first = last;
    }
}

void LibraryBuild::makeAlbum(Group group)
{
    auto album = std::make_unique<Album>();
    album->id = static_cast<std::int32_t>(m_library.albums.size()) + 1;
    album->hostTitle = group.front()->album->text;
    album->displayTitle = album->hostTitle.empty() ? kUnassigned : album->hostTitle;
    album->type = group.front()->type->text;
    album->minBitrate = std::numeric_limits<std::int32_t>::max();
    album->maxBitrate = std::numeric_limits<std::int32_t>::min();
    CommonText genre;
    CommonText artist;
    CommonYear year;
    album->tracks.reserve(group.size());
    for (const Entry* entry : group) {
        m_context.stopIfTerminating();
        entry->track->album = album.get();
        album->tracks.emplace(entry->track->id, entry->track);
        album->duration = wrappingSum(album->duration, entry->duration);
        album->minBitrate = std::min(album->minBitrate, entry->bitrate);
        album->maxBitrate = std::max(album->maxBitrate, entry->bitrate);
        genre.add(entry->genre->text);
        year.add(entry->year);
        artist.add(entry->artist->text);
    }
    album->genre = genre.differs() ? kVarious : genre.first().empty() ? kUnassigned : genre.first();
    album->year = year.value();
    album->set(kAlbumCompilation, artist.differs());
    album->path = folderOf(album->tracks.begin()->second->fileName);
    album->artist = &artistNamed(artist.differs() ? kVarious : artist.first());
    album->artist->albums.emplace(album->id, album.get());
    const std::int32_t id = album->id;
    m_library.albums.emplace(id, std::move(album));
}

// The first artist that shows this name, or a new one. No artist shows the empty name, so every
// album without an artist gets an "(Unassigned)" of its own.
Artist& LibraryBuild::artistNamed(const std::string& name)
{
    if (const auto found = m_artists.find(toUpper(name)); found != m_artists.end())
        return *found->second;
    auto artist = std::make_unique<Artist>();
    artist->id = static_cast<std::int32_t>(m_library.artists.size()) + 1;
    artist->hostName = name;
    artist->displayName = name.empty() ? kUnassigned : name;
    m_artists.emplace(toUpper(artist->displayName), artist.get());
    const std::int32_t id = artist->id;
    return *m_library.artists.emplace(id, std::move(artist)).first->second;
}

void LibraryBuild::markCompleteArtists()
{
    m_context.log.line("Scanning for complete artists/albums");
    std::size_t done = 0;
    for (const auto& [id, artist] : m_library.artists) {
        step(++done, m_library.artists.size());
        artist->complete = std::ranges::all_of(
            artist->albums, [](const auto& entry) { return entry.second->has(kAlbumHasImage); });
    }
}

// Known before the work begins: whether the finished file would have a place.
bool canCreate(const std::string& fileName, JobContext& context)
{
    PatientFiles files(context.files, context.terminating);
    if (NewFile(files, fileName).isOpen())
        return true;
    context.prompt.message(Severity::Exclamation,
                           format("Could not create the database '%s'!", shownName(fileName).c_str()));
    return false;
}

} // namespace

bool Database::build(Host& host, const DatabaseSettings& settings, const ArtworkPass& artwork,
                     JobContext& context)
{
    if (!canCreate(settings.lastUsed, context))
        return false;
    LibraryBuild build(m_library, host, context);
    build.run(settings.lastSearchCriteria);
    applyFilters(m_library,
                 {settings.excludedTypes, settings.exclusionList, settings.excludeUnassigned,
                  settings.minTracksPerAlbum},
                 context);
    context.log.line("Scanning for artwork");
    artwork(m_library, context);
    context.log.print("Images - %d", static_cast<int>(imageCount(m_library)));
    build.markCompleteArtists();
    return write(settings.lastUsed, context);
}

} // namespace tessera
