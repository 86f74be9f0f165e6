#include "library/SampleRig.h"

#include <gtest/gtest.h>

#include <chrono>

namespace tessera::test {
namespace {

constexpr char kShortRead[] = "assertion: (DWORD)lLength <= m_dwFileRemaining Database 649";

// Every link of a library leads to a record of the library, and back.
void expectSoundLinks(const Library& library)
{
    for (const auto& [id, track] : library.tracks) {
        ASSERT_TRUE(track->m_pMJFile);
        ASSERT_TRUE(!track->album || track->album->tracks.at(id) == track.get());
    }
    for (const auto& [id, album] : library.albums) {
        ASSERT_FALSE(album->tracks.empty());
        ASSERT_EQ(album->artist->albums.at(id), album.get());
        for (const auto& [trackId, track] : album->tracks)
            ASSERT_EQ(library.tracks.at(trackId)->album, album.get());
    }
    for (const auto& [id, artist] : library.artists)
        for (const auto& [albumId, album] : artist->albums)
            ASSERT_EQ(library.albums.at(albumId)->artist, artist.get());
}

bool isPath(const std::string& text)
{
    return std::ranges::none_of(text, [](unsigned char c) { return c < 32; });
}

// They end in the data of a drag, in boxes and in exports.
void expectPlainTexts(const Library& library)
{
    for (const auto& [id, track] : library.tracks)
        ASSERT_TRUE(isPath(track->fileName)) << id;
    for (const auto& [id, album] : library.albums) {
        ASSERT_TRUE(isPath(album->path) && isPath(album->thumbnailFile)) << id;
        for (const std::string* name : {&album->hostTitle, &album->displayTitle, &album->type, &album->genre})
            ASSERT_EQ(name->find('\0'), std::string::npos) << id;
    }
    for (const auto& [id, artist] : library.artists)
        ASSERT_EQ((artist->hostName + artist->displayName).find('\0'), std::string::npos) << id;
}

TEST(Reader, SampleIsReadWithItsLinksAndLogged)
{
    SampleRig rig;
    SamplePlaces places;
    ASSERT_TRUE(rig.read(sampleDatabase(&places)));
    const Library& library = rig.database.library();
    expectSoundLinks(library);
    EXPECT_TRUE(rig.linksDone);
    EXPECT_EQ(rig.log.text(), "    Reading header information\n"
                              "    Reading tracks - 4\n"
                              "    Reading albums - 2\n"
                              "    Reading artists - 2\n"
                              "    Reading images - 1\n"
                              "    Finished");
    EXPECT_EQ(rig.log.percents, (std::vector<std::uint32_t>{0, 100, 100, 100, 100, 0}));
    EXPECT_EQ(rig.log.level, 0);
    EXPECT_EQ(rig.prompt.text(), "");
    const Album& album = *library.albums.at(1);
    EXPECT_EQ(album.displayTitle, "Tides");
    EXPECT_EQ(album.filePosition, places.firstAlbum);
    EXPECT_EQ(library.artists.at(1)->filePosition, places.firstArtist);
    EXPECT_EQ(album.newDate, 20021003);
    EXPECT_EQ(album.imageLength, 5u);
    EXPECT_EQ(album.m_hGlobalThumbnail, bytesOf("JPEG!"));
    EXPECT_EQ(album.imageIndex, -1);
    EXPECT_EQ(library.albums.at(3)->displayTitle, "(Unassigned)");
    EXPECT_EQ(library.albums.at(3)->year, -1);
    EXPECT_EQ(library.tracks.at(7)->album, nullptr);
    EXPECT_EQ(library.tracks.at(7)->albumId, -1);
    EXPECT_TRUE(library.artists.at(1)->complete);
    EXPECT_EQ(library.artists.at(2)->hostName, "");
    EXPECT_EQ(rig.written(), sampleDatabase());
}

TEST(Reader, OtherDatabaseFlagsAreCarried)
{
    SampleRig rig;
    Ts2Bytes file;
    file.header(0x80000002, 0, 0, 0, 0);
    ASSERT_TRUE(rig.read(file.bytes));
    EXPECT_EQ(rig.written(), file.bytes);
    EXPECT_TRUE(rig.database.library().empty());
}

TEST(Reader, ImageOfLengthZeroLeavesTheAlbumWithoutOne)
{
    SampleRig rig;
    rig.files.files["C:\\m\\a\\folder.jpg"].clear();
    ASSERT_TRUE(rig.read(sampleDatabase(nullptr, "")));
    EXPECT_TRUE(rig.database.library().albums.at(1)->m_hGlobalThumbnail.empty());
    EXPECT_EQ(rig.written(), sampleDatabase(nullptr, ""));
}

TEST(Reader, EveryTruncationStopsAtTheAssertion)
{
    const Bytes whole = sampleDatabase();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        SCOPED_TRACE(length);
        SampleRig rig;
        EXPECT_FALSE(rig.read(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length))));
        EXPECT_EQ(rig.prompt.text(), kShortRead);
        EXPECT_EQ(rig.log.lines.back(), "    Finished");
        EXPECT_EQ(rig.log.level, 0);
        EXPECT_FALSE(rig.linksDone);
    }
}

// Loads and is the same when written again, or says why not, whatever bit of whatever byte is another,
// and for the next number, the one before, and the ends. Bytes of a picture, and names of files that the
// host and the disk do not know, are told apart.
TEST(Reader, EverySingleByteChangeLoadsTheSameOrIsRefused)
{
    SamplePlaces places;
    const Bytes whole = sampleDatabase(&places);
    const std::size_t picture = whole.size() - 5;
    int loaded = 0;
    for (std::size_t position = 0; position < picture; ++position) {
        const unsigned old = whole[position];
        for (const unsigned value :
             {old ^ 1, old ^ 2, old ^ 4, old ^ 8, old ^ 16, old ^ 32, old ^ 64, old ^ 128, old + 1, old + 2,
              old - 1, old - 2, 0U, 0x7FU, 0x80U, 0xFFU}) {
            Bytes changed = whole;
            changed[position] = static_cast<std::uint8_t>(value);
            SampleRig rig;
            const bool good = rig.read(changed);
            ASSERT_EQ(rig.log.level, 0);
            ASSERT_EQ(rig.log.lines.back(), "    Finished");
            ASSERT_NE(good, !rig.prompt.boxes.empty())
                << position << " = " << value << ": " << rig.prompt.text();
            ASSERT_TRUE(std::ranges::all_of(rig.host.lookups, isPath)) << position << " = " << value;
            if (!good)
                continue;
            ++loaded;
            expectSoundLinks(rig.database.library());
            expectPlainTexts(rig.database.library());
            for (const auto& [id, album] : rig.database.library().albums)
                if (album->has(kAlbumHasImage))
                    rig.files.files[album->thumbnailFile] = bytesOf("JPEG!");
            ASSERT_EQ(rig.written(), changed) << position << " = " << value;
            ASSERT_EQ(rig.prompt.text(), "");
        }
    }
    EXPECT_GT(loaded, 16 * 40); // texts, numbers and settings may be anything
}

struct Fault {
    const char* name;
    std::size_t position; // of a word
    std::int64_t value;
    const char* box;
};

TEST(Reader, OneBrokenFieldIsNamed)
{
    SamplePlaces at;
    const Bytes whole = sampleDatabase(&at);
    constexpr char kInvalid[] = "stop: Invalid database!";
    const std::string version1 =
        "stop: Error reading \"C:\\db\\sample.ts2\"\n\nInvalid version of database ... can "
        "only support version 2 ... found ";
    const std::string version3 = version1 + "3!";
    const std::string versionNegative = version1 + "-1!";
    const std::size_t albumIds = at.firstAlbum + 4 * 13 + 5 + 3 + 4; // first id of the list
    const std::size_t artistIds = at.secondArtist - 4;
    const Fault faults[] = {
        {"first magic", 0, 90126, kInvalid},
        {"version 3", 8, 3, version3.c_str()},
        {"version -1", 8, -1, versionNegative.c_str()},
        {"fewer tracks than there are", 16, 3, nullptr},
        {"more tracks than the file can hold", 16, 0xFFFFFFFF, nullptr},
        {"more images than there are", 28, 2, kShortRead},
        {"file name longer than the file", at.firstTrack + 8, 0x7FFFFFFF, kShortRead},
        {"title once although titles differ", at.secondAlbum, 9, nullptr},
        {"track id 0 in the list", albumIds, 0, "assertion: *plId Database 712"},
        {"unknown track", albumIds, 5, "assertion: pTrack Database 715"},
        {"negative track", albumIds, -1, "assertion: pTrack Database 715"},
        {"unknown album", artistIds, 2, "assertion: pAlbum Database 758"},
        {"image of an unknown album", at.images, 2, "assertion: pAlbum Database 793"},
        {"image longer than the file", at.images + 4, 0xFFFFFFFF, kShortRead},
    };
    for (const Fault& fault : faults) {
        SCOPED_TRACE(fault.name);
        Bytes broken = whole;
        const Bytes word = Ts2Bytes().word(fault.value).bytes;
        std::ranges::copy(word, broken.begin() + static_cast<std::ptrdiff_t>(fault.position));
        SampleRig rig;
        EXPECT_FALSE(rig.read(broken));
        ASSERT_EQ(rig.prompt.boxes.size(), 1u);
        if (fault.box) {
            EXPECT_EQ(rig.prompt.text(), fault.box);
        }
        EXPECT_EQ(rig.log.level, 0);
        EXPECT_FALSE(rig.linksDone);
    }
}

// One fault in each file; all else of it is as the writer makes it.
TEST(Reader, WhatTheWriterCannotHaveMadeIsRefused)
{
    const auto boxOf = [](const Ts2Bytes& file) {
        SampleRig rig;
        const bool good = rig.read(file.bytes);
        EXPECT_EQ(good, rig.prompt.boxes.empty());
        return rig.prompt.text();
    };
    constexpr char kInvalid[] = "stop: Invalid database!";
    // Tracks 1 and 2, which say that they belong to these albums; then albums that say so, too.
    const auto tracks = [](std::int64_t albums, std::initializer_list<std::int64_t> albumIds) {
        Ts2Bytes file;
        file.header(0, static_cast<std::int64_t>(albumIds.size()), albums, 1, 0);
        std::int64_t id = 0;
        for (const std::int64_t album : albumIds) {
            ++id;
            file.word(0).word(id).text("C:\\m\\a\\" + std::to_string(id) + ".mp3").word(album);
        }
        return file;
    };
    const auto album = [](Ts2Bytes& file, std::int64_t id, std::initializer_list<std::int64_t> ids) {
        file.word(1).word(id).text("t").text("MP3").word(1).text("");
        file.words({1, 2, 3, 4, 5, 6}).ids(ids).text("").text("");
    };
    const auto artist = [](Ts2Bytes& file, std::initializer_list<std::int64_t> ids, std::int64_t flags = 1) {
        file.word(flags).word(1).text("x");
        if (flags == 0)
            file.text("x");
        return file.word(0).ids(ids);
    };

    Ts2Bytes good = tracks(1, {1, 1});
    album(good, 1, {1, 2});
    EXPECT_EQ(boxOf(artist(good, {1})), "");
    EXPECT_EQ(boxOf(Ts2Bytes(good).word(0)), kInvalid) << "bytes behind the end";

    Ts2Bytes unsortedTracks = tracks(1, {1, 1});
    album(unsortedTracks, 1, {2, 1});
    EXPECT_EQ(boxOf(artist(unsortedTracks, {1})), kInvalid);

    Ts2Bytes empty = tracks(1, {});
    album(empty, 1, {});
    EXPECT_EQ(boxOf(artist(empty, {1})), kInvalid) << "an album without tracks";

    Ts2Bytes unsortedAlbums = tracks(2, {1, 2});
    album(unsortedAlbums, 1, {1});
    album(unsortedAlbums, 2, {2});
    Ts2Bytes unlisted = unsortedAlbums;
    EXPECT_EQ(boxOf(artist(unsortedAlbums, {2, 1})), kInvalid);
    EXPECT_EQ(boxOf(artist(unlisted, {2})), kInvalid) << "an album that its artist does not list";

    Ts2Bytes twice = tracks(1, {1, -1});
    album(twice, 1, {1});
    Ts2Bytes nameTwice = twice;
    EXPECT_EQ(boxOf(artist(twice, {1})), "") << "a track without an album";
    EXPECT_EQ(boxOf(artist(nameTwice, {1}, 0)), kInvalid) << "a name stored twice";

    for (const std::int64_t id : {0, 1}) {
        Ts2Bytes artists = tracks(1, {1});
        artists.bytes[24] = 2;
        album(artists, 1, {1});
        if (id == 1)
            artist(artists, {1});
        artists.word(1).word(id).text("y").word(0).ids({});
        if (id == 0)
            artist(artists, {1});
        EXPECT_EQ(boxOf(artists), kInvalid) << "an artist of id 0, or the same once more";
    }

    Ts2Bytes backwards = tracks(2, {2, 1});
    album(backwards, 2, {1});
    album(backwards, 1, {2});
    EXPECT_EQ(boxOf(artist(backwards, {1, 2})), kInvalid) << "albums whose ids fall";

    Ts2Bytes nowhere = tracks(1, {1, 0});
    album(nowhere, 1, {1});
    EXPECT_EQ(boxOf(artist(nowhere, {1})), kInvalid) << "a track of album 0";

    Ts2Bytes titleTwice = tracks(1, {1});
    titleTwice.word(0).word(1).text("t").text("t").text("MP3").word(1).text("");
    titleTwice.words({1, 2, 3, 4, 5, 6}).ids({1}).text("").text("");
    EXPECT_EQ(boxOf(artist(titleTwice, {1})), kInvalid);

    Ts2Bytes negative = tracks(1, {1});
    negative.word(1).word(1).text("t").text("MP3").word(1).word(-1);
    negative.words({1, 2, 3, 4, 5, 6}).ids({1}).text("").text("");
    EXPECT_EQ(boxOf(artist(negative, {1})), kInvalid) << "a text of length -1";
}

// One album of 60,000 tracks and one artist of 60,000 albums, the ids of either in falling order.
TEST(Reader, IdsInFallingOrderEndTheReadingAtTheFirst)
{
    constexpr std::int64_t kMany = 60000;
    const auto ids = [](Ts2Bytes& file, bool falling) {
        file.word(kMany);
        for (std::int64_t i = 1; i <= kMany; ++i)
            file.word(falling ? kMany + 1 - i : i);
    };
    const auto database = [&](std::int64_t albums, bool falling) {
        Ts2Bytes file;
        file.header(0, kMany, albums, 1, 0);
        for (std::int64_t i = 1; i <= kMany; ++i)
            file.word(0).word(i).text("C:\\m\\a\\1.mp3").word(albums == 1 ? 1 : i);
        for (std::int64_t i = 1; i <= albums; ++i) {
            file.word(1).word(i).text("t").text("MP3").word(1).text("").words({1, 2, 3, 4, 5, 6});
            if (albums == 1)
                ids(file, falling);
            else
                file.ids({i});
            file.text("").text("");
        }
        file.word(1).word(1).text("x").word(0);
        if (albums == 1)
            file.ids({1});
        else
            ids(file, falling);
        return file.bytes;
    };
    for (const std::int64_t albums : {std::int64_t{1}, kMany}) {
        SampleRig good;
        ASSERT_TRUE(good.read(database(albums, false))) << good.prompt.text();
        SampleRig rig;
        const Bytes bytes = database(albums, true);
        const auto start = std::chrono::steady_clock::now();
        EXPECT_FALSE(rig.read(bytes));
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2)) << albums;
        EXPECT_EQ(rig.prompt.text(), "stop: Invalid database!");

        SampleRig ending; // inside the list
        ending.log.terminating = &ending.terminating;
        ending.log.cancelAtStep = kMany + static_cast<std::size_t>(albums == 1 ? 1 : albums + 1);
        EXPECT_THROW(ending.read(database(albums, false)), Cancelled);
        EXPECT_EQ(ending.database.library().albums.size(), albums == 1 ? 0U : kMany);
        EXPECT_TRUE(ending.database.library().artists.empty());
    }
}

TEST(Reader, FileUnknownToTheHostEndsTheLoad)
{
    SampleRig rig;
    rig.host.tracks[1].fileName = u"C:\\elsewhere.mp3";
    EXPECT_FALSE(rig.read(sampleDatabase()));
    EXPECT_EQ(rig.prompt.text(),
              "exclamation: Could not find the filename 'C:\\m\\a\\2.mp3' in your MJ database!");
    EXPECT_EQ(rig.host.lookups.size(), 2u);
    EXPECT_EQ(rig.log.text(), "    Reading header information\n    Reading tracks - 4\n    Finished");
}

TEST(Reader, MissingFileIsToldAndNotLogged)
{
    SampleRig rig;
    EXPECT_FALSE(rig.database.read("C:\\db\\none.ts2", rig.host, rig.context, {}));
    EXPECT_EQ(rig.prompt.text(), "exclamation: Could not open the database 'C:\\db\\none.ts2'!");
    EXPECT_TRUE(rig.log.lines.empty());
}

} // namespace
} // namespace tessera::test
