#include "library/Records.h"

#include "base/Dates.h"
#include "base/Durations.h"
#include "base/Text.h"

namespace tessera {

namespace {

std::string number(std::size_t value)
{
    return std::to_string(value);
}
std::string number(std::int32_t value)
{
    return std::to_string(value);
}

std::string yesOrEmpty(bool yes)
{
    return yes ? "Yes" : "";
}

std::string flagText(bool set, TextStyle style, const char* longSet, const char* longClear)
{
    if (style == TextStyle::Long)
        return set ? longSet : longClear;
    return set ? "Yes" : "No";
}

} // namespace

void Library::clear()
{
    artists.clear();
    albums.clear();
    tracks.clear();
}

std::string newText(const Album& album, TextStyle style)
{
    return flagText(album.has(kAlbumNew), style, "New", "Old");
}

std::string favouriteText(const Album& album, TextStyle style)
{
    return flagText(album.has(kAlbumFavourite), style, "Favourite", "Not a Favourite");
}

std::string compilationText(const Album& album, TextStyle style)
{
    return flagText(album.has(kAlbumCompilation), style, "Compilation", "Not a Compilation");
}

std::string rankText(std::int32_t rank, TextStyle style)
{
    if (rank != 0)
        return "Rank " + number(rank);
    return style == TextStyle::Long ? "Not Ranked" : "No Rank";
}

std::string yearText(std::int32_t year)
{
    return year != 0 ? number(year) : "No Year";
}

std::string bitrateMatchText(const Album& album, TextStyle style)
{
    if (album.minBitrate != album.maxBitrate)
        return "No";
    return style == TextStyle::Long ? "Yes" : "";
}

std::string newDateText(std::int32_t date)
{
    return date != 0 ? longDate(date) : "";
}

std::string trackCountText(std::size_t count)
{
    return number(count) + (count == 1 ? " Track" : " Tracks");
}

void rebuildColumnTexts(Album& album)
{
    if (!album.columnTexts)
        album.columnTexts = std::make_unique<ColumnTexts>();
    *album.columnTexts = {
        album.displayTitle,
        album.artist ? album.artist->displayName : std::string(),
        number(album.tracks.size()),
        formatDuration(static_cast<std::uint32_t>(album.duration), DurationStyle::Clock),
        number(album.minBitrate),
        number(album.maxBitrate),
        bitrateMatchText(album, TextStyle::Short),
        album.genre,
        yearText(album.year),
        album.type,
        album.rank >= 1 ? number(album.rank) : std::string(),
        yesOrEmpty(album.has(kAlbumFavourite)),
        album.has(kAlbumNew) ? newDateText(album.newDate) : std::string(),
        yesOrEmpty(album.has(kAlbumCompilation)),
        album.path,
        album.has(kAlbumInternalImage) ? "(Internal Image)" : album.thumbnailFile,
    };
    album.columnTextsValid = true;
}

const ColumnTexts& columnTexts(Album& album)
{
    if (!album.columnTextsValid)
        rebuildColumnTexts(album);
    return *album.columnTexts;
}

} // namespace tessera
