#include "library/SampleRig.h"

#include <gtest/gtest.h>

namespace tessera::test {
namespace {

// The system has 65,535 movable blocks for all of a process; large libraries have as many albums.
TEST(StoredCovers, ALargeLibraryLoadsWithAllOfThem)
{
    constexpr std::int64_t kAlbums = 66000;
    Ts2Bytes file;
    file.header(1, kAlbums, kAlbums, 1, kAlbums);
    for (std::int64_t id = 1; id <= kAlbums; ++id)
        file.word(0).word(id).text("C:\\m\\a\\1.mp3").word(id);
    for (std::int64_t id = 1; id <= kAlbums; ++id) {
        file.word(1 | 2).word(id).text("t").text("MP3").word(1).text("").words({1, 2, 3, 4, 5, 6});
        file.ids({id}).text("").text("");
    }
    file.word(1).word(1).text("x").word(1).word(kAlbums);
    for (std::int64_t id = 1; id <= kAlbums; ++id)
        file.word(id);
    for (std::int64_t id = 1; id <= kAlbums; ++id)
        file.word(id).text("JPEG!");
    SampleRig rig;
    ASSERT_TRUE(rig.read(file.bytes)) << rig.prompt.text();
    EXPECT_EQ(rig.database.library().albums.at(kAlbums)->imageLength, 5U);
}

} // namespace
} // namespace tessera::test
