#pragma once

#include "library/RecordMap.h"
#include "ports/Host.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tessera {

struct Album;
struct Artist;

struct Track {
    std::int32_t id = 0;
    std::uint32_t flags = 0;
    std::int32_t albumId = -1; // as read from the file; -1: none
    std::uint32_t filePosition = 0;
    HostFilePtr m_pMJFile;
    std::string fileName; // full path, as the host reports it
    Album* album = nullptr;
};

enum AlbumFlag : std::uint32_t {
    kAlbumTitleOnce = 1, // host title equals display title; the file stores it once
    kAlbumHasImage = 2,
    kAlbumNew = 4,
    kAlbumFavourite = 8,
    kAlbumCompilation = 16,
    kAlbumInternalImage = 32, // the picture is inside the first track's file
};

inline constexpr std::size_t kColumnCount = 16;
using ColumnTexts = std::array<std::string, kColumnCount>; // of the album list

struct Album {
    std::int32_t id = 0;
    std::uint32_t flags = 0;
    std::uint32_t filePosition = 0;
    std::string displayTitle;
    std::string hostTitle;
    std::string type;
    std::int32_t minBitrate = 0;
    std::int32_t maxBitrate = 0;
    std::int32_t year = 0; // 0: none, -1: the tracks disagree
    Artist* artist = nullptr;
    RecordMap<Track*> tracks;
    std::string path; // folder of the track with the lowest id
    std::string thumbnailFile;
    std::uint32_t imageLength = 0;
    std::vector<std::uint8_t>
        m_hGlobalThumbnail; // of the image section, encoded; by the name in its assertion
    std::string genre;
    std::int32_t imageIndex = -1; // in the image lists; -1: not loaded
    std::int32_t duration = 0;    // seconds
    std::int32_t rank = 0;        // 0: not ranked
    std::int32_t newDate = 0;     // YYYYMMDD, 0: none
    bool columnTextsValid = false;
    std::unique_ptr<ColumnTexts> columnTexts; // none until they are asked for

    bool has(AlbumFlag flag) const { return (flags & flag) != 0; }
    void set(AlbumFlag flag, bool on)
    {
        flags = on ? flags | flag : flags & ~static_cast<std::uint32_t>(flag);
    }
};

struct Artist {
    std::int32_t id = 0;
    std::uint32_t flags = 0;
    std::uint32_t filePosition = 0;
    std::string displayName;
    std::string hostName;
    RecordMap<Album*> albums;
    bool complete = false; // every album has a thumbnail
};

// The collections own the records; records point to each other without owning.
// Every walk goes in ascending id order.
using Tracks = RecordMap<std::unique_ptr<Track>>;
using Albums = RecordMap<std::unique_ptr<Album>>;
using Artists = RecordMap<std::unique_ptr<Artist>>;

struct Library {
    Tracks tracks;
    Albums albums;
    Artists artists;

    void clear(); // artists, albums, tracks
    bool empty() const { return tracks.empty() && albums.empty() && artists.empty(); }
};

enum class TextStyle { Short = 0, Long = 1 };

std::string newText(const Album& album, TextStyle style);
std::string favouriteText(const Album& album, TextStyle style);
std::string compilationText(const Album& album, TextStyle style);
std::string rankText(std::int32_t rank, TextStyle style);
std::string yearText(std::int32_t year);
std::string bitrateMatchText(const Album& album, TextStyle style);
std::string newDateText(std::int32_t date);
std::string trackCountText(std::size_t count);

// Rebuilds the sixteen texts of the album list's columns and marks them valid.
void rebuildColumnTexts(Album& album);
// The texts, rebuilt first when they are stale.
const ColumnTexts& columnTexts(Album& album);

} // namespace tessera
