#include "library/Filters.h"
#include "library/SampleRig.h"
#include "support/CodePages.h"

#include <gtest/gtest.h>

namespace tessera::test {
namespace {

// Characters of two bytes whose second byte is a letter, "|", a backslash or a comma's neighbour.
class DoubleByte : public testing::Test {
protected:
    void SetUp() override
    {
        if (!isCodePage932())
            GTEST_SKIP() << "needs code page 932";
    }
};

TEST_F(DoubleByte, PatternsGoByWholeCharacters)
{
    EXPECT_TRUE(matchesWildcard("\x83\x5C", "?"));
    EXPECT_FALSE(matchesWildcard("\x83\x5C", "??"));
    EXPECT_FALSE(matchesWildcard("\x83\x5C", "*\x5C"));
    EXPECT_FALSE(matchesWildcard("\x83\x41", "*A"));
    EXPECT_TRUE(matchesWildcard("A\x83\x5C\x42", "A*B"));
    // The second byte is not folded: these are two different characters.
    EXPECT_FALSE(matchesWildcard(toUpper("\x83\x61"), toUpper("\x83\x41")));
    EXPECT_TRUE(matchesWildcard(toUpper("\x83\x61z"), toUpper("\x83\x61Z")));
}

TEST_F(DoubleByte, BuildAndLoadKeepNamesWhoseSecondByteIsABackslash)
{
    JobRig rig;
    FakeHost host;
    for (const char16_t* title : {u"\u30BD", u"\u30BD", u"\uFF41\u8868"}) { // 83 5C, and 82 81 95 5C
        HostTrack track;
        track.number = static_cast<std::int32_t>(host.tracks.size()) + 1;
        track.fileName = u"C:\\\u8868\\\u30BD" + std::u16string(track.number, u'\u8868');
        track.album = title;
        track.artist = u"\u30BD";
        host.tracks.push_back(track);
    }
    host.tracks.push_back(host.tracks.back());
    host.tracks[3].album = u"\uFF21\u8868";   // the capital letter: the same album
    host.tracks[3].fileName = u"C:\\4\u00E9"; // not in the code page
    DatabaseSettings settings;
    settings.lastUsed = "C:\\\x83\x5C.ts2";
    settings.exclusionList = "C:\\\x95\x5C.txt";
    rig.files.files[settings.exclusionList] = bytesOf("\x83\x5C\n\x82\x60\x95\x5C");
    const auto noArtwork = [](Library&, JobContext&) { return 0; };
    Database database;
    ASSERT_TRUE(database.build(host, settings, noArtwork, rig.context));
    Database loaded;
    ASSERT_TRUE(loaded.read(settings.lastUsed, host, rig.context, {}));
    ASSERT_EQ(loaded.library().albums.size(), 1u);
    const Album& album = *loaded.library().albums.at(1);
    EXPECT_EQ(album.hostTitle, "\x83\x5C");
    EXPECT_EQ(album.path, "C:\\\x95\x5C");
    EXPECT_EQ(album.tracks.at(2)->fileName, "C:\\\x95\x5C\\\x83\x5C\x95\x5C\x95\x5C");
    EXPECT_TRUE(rig.prompt.boxes.empty());
}

} // namespace
} // namespace tessera::test
