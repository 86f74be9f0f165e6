#pragma once

#include "ports/SettingsStore.h"

#include <cstdint>
#include <string>

namespace tessera {

// The seven groups of settings. A default-made group holds the defaults.

struct GeneralSettings {
    std::int32_t lastPane = 3000;
    bool supportSkinning = true;
    bool moveThe = true;
    bool sortTracksByLocation = true;
    bool disableNotes = true;
    bool firstTime = true;
    std::string artistFirstNames;
    std::string tileViewTokens = "<Artist> - <Album> - <Year>\r\n"
                                 "  <Bitrate> kbps <Type>, <RankEx>, <New>, <Favourite>\r\n"
                                 "  <NumTracksEx>, <Duration>\r\n"
                                 "  <AlbumPath>";
    std::int32_t tileWidth = 364;
    std::string iconViewTokens = "<Album> - <Year>\r\n<Artist>\r\n(<Bitrate> kbps <Type>)";
    std::int32_t iconCaptionHeight = 50;
    bool iconCaptionCentred = false;
};

struct DatabaseSettings {
    std::string lastUsed;
    std::string lastSearchCriteria;
    std::string excludedTypes;
    std::string exclusionList;
    bool excludeUnassigned = false;
    std::int32_t minTracksPerAlbum = 1;
    std::string artworkDirectories = "<MJArtworkDir>\\<Artist> - <Album>.jpg\t"
                                     "<AlbumPath>\\folder.jpg\t"
                                     "<AlbumPath>\\*front*.jpg";
    bool loadLastAtStartup = true;
};

struct ArtworkSettings {
    std::int32_t imageSizeIndex = 0; // 0 to 5: 75 to 200 pixels in steps of 25; 6: custom
    std::int32_t customWidth = 110;
    std::int32_t customHeight = 110;
    bool backgroundLoading = true;
    std::string defaultImage;
};

struct BalloonSettings {
    bool enabled = true;
    bool showArtwork = true;
    std::int32_t width = 64;
    std::int32_t height = 64;
    std::int32_t delay = 2000; // milliseconds
    std::string headingTokens = "<Artist> - <Album> - <Year>\r\n<Bitrate> kbps <Type>";
    std::string trackTokens = "<NumberEx>.  <Name>   (<Duration>)";
};

struct OverviewSettings {
    bool showSearch = true;
    bool searchBoxTop = true;
    bool searchArtist = true;
    bool searchAlbum = true;
    bool searchGenre = true;
    std::string searchCriteria;
    std::int32_t listviewStyle = 3; // 0 icons, 1 details, 3 tiles
};

struct AlbumDetailsSettings {
    std::int32_t listviewStyle = 1; // as in the overview
    std::int32_t trackDetailsCombo = 0;
    double splitMain = 50.0; // percent, as the other two
    double splitDetails = 50.0;
    double splitTracks = 50.0;
};

struct HookSettings {
    bool enableMM = false;
    bool enableHK = false;
    std::string hotKey1Tokens =
        "/me is playing: <Name> - <Album>  [Time: <Duration> | <Bitrate> kbps <Type> | <FileSize>]";
    std::string hotKey2Tokens =
        "[move]Listening To: [color=Blue]<Name>[/color] from [color=Blue]<Album>[/color] by "
        "[color=Blue]<Artist>[/color] ([color=Red]<Bitrate> kbps <Type>[/color])[/move])";
};

// Defaults first, then every value that exists and is sound over its default.
// Specialised for the seven groups above.
template <class Group>
Group loadSettings(SettingsStore& store);
// Writes every value of the group.
template <class Group>
void saveSettings(SettingsStore& store, const Group& group);

} // namespace tessera
