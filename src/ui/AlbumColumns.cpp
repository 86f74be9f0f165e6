#include "ui/AlbumColumns.h"

#include <windows.h>

#include <commctrl.h>

namespace tessera {

namespace {

template <std::int32_t Album::*member>
std::int32_t value(const Album& album)
{
    return album.*member;
}

template <AlbumFlag flag>
std::int32_t flagged(const Album& album)
{
    return album.has(flag) ? 1 : 0;
}

std::int32_t trackCount(const Album& album)
{
    return static_cast<std::int32_t>(album.tracks.size());
}

std::int32_t bitratesDiffer(const Album& album)
{
    return album.minBitrate != album.maxBitrate ? 1 : 0;
}

std::int32_t newSince(const Album& album)
{
    return album.has(kAlbumNew) ? album.newDate : 0;
}

constexpr AlbumColumn kColumns[kColumnCount] = {
    {"Album", LVCFMT_LEFT, 150, nullptr},
    {"Artist", LVCFMT_LEFT, 150, nullptr},
    {"Num Tracks", LVCFMT_RIGHT, 0, trackCount},
    {"Duration", LVCFMT_RIGHT, 100, value<&Album::duration>},
    {"Min Bitrate", LVCFMT_RIGHT, 0, value<&Album::minBitrate>},
    {"Max Bitrate", LVCFMT_RIGHT, 0, value<&Album::maxBitrate>},
    {"Bitrate Match", LVCFMT_CENTER, 0, bitratesDiffer},
    {"Genre", LVCFMT_LEFT, 120, nullptr},
    {"Year", LVCFMT_RIGHT, 75, value<&Album::year>},
    {"Type", LVCFMT_CENTER, 75, nullptr},
    {"Rank", LVCFMT_RIGHT, 75, value<&Album::rank>},
    {"Favourite", LVCFMT_CENTER, 75, flagged<kAlbumFavourite>},
    {"New", LVCFMT_RIGHT, 120, newSince},
    {"Compilation", LVCFMT_CENTER, 120, flagged<kAlbumCompilation>},
    {"Path", LVCFMT_LEFT, 200, nullptr},
    {"Thumbnail", LVCFMT_LEFT, 200, nullptr},
};

} // namespace

std::span<const AlbumColumn, kColumnCount> albumColumns()
{
    return kColumns;
}

} // namespace tessera
