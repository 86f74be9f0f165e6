#include "artwork/CoverPlaces.h"

#include <gtest/gtest.h>

namespace tessera::test {
namespace {

struct Place {
    const char* path;
    bool open;
};

class Places : public testing::Test {
protected:
    Places()
    {
        track.fileName = "\\\\nas\\Music\\a\\1.mp3";
        album.tracks[1] = &track;
        album.tracks[2] = nullptr;
    }
    void check(const CoverPlaces& places, std::initializer_list<Place> cases) const
    {
        for (const Place& place : cases)
            EXPECT_EQ(places.mayOpen(place.path, album), place.open) << place.path;
    }

    Track track;
    Album album;
};

TEST_F(Places, AServerIsAskedOnlyWhereTheUsersOwnFilesAre)
{
    check(CoverPlaces("\\\\Player\\Covers\\all", "\\\\mine\\art\\<Artist>.jpg\t\\\\<Artist>\\<Album>\\a.jpg\t"
                                                 "\\\\half<Artist>\\x\\y.jpg\t\\\\lone\\<Artist>.jpg"),
          {{"C:\\m\\folder.jpg", true},
           {"folder.jpg", true},
           {"", true},
           {"\\\\NAS\\music\\b\\x.jpg", true},
           {"//nas/music/x.jpg", true},
           {"/\\nas\\musical\\x.jpg", false},
           {"\\\\nas\\other\\x.jpg", false},
           {"\\\\nas\\music", true},
           {"\\\\player\\covers\\x.jpg", true},
           {"\\\\mine\\ART\\Lumen.jpg", true},
           {"\\\\Lumen\\Tides\\a.jpg", false},
           {"\\\\half\\x\\y.jpg", false},
           {"\\\\lone\\Lumen.jpg", false},
           {"\\\\evil\\share\\a.jpg", false},
           {"//evil/share/a.jpg", false},
           {"\\\\evil", false}});
    check({}, {{"\\\\player\\covers\\x.jpg", false}, {"\\\\nas\\music\\x.jpg", true}});
}

TEST_F(Places, ADeviceIsNeverOpened)
{
    track.fileName = "\\\\?\\UNC\\nas\\music\\1.mp3";
    check({}, {{"\\\\.\\COM1", false},
               {"\\\\?\\C:\\m\\folder.jpg", false},
               {"//?/UNC/nas/music/x.jpg", false},
               {"\\\\?\\UNC\\nas\\music\\x.jpg", false},
               {"\\??\\C:\\x.jpg", false},
               {"C:\\m\\COM1", false},
               {"C:\\m\\lpt9.jpg", false},
               {"C:/m/Con .front.jpg", false},
               {"aux:", false},
               {"C:COM1", false},
               {"C:cover.jpg", true},
               {"C:\\m\\nul.jpg", false},
               {"C:\\m\\Coma.jpg", true},
               {"C:\\m\\com\xB2.jpg", false},
               {"C:\\m\\Comet.jpg", true},
               {"C:\\con\\cover.jpg", true},
               {"C:\\m\\Auxiliary.jpg", true}});
}

} // namespace
} // namespace tessera::test
