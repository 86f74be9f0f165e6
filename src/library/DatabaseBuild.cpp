#include "library/Database.h"

#include "library/Assertions.h"
#include "library/DatabaseWriter.h"
#include "library/Filters.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <unordered_map>
#include <vector>

namespace tessera {

namespace {

constexpr char kUnassigned[] = "(Unassigned)";
constexpr char kVarious[] = "(Various)";

// One host file on its way into the library.
struct Entry {
    std::unique_ptr<Track> owned; // until the track enters the library
    Track* track = nullptr;
    std::u16string sortAlbum; // folded; empty again after the sort
    std::u16string sortType;
    std::string album;
    std::string type;
    std::int32_t number = 0;
    std::string artist;
    std::u16string sortArtist; // only in runs that are split by artist

    HostFile& file() const { return *track->m_pMJFile; }
};
using Entries = std::vector<Entry*>;
using Group = std::span<Entry* const>;

// The value that all tracks with a value agree on.
class CommonText {
public:
    void add(std::string value)
    {
        if (value.empty())
            return;
        if (m_first.empty())
            m_first = std::move(value);
        else if (value != m_first)
            m_differs = true;
    }
    bool differs() const { return m_differs; }
    const std::string& first() const { return m_first; }

private:
    std::string m_first;
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

bool sameRun(const Entry& left, const Entry& right)
{
    return equalNoCase(left.album, right.album) && equalNoCase(left.type, right.type);
}

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
    void sort();
    void scan();
    void splitRun(Group run);
    void makeAlbum(Group group);
    Artist& artistNamed(const std::string& name);
    void step(std::size_t done, std::size_t total);

    Library& m_library;
    Host& m_host;
    JobContext& m_context;
    std::unique_ptr<HostFiles> m_files;
    std::vector<Entry> m_tracks;
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
        m_context.log.print("Files left out - %ld (names outside the system code page)", leftOut);
}

// False for a name that the code page cannot give back: no load could find the file again.
bool LibraryBuild::linkFile(HostFilePtr file)
{
    const std::u16string wide = file->wideText(FileText::Filename);
    std::string name = toCodePage(wide);
    if (toWide(name) != wide)
        return false;
    auto track = std::make_unique<Track>();
    track->m_pMJFile = std::move(file);
    track->fileName = std::move(name);
    Entry& entry = m_tracks.emplace_back();
    entry.track = track.get();
    entry.owned = std::move(track);
    return true;
}

void LibraryBuild::sort()
{
    m_context.log.line("Sorting tracks");
    m_sorted.reserve(m_tracks.size());
    for (Entry& entry : m_tracks) {
        step(m_sorted.size() + 1, m_tracks.size());
        const std::u16string album = entry.file().wideText(FileText::Album);
        const std::u16string type = entry.file().wideText(FileText::Type);
        entry.number = entry.file().number(FileNumber::Track);
        entry.album = toCodePage(album);
        entry.type = toCodePage(type);
        entry.sortAlbum = foldWide(album);
        entry.sortType = foldWide(type);
        m_sorted.push_back(&entry);
    }
    std::ranges::stable_sort(m_sorted, [](const Entry* left, const Entry* right) {
        if (const int order = left->sortAlbum.compare(right->sortAlbum))
            return order < 0;
        if (const int order = left->sortType.compare(right->sortType))
            return order < 0;
        return left->number < right->number;
    });
}

void LibraryBuild::scan()
{
    m_context.log.line("Scanning for albums");
    const std::size_t count = m_sorted.size();
    for (std::size_t first = 0; first < count;) {
        std::size_t last = first;
        for (; last < count && sameRun(*m_sorted[first], *m_sorted[last]); ++last) {
            step(last + 1, count);
            Entry& entry = *m_sorted[last];
            entry.track->id = static_cast<std::int32_t>(last) + 1;
            m_library.tracks.emplace_hint(m_library.tracks.end(), entry.track->id, std::move(entry.owned));
        }
        splitRun(Group(m_sorted).subspan(first, last - first));
        first = last;
    }
}

// Two first tracks of the same number: albums of the same title, told apart by artist.
void LibraryBuild::splitRun(Group run)
{
    const bool split = run.size() > 1 && run[0]->number == run[1]->number;
    for (Entry* entry : run) {
        const std::u16string artist = entry->file().wideText(FileText::Artist);
        entry->artist = toCodePage(artist);
        if (split)
            entry->sortArtist = foldWide(artist);
    }
    if (!split)
        return makeAlbum(run);
    Entries sorted(run.begin(), run.end());
    std::ranges::stable_sort(sorted, [](const Entry* left, const Entry* right) {
        const int order = left->sortArtist.compare(right->sortArtist);
        return order != 0 ? order < 0 : left->number < right->number;
    });
    for (auto first = sorted.begin(); first != sorted.end();) {
        const auto last = std::find_if(first, sorted.end(),
                                       [&](const Entry* entry) { return entry->artist != (*first)->artist; });
        makeAlbum(Group(first, last));
        first = last;
    }
}

void LibraryBuild::makeAlbum(Group group)
{
    auto album = std::make_unique<Album>();
    album->id = static_cast<std::int32_t>(m_library.albums.size()) + 1;
    album->hostTitle = group.front()->album;
    album->displayTitle = album->hostTitle.empty() ? kUnassigned : album->hostTitle;
    album->type = group.front()->type;
    album->minBitrate = std::numeric_limits<std::int32_t>::max();
    album->maxBitrate = std::numeric_limits<std::int32_t>::min();
    CommonText genre;
    CommonText artist;
    CommonYear year;
    for (const Entry* entry : group) {
        m_context.stopIfTerminating();
        entry->track->album = album.get();
        album->tracks.emplace(entry->track->id, entry->track);
        album->duration = wrappingSum(album->duration, entry->file().number(FileNumber::Duration));
        const std::int32_t bitrate = entry->file().number(FileNumber::Bitrate);
        album->minBitrate = std::min(album->minBitrate, bitrate);
        album->maxBitrate = std::max(album->maxBitrate, bitrate);
        genre.add(entry->file().text(FileText::Genre));
        year.add(entry->file().number(FileNumber::Year));
        artist.add(entry->artist);
    }
    album->genre = genre.differs() ? kVarious : genre.first().empty() ? kUnassigned : genre.first();
    album->year = year.value();
    album->set(kAlbumCompilation, artist.differs());
    album->path = folderOf(album->tracks.begin()->second->fileName);
    album->artist = &artistNamed(artist.differs() ? kVarious : artist.first());
    album->artist->albums.emplace(album->id, album.get());
    const std::int32_t id = album->id;
    m_library.albums.emplace_hint(m_library.albums.end(), id, std::move(album));
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
    return *m_library.artists.emplace_hint(m_library.artists.end(), id, std::move(artist))->second;
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
    if (NewFile(context.files, fileName).isOpen())
        return true;
    context.prompt.message(Severity::Exclamation,
                           format("Could not create the database '%s'!", fileName.c_str()));
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
