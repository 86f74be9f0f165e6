#include "ui/AlbumInfoList.h"

#include "base/Durations.h"
#include "base/Text.h"
#include "ui/Commands.h"
#include "ui/TrackLine.h"
#include "ui/ids.h"

#include <algorithm>
#include <limits>

namespace tessera {

namespace {

constexpr const char* kVarious = "(Various)";
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

std::string counted(std::size_t count)
{
    return format("%lu", static_cast<unsigned long>(count));
}

// What some albums sum up to and have in common, found in one walk: there may be very many.
struct Summary {
    explicit Summary(std::span<Album* const> albums) : first(*albums.front())
    {
        for (const Album* const album : albums)
            add(*album);
    }
    void add(const Album& album);

    const Album& first;
    std::size_t albums = 0;
    std::size_t tracks = 0;
    std::uint32_t seconds = 0;
    std::int32_t lowBitrate = kHighest;
    std::int32_t highBitrate = 0;
    std::int32_t firstYear = kHighest; // of those that have one
    std::int32_t lastYear = 0;
    bool noYear = true; // none has one
    std::size_t favourites = 0;
    std::size_t isNew = 0;
    std::size_t compilations = 0;
    std::size_t withImage = 0;
    bool sameArtist = true;
    bool sameGenre = true;
    bool sameType = true;
    bool sameRank = true;
    bool samePath = true;
};

void Summary::add(const Album& album)
{
    ++albums;
    tracks += album.tracks.size();
    seconds += static_cast<std::uint32_t>(std::max(album.duration, 0));
    lowBitrate = std::min(lowBitrate, album.minBitrate);
    highBitrate = std::max(highBitrate, album.maxBitrate);
    firstYear = album.year > 0 ? std::min(firstYear, album.year) : firstYear;
    lastYear = std::max(lastYear, album.year);
    noYear = noYear && album.year == 0;
    favourites += album.has(kAlbumFavourite) ? 1 : 0;
    isNew += album.has(kAlbumNew) ? 1 : 0;
    compilations += album.has(kAlbumCompilation) ? 1 : 0;
    withImage += album.has(kAlbumHasImage) ? 1 : 0;
    sameArtist = sameArtist && album.artist == first.artist;
    sameGenre = sameGenre && album.genre == first.genre;
    sameType = sameType && album.type == first.type;
    sameRank = sameRank && album.rank == first.rank;
    samePath = samePath && album.path == first.path;
}

std::string title(const Summary& all)
{
    return all.albums == 1 ? all.first.displayTitle : format("(%s albums)", counted(all.albums).c_str());
}

std::string artist(const Summary& all)
{
    const Artist* const artist = all.first.artist;
    return all.sameArtist ? orUnassigned(artist ? artist->displayName : "") : kVarious;
}

template <bool Summary::*same, std::string Album::*text>
std::string common(const Summary& all)
{
    return all.*same ? orUnassigned(all.first.*text) : kVarious;
}

// From the first to the last; albums without a year do not count among others.
std::string years(const Summary& all)
{
    if (all.lastYear <= 0)
        return all.noYear ? yearText(0) : kVarious;
    const std::string last = yearText(all.lastYear);
    return all.firstYear == all.lastYear ? last : yearText(all.firstYear) + " - " + last;
}

std::string tracks(const Summary& all)
{
    return counted(all.tracks);
}

std::string duration(const Summary& all)
{
    return std::string(trimRight(formatDuration(all.seconds, DurationStyle::Long)));
}

std::string bitrate(const Summary& all)
{
    const long low = all.lowBitrate;
    const long high = all.highBitrate;
    return low == high ? format("%ld kbps", low) : format("%ld - %ld kbps", low, high);
}

std::string rank(const Summary& all)
{
    return all.sameRank ? rankText(all.first.rank, TextStyle::Long) : kVarious;
}

// Of several albums, how many.
template <std::size_t Summary::*marked>
std::string mark(const Summary& all)
{
    if (all.albums == 1)
        return all.*marked > 0 ? "Yes" : "No";
    return counted(all.*marked) + " of " + counted(all.albums);
}

std::string newMark(const Summary& all)
{
    const std::string date = all.albums == 1 && all.isNew > 0 ? newDateText(all.first.newDate) : "";
    return mark<&Summary::isNew>(all) + (date.empty() ? "" : ", since " + date);
}

std::string artwork(const Summary& all)
{
    if (all.albums == 1 && all.first.has(kAlbumInternalImage))
        return "(Internal Image)";
    return all.albums == 1 && !all.first.thumbnailFile.empty() ? all.first.thumbnailFile
                                                               : mark<&Summary::withImage>(all);
}

constexpr struct {
    const char* name;
    std::string (*value)(const Summary&);
} kProperties[] = {{"Title", title},
                   {"Artist", artist},
                   {"Genre", common<&Summary::sameGenre, &Album::genre>},
                   {"Year", years},
                   {"Type", common<&Summary::sameType, &Album::type>},
                   {"Tracks", tracks},
                   {"Duration", duration},
                   {"Bitrate", bitrate},
                   {"Rank", rank},
                   {"Favourite", mark<&Summary::favourites>},
                   {"New", newMark},
                   {"Compilation", mark<&Summary::compilations>},
                   {"Artwork", artwork},
                   {"Folder", common<&Summary::samePath, &Album::path>}};

} // namespace

bool AlbumInfoList::createAlbumInfo(HWND parent)
{
    return createPropertyList(parent, controlId::kAlbumInfo);
}

void AlbumInfoList::setAlbums(std::span<Album* const> albums)
{
    m_albums.assign(albums.begin(), albums.end());
    if (m_albums.empty())
        clear();
    else
        setProperties(static_cast<int>(std::size(kProperties)), [this] { return readAlbums(); });
}

std::optional<PropertyList::Rows> AlbumInfoList::readAlbums() const
{
    if (commands().isBusy() || m_albums.empty())
        return std::nullopt;
    const Summary summary(m_albums);
    Rows rows;
    for (const auto& property : kProperties)
        rows.emplace_back(property.name, property.value(summary));
    return rows;
}

} // namespace tessera
