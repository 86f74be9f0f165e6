#include "library/TrackOrder.h"

#include <gtest/gtest.h>

namespace tessera {
namespace {

TEST(TrackOrderTest, ByFileNameIgnoringCaseThenById)
{
    Track tracks[4];
    const char* const names[] = {"C:\\b\\2.mp3", "C:\\B\\1.mp3", "C:\\a.mp3", "c:\\A.mp3"};
    Album album;
    for (int i = 0; i < 4; ++i) {
        tracks[i].id = i + 1;
        tracks[i].fileName = names[i];
        album.tracks[i + 1] = &tracks[i];
    }
    EXPECT_EQ(tracksInOrder(album, true),
              (std::vector<Track*>{&tracks[2], &tracks[3], &tracks[1], &tracks[0]}));
    EXPECT_EQ(tracksInOrder(album, false),
              (std::vector<Track*>{&tracks[0], &tracks[1], &tracks[2], &tracks[3]}));
    EXPECT_TRUE(tracksInOrder(Album(), true).empty());
}

} // namespace
} // namespace tessera
