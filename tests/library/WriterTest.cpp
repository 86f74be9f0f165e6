#include "library/SampleRig.h"

#include <gtest/gtest.h>

namespace tessera::test {
namespace {

TEST(Writer, EmptyLibraryIsAHeader)
{
    SampleRig rig;
    Ts2Bytes header;
    header.header(0, 0, 0, 0, 0);
    EXPECT_EQ(rig.written(), header.bytes);
    EXPECT_EQ(rig.log.text(), "Writing Database\n"
                              "    Writing header information\n"
                              "    Writing tracks - 0\n"
                              "    Writing albums - 0\n"
                              "    Writing artists - 0\n"
                              "    Finished");
    EXPECT_EQ(rig.log.level, 0);
}

TEST(Writer, MissingThumbnailLeavesItsIdAlone)
{
    SampleRig rig;
    ASSERT_TRUE(rig.read(sampleDatabase()));
    rig.files.files.erase("C:\\m\\a\\folder.jpg");
    Bytes expected = sampleDatabase();
    expected.resize(expected.size() - 9); // length and bytes
    EXPECT_EQ(rig.written(), expected);
    EXPECT_EQ(rig.prompt.text(), "exclamation: Could not open the thumbnail file 'C:\\m\\a\\folder.jpg'!");
    EXPECT_EQ(rig.database.library().albums.at(1)->imageLength, 0u);
    EXPECT_EQ(rig.log.lines[rig.log.lines.size() - 2], "    Writing images - 1");
}

TEST(Writer, SoundPreviousFileIsKeptAndABadOnePushesNothingOut)
{
    SampleRig rig;
    ASSERT_TRUE(rig.read(sampleDatabase()));
    const std::string backup = std::string(SampleRig::kName) + ".bak";
    ASSERT_TRUE(rig.database.write(SampleRig::kName, rig.context));
    EXPECT_EQ(rig.files.files[backup], sampleDatabase());
    rig.files.files[SampleRig::kName] = bytesOf("not a database");
    ASSERT_TRUE(rig.database.write(SampleRig::kName, rig.context));
    EXPECT_EQ(rig.files.files[backup], sampleDatabase());
    EXPECT_EQ(rig.files.files[SampleRig::kName], sampleDatabase());
    EXPECT_EQ(rig.files.files.size(), 3u); // no temporary file
    EXPECT_EQ(rig.prompt.text(), "");
}

TEST(Writer, RefusedFolderFileAndFullDiskAreTold)
{
    for (const char* refused : {"C:\\db", SampleRig::kName}) {
        SampleRig rig;
        ASSERT_TRUE(rig.read(sampleDatabase()));
        rig.files.readOnly.insert(refused);
        rig.log.lines.clear();
        EXPECT_FALSE(rig.database.write(SampleRig::kName, rig.context));
        EXPECT_EQ(rig.prompt.text(), "exclamation: Could not create the database 'C:\\db\\sample.ts2'!");
        EXPECT_EQ(rig.log.text(), "Writing Database\n    Finished");
    }
    SampleRig rig;
    ASSERT_TRUE(rig.read(sampleDatabase()));
    const auto before = rig.files.files;
    rig.files.room = 100;
    EXPECT_FALSE(rig.database.write(SampleRig::kName, rig.context));
    EXPECT_EQ(rig.prompt.text(), "exclamation: Could not write the database 'C:\\db\\sample.ts2'!");
    EXPECT_EQ(rig.files.files, before);
    EXPECT_EQ(rig.log.level, 0);
}

TEST(Writer, EveryFileSystemFailureKeepsTheOldDatabaseOrWritesTheNewOne)
{
    const Bytes old = sampleDatabase(nullptr, "OLD");
    bool reachedTheEnd = false;
    for (int call = 1; !reachedTheEnd; ++call) {
        SCOPED_TRACE(call);
        SampleRig rig;
        ASSERT_TRUE(rig.read(sampleDatabase()));
        rig.files.files[SampleRig::kName] = old;
        rig.log.lines.clear();
        rig.files.calls = 0;
        rig.files.failingCall = call;
        const bool good = rig.database.write(SampleRig::kName, rig.context);
        reachedTheEnd = rig.files.calls < call;
        EXPECT_EQ(rig.log.lines.back(), "    Finished");
        EXPECT_EQ(rig.log.level, 0);
        if (good) {
            EXPECT_NE(rig.files.files[SampleRig::kName], old);
        } else {
            EXPECT_EQ(rig.files.files[SampleRig::kName], old);
        }
        EXPECT_TRUE(good || rig.prompt.boxes.size() == 1) << rig.prompt.text();
        EXPECT_FALSE(rig.files.files.contains(std::string(SampleRig::kName) + ".tmp"));
    }
}

TEST(Writer, CancelledAtAnyLineLeavesTheOldDatabase)
{
    for (std::size_t line = 1; line <= 6; ++line) {
        SCOPED_TRACE(line);
        SampleRig rig;
        ASSERT_TRUE(rig.read(sampleDatabase()));
        rig.files.files[SampleRig::kName] = sampleDatabase(nullptr, "OLD");
        rig.log.lines.clear();
        rig.log.terminating = &rig.terminating;
        rig.log.cancelAtLine = line;
        EXPECT_THROW(rig.database.write(SampleRig::kName, rig.context), Cancelled);
        EXPECT_EQ(rig.files.files[SampleRig::kName], sampleDatabase(nullptr, "OLD"));
        EXPECT_EQ(rig.files.files.size(), 2u);
        EXPECT_EQ(rig.log.level, 0);
    }
}

class Update : public testing::Test {
protected:
    SampleRig rig;
    Album* first = nullptr;
    Album* second = nullptr;

    void SetUp() override
    {
        ASSERT_TRUE(rig.read(sampleDatabase()));
        first = rig.database.library().albums.at(1).get();
        second = rig.database.library().albums.at(3).get();
        first->rank = 9;
        first->set(kAlbumFavourite, true);
        second->newDate = 20250101;
        second->set(kAlbumNew, true);
    }
    void update()
    {
        rig.database.update(SampleRig::kName, std::vector<Album*>{second, first}, rig.files, rig.prompt);
    }
    Bytes& file() { return rig.files.files[SampleRig::kName]; }
};

TEST_F(Update, WritesTheSettingsAndNothingElse)
{
    update();
    EXPECT_EQ(rig.prompt.text(), "");
    EXPECT_EQ(file(), rig.written());
    EXPECT_NE(file(), sampleDatabase());
    EXPECT_TRUE(first->columnTextsValid);
    EXPECT_EQ(first->columnTexts[10], "9");
    EXPECT_EQ(first->columnTexts[11], "Yes");
}

TEST_F(Update, AnotherRecordStopsEverything)
{
    SamplePlaces at;
    const Bytes whole = sampleDatabase(&at);
    const std::size_t end = at.secondAlbum;
    const std::size_t rank = at.firstAlbum + 4 * 10 + 5 + 3 + 4;
    for (std::size_t position = at.firstAlbum; position < end; ++position) {
        if (position == at.firstAlbum || (position >= rank && position < rank + 8))
            continue; // settings may differ
        file() = whole;
        file()[position] ^= 0x40;
        const Bytes before = file();
        rig.prompt.boxes.clear();
        update();
        ASSERT_EQ(file(), before) << position;
        ASSERT_EQ(rig.prompt.boxes.size(), 1u);
        ASSERT_NE(rig.prompt.text().find("'C:\\db\\sample.ts2' has been changed"), std::string::npos);
    }
    file().resize(at.secondAlbum);
    update();
    EXPECT_EQ(file().size(), at.secondAlbum);
}

TEST_F(Update, EveryFailureIsToldAndLeavesWholeRecords)
{
    const Bytes whole = file();
    const Bytes updated = rig.written();
    bool reachedTheEnd = false;
    for (int call = 1; !reachedTheEnd; ++call) {
        SCOPED_TRACE(call);
        file() = whole;
        rig.prompt.boxes.clear();
        rig.files.calls = 0;
        rig.files.failingCall = call;
        update();
        reachedTheEnd = rig.files.calls < call;
        EXPECT_EQ(rig.prompt.boxes.size(), reachedTheEnd ? 0u : 1u);
        EXPECT_EQ(file().size(), whole.size());
        if (reachedTheEnd) {
            EXPECT_EQ(file(), updated);
        }
    }
}

TEST_F(Update, MissingFileIsTold)
{
    rig.files.files.erase(SampleRig::kName);
    update();
    EXPECT_EQ(rig.prompt.text(), "exclamation: Could not open the database 'C:\\db\\sample.ts2'!");
}

} // namespace
} // namespace tessera::test
