#include "library/SampleRig.h"

#include <gtest/gtest.h>

namespace tessera::test {
namespace {

HostTrack track(const char16_t* name, const char16_t* artist, const char16_t* album, std::int32_t number)
{
    HostTrack result;
    result.fileName = std::u16string(u"C:\\m\\") + name;
    result.artist = artist;
    result.album = album;
    result.number = number;
    return result;
}

class Build : public testing::Test {
protected:
    JobRig rig;
    FakeHost host;
    Database database;
    DatabaseSettings settings;

    Build() { settings.lastUsed = "C:\\db\\new.ts2"; }
    bool build()
    {
        rig.log.level = 1;
        return database.build(
            host, settings,
            [](Library& library, JobContext&) {
                library.albums.begin()->second->set(kAlbumHasImage, true);
                return 2;
            },
            rig.context);
    }
    const Library& library() const { return database.library(); }
    // "ARTIST - TITLE: ID,ID" for each album.
    std::string albums() const
    {
        std::string text;
        for (const auto& [id, album] : library().albums) {
            text += album->artist->displayName + " - " + album->displayTitle + ":";
            for (const auto& [trackId, track] : album->tracks)
                text.append(1, ' ').append(track->fileName, 5);
            text += "\n";
        }
        return text;
    }
};

TEST_F(Build, LogsEachStepAndWritesWhatLoads)
{
    host.tracks = {track(u"b\\2", u"Lumen", u"tides", 2), track(u"b\\1", u"Lumen", u"Tides", 1),
                   track(u"a\\1", u"Ada", u"Arc", 1)};
    host.tracks[0].bitrate = 192;
    ASSERT_TRUE(build());
    EXPECT_EQ(rig.log.text(), "    Performing an MJ search - (Selecting Everything)\n"
                              "    Entries in MJ database - 3\n"
                              "    Linking tracks to MJ\n"
                              "    Sorting tracks\n"
                              "    Scanning for albums\n"
                              "    Applying any additional filters on data\n"
                              "    No albums filtered out\n"
                              "    Scanning for artwork\n"
                              "    Images - 1\n"
                              "    Scanning for complete artists/albums\n"
                              "    Writing Database\n"
                              "        Writing header information\n"
                              "        Writing tracks - 3\n"
                              "        Writing albums - 2\n"
                              "        Writing artists - 2\n"
                              "        Finished");
    EXPECT_LE(host.propertyReads, 10 * 3);
    EXPECT_EQ(albums(), "Ada - Arc: a\\1\nLumen - Tides: b\\1 b\\2\n");
    const Album& tides = *library().albums.at(2);
    EXPECT_EQ(tides.path, "C:\\m\\b");
    EXPECT_EQ(tides.duration, 120);
    EXPECT_EQ(tides.minBitrate, 128);
    EXPECT_EQ(tides.maxBitrate, 192);
    EXPECT_TRUE(library().artists.at(1)->complete);
    EXPECT_FALSE(library().artists.at(2)->complete);

    Database loaded;
    ASSERT_TRUE(loaded.read(settings.lastUsed, host, rig.context, {}));
    EXPECT_EQ(loaded.library().albums.at(2)->tracks.size(), 2u);
}

TEST_F(Build, GroupsSplitByArtistOnlyWhenTheFirstNumbersAreEqual)
{
    host.tracks = {track(u"1", u"LUMEN", u"Greatest Hits", 1),
                   track(u"2", u"Lumen", u"Greatest Hits", 1),
                   track(u"3", u"Ada", u"Greatest Hits", 2),
                   track(u"4", u"Ada", u"Greatest Hits", 1),
                   track(u"5", u"Lumen", u"Mixed", 1),
                   track(u"6", u"LUMEN", u"Mixed", 2),
                   track(u"7", u"", u"", 1),
                   track(u"8", u"", u"", 2),
                   track(u"9", u"", u"Alone", 1),
                   track(u"A", u"(unassigned)", u"Zed", 1),
                   track(u"B", u"Dvo\u0159\u00E1k", u"Pair", 3), // look-alikes of one another: one artist
                   track(u"C", u"Ada", u"Pair", 3),
                   track(u"D", u"DVOR\u00C1K", u"Alone too", 1)};
    host.tracks[9].type = u"WAV";
    ASSERT_TRUE(build());
    // Sorting ignores case, cutting does not; the files without an artist get one each.
    EXPECT_EQ(albums(), "(Unassigned) - (Unassigned): 7 8\n"
                        "(Unassigned) - Alone: 9\n"
                        "DVOR\xC1K - Alone too: D\n"
                        "Ada - Greatest Hits: 4 3\n"
                        "LUMEN - Greatest Hits: 1\n"
                        "LUMEN - Greatest Hits: 2\n"
                        "(Various) - Mixed: 5 6\n"
                        "Ada - Pair: C\n"
                        "DVOR\xC1K - Pair: B\n"
                        "(Unassigned) - Zed: A\n");
    EXPECT_EQ(library().artists.size(), 6u);
    EXPECT_EQ(library().albums.at(10)->artist->id, 1);
    EXPECT_TRUE(library().albums.at(7)->has(kAlbumCompilation));
    EXPECT_EQ(library().artists.at(1)->hostName, "");
}

TEST_F(Build, GenreAndYearAreWhatTheTracksAgreeOn)
{
    struct Row {
        std::vector<std::u16string> genres;
        std::vector<std::int32_t> years;
        const char* genre;
        std::int32_t year;
    };
    const Row rows[] = {{{u"Rock", u"", u"Rock"}, {1999, 0, 1999}, "Rock", 1999},
                        {{u"Rock", u"Pop", u"Rock"}, {1999, 2001, 1999}, "(Various)", -1},
                        {{u"Rock", u"rock", u""}, {0, 0, 0}, "(Various)", 0},
                        {{u"", u"", u""}, {-5, -5, 0}, "(Unassigned)", -1}};
    for (const Row& row : rows) {
        host.tracks.clear();
        database.clear();
        for (std::size_t i = 0; i < 3; ++i) {
            host.tracks.push_back(track(u"x", u"A", u"B", static_cast<std::int32_t>(i)));
            host.tracks.back().genre = row.genres[i];
            host.tracks.back().year = row.years[i];
        }
        ASSERT_TRUE(build());
        EXPECT_EQ(library().albums.at(1)->genre, row.genre);
        EXPECT_EQ(library().albums.at(1)->year, row.year);
    }
}

TEST_F(Build, NamesOutsideTheCodePageAndMissingFilesAreLeftOut)
{
    host.tracks = {track(u"1", u"A", u"B", 1), track(u"\x30C6\xD83D\xDE00", u"A", u"B", 2),
                   track(u"2\n", u"A", u"B", 5), track(u"Dvo\u0159\u00E1k", u"A", u"B", 4),
                   track(u"3", u"A", u"B", 3)};
    host.nullCall = 3; // search, count, first file
    ASSERT_TRUE(build());
    EXPECT_EQ(rig.prompt.text(), "assertion: iterSortTracks->m_pMJFile != 0 Database 241");
    EXPECT_EQ(rig.log.lines[1], "    Entries in MJ database - 5");
    EXPECT_EQ(rig.log.lines[3],
              "    Files left out - 3 (names outside the system code page or with control characters)");
    EXPECT_EQ(albums(), "A - B: 3\n");
}

// Whatever tags hold: what is built must load.
TEST_F(Build, TagsWithControlCharactersAreLoadedAgain)
{
    HostTrack odd = track(u"1", u"", u"", 1);
    odd.artist = u"A\tz\x01"; // all but the NUL stay
    odd.album = std::u16string(u"Two\r\nlines\0more", 15);
    odd.genre = odd.type = std::u16string(u"\0", 1);
    host.tracks = {odd};
    ASSERT_TRUE(build());
    const Bytes built = rig.files.files[settings.lastUsed];
    Database again;
    ASSERT_TRUE(again.read(settings.lastUsed, host, rig.context, {})) << rig.prompt.text();
    const Album& album = *again.library().albums.at(1);
    EXPECT_EQ(album.displayTitle, "Two\r\nlines");
    EXPECT_EQ(album.artist->displayName, "A\tz\x01");
    EXPECT_EQ(album.type + album.genre, "(Unassigned)");
}

TEST_F(Build, EmptyLibraryAndCriteria)
{
    settings.lastSearchCriteria = "jazz";
    const ArtworkPass none = [](Library&, JobContext&) { return 0; };
    ASSERT_TRUE(database.build(host, settings, none, rig.context));
    EXPECT_EQ(rig.log.lines[0], "Performing an MJ search - jazz");
    EXPECT_EQ(host.searches.front(), "jazz");
    EXPECT_EQ(rig.files.files[settings.lastUsed].size(), 32u);
}

TEST_F(Build, RefusedFolderIsKnownBeforeTheHostIsAsked)
{
    rig.files.readOnly.insert("C:\\db");
    EXPECT_FALSE(build());
    EXPECT_EQ(host.calls, 0);
    EXPECT_EQ(rig.prompt.text(), "exclamation: Could not create the database 'C:\\db\\new.ts2'!");
    EXPECT_TRUE(rig.log.lines.empty());
}

TEST_F(Build, CancelledAtEveryLine)
{
    host.tracks = {track(u"1", u"A", u"B", 1), track(u"2", u"C", u"D", 1)};
    ASSERT_TRUE(build());
    const std::size_t lines = rig.log.lines.size();
    const Bytes old = rig.files.files[settings.lastUsed];
    rig.log.terminating = &rig.terminating;
    for (std::size_t line = 1; line < lines; ++line) {
        SCOPED_TRACE(line);
        database.clear();
        rig.terminating = false;
        rig.log.lines.clear();
        rig.log.cancelAtLine = line;
        EXPECT_THROW(build(), Cancelled);
        EXPECT_EQ(rig.log.level, 1);
        EXPECT_EQ(rig.files.files.size(), 1u);
        EXPECT_EQ(rig.files.files[settings.lastUsed], old);
    }
}

TEST_F(Build, HostThatFailsOrAnswersNullAtEveryCall)
{
    host.tracks = {track(u"1", u"A", u"B", 1), track(u"2", u"C", u"B", 1), track(u"3", u"C", u"D", 1)};
    ASSERT_TRUE(build());
    const int calls = host.calls;
    const Bytes old = rig.files.files[settings.lastUsed];
    for (int call = 1; call <= calls; ++call) {
        SCOPED_TRACE(call);
        database.clear();
        host.calls = 0;
        host.failingCall = call;
        EXPECT_THROW(build(), HostError);
        EXPECT_EQ(rig.log.level, 1);
        EXPECT_EQ(rig.files.files[settings.lastUsed], old);
        EXPECT_EQ(rig.files.files.size(), 1u);
    }
    host.failingCall = 0;
    for (int call = 1; call <= calls; ++call) {
        SCOPED_TRACE(call);
        database.clear();
        rig.prompt.boxes.clear();
        host.calls = 0;
        host.nullCall = call;
        if (call == 1) {
            EXPECT_THROW(build(), HostError);
            continue;
        }
        EXPECT_TRUE(build());
        EXPECT_EQ(library().tracks.size(), 3 - rig.prompt.boxes.size());
    }
}

} // namespace
} // namespace tessera::test
