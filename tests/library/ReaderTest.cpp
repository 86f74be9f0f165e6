#include "library/SampleRig.h"

#include <gtest/gtest.h>

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
    EXPECT_EQ(album.newDate, 20021003);
    EXPECT_EQ(album.imageLength, 5u);
    EXPECT_EQ(album.m_hGlobalThumbnail.bytes(), bytesOf("JPEG!"));
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
    EXPECT_FALSE(rig.database.library().albums.at(1)->m_hGlobalThumbnail);
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

// Loads and is the same when written again, or says why not: for every value of every byte. Bytes
// of a picture, and names of files that the host and the disk do not know, are told apart.
TEST(Reader, EverySingleByteChangeLoadsTheSameOrIsRefused)
{
    SamplePlaces places;
    const Bytes whole = sampleDatabase(&places);
    const std::size_t picture = whole.size() - 5;
    int loaded = 0;
    for (std::size_t position = 0; position < picture; ++position) {
        for (unsigned value = 0; value < 256; ++value) {
            Bytes changed = whole;
            changed[position] = static_cast<std::uint8_t>(value);
            SampleRig rig;
            const bool good = rig.read(changed);
            ASSERT_EQ(rig.log.level, 0);
            ASSERT_EQ(rig.log.lines.back(), "    Finished");
            ASSERT_NE(good, !rig.prompt.boxes.empty())
                << position << " = " << value << ": " << rig.prompt.text();
            if (!good)
                continue;
            ++loaded;
            expectSoundLinks(rig.database.library());
            for (const auto& [id, album] : rig.database.library().albums)
                if (album->has(kAlbumHasImage))
                    rig.files.files[album->thumbnailFile] = bytesOf("JPEG!");
            ASSERT_EQ(rig.written(), changed) << position << " = " << value;
            ASSERT_EQ(rig.prompt.text(), "");
        }
    }
    EXPECT_GT(loaded, 256 * 40); // texts, numbers and settings may be anything
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

TEST(Reader, WhatTheWriterCannotHaveMadeIsRefused)
{
    const auto refused = [](const Ts2Bytes& file) {
        SampleRig rig;
        return !rig.read(file.bytes) && rig.prompt.text() == "stop: Invalid database!";
    };
    const auto album = [](Ts2Bytes& file, std::int64_t flags) -> Ts2Bytes& {
        file.header(0, 1, 1, 1, 0).word(0).word(1).text("C:\\m\\a\\1.mp3").word(1);
        return file.word(flags).word(1);
    };
    const auto rest = [](Ts2Bytes& file, std::initializer_list<std::int64_t> ids) -> Ts2Bytes& {
        file.text("MP3").word(1).text("").words({1, 2, 3, 4, 5, 6}).ids(ids).text("").text("");
        return file.word(1).word(1).text("x").word(0).ids({1});
    };
    Ts2Bytes good, twice, trailing, empty;
    EXPECT_FALSE(refused(rest(album(good, 1).text("t"), {1})));
    EXPECT_TRUE(refused(rest(album(twice, 0).text("t").text("t"), {1})));
    EXPECT_TRUE(refused(rest(album(trailing, 1).text("t"), {1}).word(0)));
    EXPECT_TRUE(refused(rest(album(empty, 1).text("t"), {})));
    Ts2Bytes negativeText;
    album(negativeText, 1).text("t").text("MP3").word(1).word(-1).words({1, 2, 3, 4, 5, 6}).ids({1});
    EXPECT_TRUE(refused(negativeText.text("").text("").word(1).word(1).text("x").word(0).ids({1})));
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
