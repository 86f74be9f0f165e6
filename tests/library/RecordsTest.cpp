#include "library/Records.h"
#include "base/Dates.h"

#include <gtest/gtest.h>

namespace tessera::test {
namespace {

TEST(Records, ColumnTexts)
{
    Artist artist;
    artist.displayName = "Lumen";
    Track track;
    Album album;
    album.displayTitle = "Tides";
    album.artist = &artist;
    album.tracks[1] = &track;
    album.duration = 3725;
    album.minBitrate = 128;
    album.maxBitrate = 192;
    album.genre = "Rock";
    album.type = "MP3";
    album.path = "C:\\m";
    album.thumbnailFile = "C:\\m\\folder.jpg";
    album.newDate = 20021003;
    album.rank = -2;
    using Texts = std::array<std::string, kColumnCount>;
    EXPECT_EQ(columnTexts(album), (Texts{"Tides", "Lumen", "1", "01:02:05", "128", "192", "No", "Rock",
                                         "No Year", "MP3", "", "", "", "", "C:\\m", "C:\\m\\folder.jpg"}));
    album.maxBitrate = 128;
    album.year = -1;
    album.rank = 10;
    album.flags = kAlbumNew | kAlbumFavourite | kAlbumCompilation | kAlbumInternalImage;
    EXPECT_EQ(columnTexts(album)[8], "No Year") << "cached";
    album.columnTextsValid = false;
    EXPECT_EQ(columnTexts(album),
              (Texts{"Tides", "Lumen", "1", "01:02:05", "128", "128", "", "Rock", "-1", "MP3", "10", "Yes",
                     longDate(20021003), "Yes", "C:\\m", "(Internal Image)"}));
}

TEST(Records, TextForms)
{
    Album album;
    EXPECT_EQ(newText(album, TextStyle::Long) + newText(album, TextStyle::Short), "OldNo");
    EXPECT_EQ(favouriteText(album, TextStyle::Long), "Not a Favourite");
    EXPECT_EQ(compilationText(album, TextStyle::Long), "Not a Compilation");
    EXPECT_EQ(bitrateMatchText(album, TextStyle::Long) + bitrateMatchText(album, TextStyle::Short), "Yes");
    EXPECT_EQ(rankText(-1, TextStyle::Long), "Rank -1");
    EXPECT_EQ(rankText(0, TextStyle::Long) + rankText(0, TextStyle::Short), "Not RankedNo Rank");
    EXPECT_EQ(trackCountText(0) + trackCountText(1) + trackCountText(2), "0 Tracks1 Track2 Tracks");
    EXPECT_EQ(newDateText(0), "");
}

} // namespace
} // namespace tessera::test
