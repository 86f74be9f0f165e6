#include "ui/AlbumInfoList.h"

#include "base/Durations.h"
#include "base/Text.h"
#include "ui/Commands.h"
#include "ui/TrackLine.h"
#include "ui/ids.h"

#include <algorithm>
#include <functional>
#include <limits>

namespace tessera {

namespace {

using Shown = std::span<Album* const>; // at least one

constexpr const char* kVarious = "(Various)";

std::string counted(std::size_t count)
{
    return format("%lu", static_cast<unsigned long>(count));
}

// What the albums have in common; they are compared until two differ.
template <class Get>
bool allHaveTheSame(Shown albums, Get get)
{
    const Album& first = *albums.front();
    return std::ranges::all_of(
        albums, [&](const Album* album) { return std::invoke(get, *album) == std::invoke(get, first); });
}

template <std::string Album::*text>
std::string commonText(Shown albums)
{
    return allHaveTheSame(albums, text) ? orUnassigned(albums.front()->*text) : kVarious;
}

std::string title(Shown albums)
{
    return albums.size() == 1 ? albums.front()->displayTitle
                              : format("(%s albums)", counted(albums.size()).c_str());
}

std::string artist(Shown albums)
{
    if (!allHaveTheSame(albums, &Album::artist))
        return kVarious;
    return albums.front()->artist ? albums.front()->artist->displayName : orUnassigned("");
}

// From the first to the last; albums without a year do not count among others.
std::string years(Shown albums)
{
    std::int32_t first = std::numeric_limits<std::int32_t>::max();
    std::int32_t last = 0;
    for (const Album* const album : albums) {
        first = album->year > 0 ? std::min(first, album->year) : first;
        last = std::max(last, album->year);
    }
    if (last > 0)
        return first == last ? yearText(first) : yearText(first) + " - " + yearText(last);
    const bool none = std::ranges::all_of(albums, [](const Album* album) { return album->year == 0; });
    return none ? yearText(0) : kVarious;
}

std::string tracks(Shown albums)
{
    std::size_t count = 0;
    for (const Album* const album : albums)
        count += album->tracks.size();
    return counted(count);
}

std::string duration(Shown albums)
{
    std::uint32_t seconds = 0;
    for (const Album* const album : albums)
        seconds += static_cast<std::uint32_t>(std::max(album->duration, 0));
    return std::string(trimRight(formatDuration(seconds, DurationStyle::Long)));
}

std::string bitrate(Shown albums)
{
    const long low = (*std::ranges::min_element(albums, {}, &Album::minBitrate))->minBitrate;
    const long high = (*std::ranges::max_element(albums, {}, &Album::maxBitrate))->maxBitrate;
    return low == high ? format("%ld kbps", low) : format("%ld - %ld kbps", low, high);
}

std::string rank(Shown albums)
{
    return allHaveTheSame(albums, &Album::rank) ? rankText(albums.front()->rank, TextStyle::Long) : kVarious;
}

// Of several albums, how many.
template <AlbumFlag flag>
std::string mark(Shown albums)
{
    if (albums.size() == 1)
        return albums.front()->has(flag) ? "Yes" : "No";
    const auto with = std::ranges::count_if(albums, [](const Album* album) { return album->has(flag); });
    return counted(static_cast<std::size_t>(with)) + " of " + counted(albums.size());
}

std::string newMark(Shown albums)
{
    const std::string date = albums.size() == 1 ? newDateText(albums.front()->newDate) : "";
    const bool dated = !date.empty() && albums.front()->has(kAlbumNew);
    return mark<kAlbumNew>(albums) + (dated ? ", since " + date : "");
}

std::string artwork(Shown albums)
{
    const Album& first = *albums.front();
    if (albums.size() == 1 && first.has(kAlbumInternalImage))
        return "(Internal Image)";
    return albums.size() == 1 && !first.thumbnailFile.empty() ? first.thumbnailFile
                                                              : mark<kAlbumHasImage>(albums);
}

constexpr struct {
    const char* name;
    std::string (*value)(Shown);
} kProperties[] = {{"Title", title},
                   {"Artist", artist},
                   {"Genre", commonText<&Album::genre>},
                   {"Year", years},
                   {"Type", commonText<&Album::type>},
                   {"Tracks", tracks},
                   {"Duration", duration},
                   {"Bitrate", bitrate},
                   {"Rank", rank},
                   {"Favourite", mark<kAlbumFavourite>},
                   {"New", newMark},
                   {"Compilation", mark<kAlbumCompilation>},
                   {"Artwork", artwork},
                   {"Folder", commonText<&Album::path>}};

} // namespace

bool AlbumInfoList::createAlbumInfo(HWND parent)
{
    return createPropertyList(parent, controlId::kAlbumInfo);
}

void AlbumInfoList::setAlbums(Shown albums)
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
    Rows rows;
    for (const auto& property : kProperties)
        rows.emplace_back(property.name, property.value(m_albums));
    return rows;
}

} // namespace tessera
