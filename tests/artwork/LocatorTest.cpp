#include "artwork/Locator.h"

#include "support/FakeHost.h"
#include "support/Recorders.h"

#include <gtest/gtest.h>

namespace tessera::test {
namespace {

constexpr char kPatterns[] = "<AlbumPath>\\<Album>.jpg\t\t<AlbumPath>\\*front*.jpg\t";
constexpr char kNamed[] = "C:\\m\\a\\Tides.jpg";
constexpr char kSearched[] = "C:\\m\\a\\*front*.jpg";

class Locator : public testing::Test {
protected:
    JobRig rig;
    FakeHost host;
    Library library;
    TokenParser tokens;
    Artist artist;
    std::string unreadable; // no picture
    int checks = 0;

    Locator()
    {
        artist.displayName = "Lumen";
        host.tracks.push_back({});
        host.tracks[0].fileName = u"C:\\m\\a\\1.mp3";
        auto track = std::make_unique<Track>();
        track->id = 4;
        track->m_pMJFile = host.file("C:\\m\\a\\1.mp3");
        auto album = std::make_unique<Album>();
        album->id = 1;
        album->artist = &artist;
        album->displayTitle = album->hostTitle = "Tides";
        album->path = "C:\\m\\a";
        album->tracks[4] = track.get();
        library.tracks[4] = std::move(track);
        library.albums[1] = std::move(album);
        rig.log.line("Scanning for artwork");
    }
    Album& album() { return *library.albums.at(1); }
    std::int32_t locate(const char* patterns = kPatterns)
    {
        const auto isPicture = [this](const std::string& path) {
            ++checks;
            return path != unreadable;
        };
        return locateAllArtwork(library, tokens, patterns, isPicture, rig.context);
    }
};

TEST_F(Locator, FirstCandidateThatExistsWins)
{
    rig.files.files[kNamed] = {};
    EXPECT_EQ(locate(), 2);
    EXPECT_EQ(album().thumbnailFile, kNamed);
    EXPECT_EQ(album().flags, kAlbumHasImage);
    EXPECT_TRUE(rig.files.searched.empty());
    EXPECT_TRUE(host.imageQueries.empty());
    EXPECT_EQ(rig.log.percents.back(), 100u);
}

TEST_F(Locator, LaterCandidateReplacesWhatTheHostSaid)
{
    host.tracks[0].imageFile = "C:\\host.jpg";
    rig.files.matches[kSearched] = "Front Cover.jpg";
    EXPECT_EQ(locate(), 2);
    EXPECT_EQ(album().thumbnailFile, "C:\\m\\a\\Front Cover.jpg");
    EXPECT_EQ(host.imageQueries.size(), 1u);
    EXPECT_EQ(rig.files.searched.size(), 2u);
}

TEST_F(Locator, HostIsAskedAfterEachCandidateThatFails)
{
    host.tracks[0].imageFile = "C:\\host.jpg";
    EXPECT_EQ(locate(), 2);
    EXPECT_EQ(album().thumbnailFile, "C:\\host.jpg");
    EXPECT_EQ(join(host.imageQueries, "|"), "1 C:\\m\\a\\1.mp3|1 C:\\m\\a\\1.mp3");
}

// A host without a folder for covers, and an artist that is called like a server.
TEST_F(Locator, NoNameOfATrackLeadsToAServer)
{
    artist.displayName = "\\evil\\share";
    rig.files.files["\\\\evil\\share - Tides.jpg"] = {};
    rig.files.matches["\\\\evil\\share\\*"] = "a.jpg";
    rig.files.calls = 0;
    EXPECT_EQ(locate("<MJArtworkDir>\\<Artist> - <Album>.jpg\t\\<Artist>\\*"), 0);
    EXPECT_EQ(rig.files.calls, 0);
    EXPECT_EQ(album().thumbnailFile, "");
}

TEST_F(Locator, PictureInsideTheTrackEndsTheSearch)
{
    host.tracks[0].embeddedImage = "C:\\temp\\x.jpg";
    rig.files.files["C:\\temp\\x.jpg"] = {};
    EXPECT_EQ(locate(), 1);
    EXPECT_EQ(album().thumbnailFile, "");
    EXPECT_EQ(album().flags, kAlbumHasImage | kAlbumInternalImage);
    EXPECT_TRUE(rig.files.files.empty()) << "the temporary file is gone";
    EXPECT_EQ(host.imageQueries.size(), 2u);
    EXPECT_EQ(checks, 0);

    host.tracks[0].embeddedImage = "C:\\m\\a\\own.jpg";
    rig.files.files["C:\\m\\a\\own.jpg"] = {};
    locate();
    EXPECT_EQ(rig.files.files.size(), 1u) << "only temporary files are the program's to remove";
}

TEST_F(Locator, NoPictureAnywhere)
{
    EXPECT_EQ(locate(), 0);
    EXPECT_EQ(album().flags, 0u);
    EXPECT_EQ(host.imageQueries.size(), 4u);
}

TEST_F(Locator, UnreadablePictureKeepsTheFlagOnly)
{
    rig.files.folders.insert("C:\\m\\a");
    unreadable = "C:\\m\\a";
    EXPECT_EQ(locate("<AlbumPath>"), 1);
    EXPECT_EQ(album().thumbnailFile, "");
    EXPECT_EQ(album().flags, kAlbumHasImage);

    host.tracks[0].imageFile = "C:\\host\n.jpg"; // no load would take it
    EXPECT_EQ(locate("C:\\none.jpg"), 1);
    EXPECT_EQ(album().thumbnailFile, "");
}

TEST_F(Locator, NoCandidatesNoQuestions)
{
    EXPECT_EQ(locate(""), 0);
    EXPECT_EQ(locate("\t\t"), 0);
    EXPECT_TRUE(host.imageQueries.empty());
}

TEST_F(Locator, FolderPartIsCutAtTheLastBackslash)
{
    struct Row {
        const char* candidate;
        const char* path;
    };
    for (const Row& row :
         {Row{"C:\\a\\b*", "C:\\a\\x"}, Row{"C:\\a\\b\\", "C:\\a\\x"}, Row{"b*", "x"}, Row{"b\\", "x"}}) {
        rig.files.matches = {{row.candidate, "x"}};
        EXPECT_EQ(locate(row.candidate), 2);
        EXPECT_EQ(album().thumbnailFile, row.path) << row.candidate;
    }
}

TEST_F(Locator, AlbumWithoutTracksAndTrackWithoutHostFile)
{
    album().tracks.begin()->second->m_pMJFile = nullptr;
    try {
        locate();
        ADD_FAILURE() << "no error";
    } catch (const HostError& error) {
        EXPECT_EQ(error.code(), kErrorPointer);
    }
    album().tracks.clear();
    EXPECT_EQ(locate(), 0);
    EXPECT_EQ(rig.prompt.text(), "assertion: pTrack Artwork 204");
    library.albums.clear();
    EXPECT_EQ(locate(), 0);
}

// Disk and host may take long over each step; the host's temporary file goes in any case.
TEST_F(Locator, TheEndOfThePlugInIsSeenBeforeTheNextStep)
{
    int start = 0;
    int last = 0;
    const auto steps = [&] { return rig.files.calls + host.calls - start; };
    rig.files.insideCall = host.insideCall = [&] { rig.terminating = steps() >= last; };
    for (const char* embedded : {"", "C:\\temp\\x.jpg"}) {
        host.tracks[0].embeddedImage = embedded;
        const int total = *embedded ? 5 : 8; // exists, find, twice the host, remove; two candidates
        for (last = 1; last <= total; ++last) {
            rig.terminating = false;
            start += steps();
            EXPECT_THROW(locate("C:\\a.jpg\tC:\\b*.jpg"), Cancelled) << last;
            EXPECT_EQ(steps(), *embedded && last == 4 ? 5 : last);
        }
    }
}

TEST_F(Locator, PatternsAsTypedWithoutAnAlbum)
{
    EXPECT_EQ(join(expandArtworkPatterns(tokens, "\t<Album>\\n.jpg\t\tb", nullptr), "|"), "<Album>\\n.jpg|b");
    EXPECT_EQ(join(expandArtworkPatterns(tokens, "\t<Album>\\n.jpg\t\tb", &album()), "|"), "Tides\\n.jpg|b");
}

} // namespace
} // namespace tessera::test
